#include "cataloguetypes.h"

#include <TamselPackageManager/PackageNode>

#include <QMap>
#include <QStringList>

namespace browser {

namespace {

constexpr QChar separator = QLatin1Char(':');
constexpr int mostLevels = 8; // a type of 64 KiB would have 32,000 of them

// Compared by segments: a parent comes right before its children, whatever other characters names have.
using Counts = QMap<QStringList, int>;

Counts countExactTypes(const ts::pm::PackageList &packages)
{
    Counts counts;
    QStringRef type;
    int *count = nullptr;
    for (const ts::pm::PackageNode *package : packages) {
        // Packages come ordered by type, so that a large catalogue costs few look-ups.
        if (!count || package->type() != type) {
            type = package->type();
            count = &counts[type.toString().split(separator, Qt::SkipEmptyParts).mid(0, mostLevels)];
        }
        ++*count;
    }
    counts.remove({});
    return counts;
}

Counts addUpParents(const Counts &exact)
{
    Counts counts;
    for (auto entry = exact.begin(); entry != exact.end(); ++entry) {
        for (int length = entry.key().size(); length > 0; --length)
            counts[entry.key().mid(0, length)] += entry.value();
    }
    return counts;
}

bool repeatsParent(const QStringList &type, const Counts &counts)
{
    return type.size() > 1 && counts.value(type) == counts.value(type.mid(0, type.size() - 1));
}

} // namespace

CatalogueTypes::CatalogueTypes(QObject *parent)
    : RepositoryObserver(parent)
{
}

void CatalogueTypes::handleIndexChange()
{
    const Counts counts =
        addUpParents(countExactTypes(ts::pm::PackageIndex::selectPackages(index(), QString(), {}, {})));
    QVariantList list;
    for (auto entry = counts.begin(); entry != counts.end(); ++entry) {
        if (repeatsParent(entry.key(), counts))
            continue;
        list.append(QVariantMap{{QStringLiteral("type"), entry.key().join(separator)},
                                {QStringLiteral("depth"), entry.key().size() - 1},
                                {QStringLiteral("count"), entry.value()}});
    }
    if (typeList == list)
        return;
    typeList = list;
    Q_EMIT typesChanged();
}

} // namespace browser
