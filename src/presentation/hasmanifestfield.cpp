#include "presentation/hasmanifestfield.h"

#include "index/packagenode.h"
#include "presentation/inturn_p.h"

namespace ts::pm {

class HasManifestFieldPrivate
{
public:
    QString name;
};

HasManifestField::HasManifestField(QObject *parent)
    : PackageMatcher(parent)
    , d(new HasManifestFieldPrivate)
{
}

HasManifestField::~HasManifestField() = default;

QString HasManifestField::name() const
{
    return d->name;
}

void HasManifestField::setName(const QString &name)
{
    if (d->name == name)
        return;
    d->name = name;
    inTurn(this, &HasManifestField::nameChanged, &HasManifestField::updateRequested);
}

std::function<bool(PackageNode *)> HasManifestField::matchFunction() const
{
    if (d->name.isEmpty())
        return {};
    return [name = d->name](PackageNode *node) { return !node->readManifest(name).isUndefined(); };
}

} // namespace ts::pm
