#include "containstext.h"

#include <TamselPackageManager/PackageNode>

namespace browser {

ContainsText::ContainsText(QObject *parent)
    : PackageMatcher(parent)
{
}

void ContainsText::setName(const QString &name)
{
    if (field == name)
        return;
    field = name;
    Q_EMIT nameChanged();
    Q_EMIT updateRequested();
}

void ContainsText::setSearchString(const QString &searchString)
{
    if (text == searchString)
        return;
    text = searchString;
    Q_EMIT searchStringChanged();
    Q_EMIT updateRequested();
}

std::function<bool(ts::pm::PackageNode *)> ContainsText::matchFunction() const
{
    if (field.isEmpty() || text.isEmpty())
        return {};
    return [name = field, typed = text](ts::pm::PackageNode *package) {
        const QString value = package->readManifest(name).toString();
        return (value.isEmpty() ? package->id().toString() : value).contains(typed, Qt::CaseInsensitive);
    };
}

} // namespace browser
