#include "repository/packageaccessor.h"

namespace ts::pm {

PackageAccessor::PackageAccessor() = default;
PackageAccessor::~PackageAccessor() = default;

} // namespace ts::pm
