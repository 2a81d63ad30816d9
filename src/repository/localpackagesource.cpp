#include "repository/localpackagesource.h"

#include "repository/localpackageaccessor.h"

namespace ts::pm {

class LocalPackageSourcePrivate
{
public:
    const QString root;
};

LocalPackageSource::LocalPackageSource(const QString &root, QObject *parent)
    : PackageSource(parent)
    , d(new LocalPackageSourcePrivate{root})
{
}

LocalPackageSource::~LocalPackageSource() = default;

int LocalPackageSource::priority() const
{
    return 3;
}

PackageAccessor *LocalPackageSource::getAccessor() const
{
    return new LocalPackageAccessor(d->root);
}

} // namespace ts::pm
