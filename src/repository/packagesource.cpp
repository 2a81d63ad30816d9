#include "repository/packagesource.h"

namespace ts::pm {

class PackageSourcePrivate
{
public:
    PackageSource *const q;
};

PackageSource::PackageSource(QObject *parent)
    : QObject(parent)
    , d(new PackageSourcePrivate{this})
{
}

PackageSource::~PackageSource() = default;

void PackageSource::persist() {}

void PackageSource::update() {}

} // namespace ts::pm
