#include "repository/ipackageprovider.h"

namespace ts::pm {

IPackageProvider::~IPackageProvider() = default;

} // namespace ts::pm
