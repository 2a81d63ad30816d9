#include "logging_p.h"

namespace ts::pm {

Q_LOGGING_CATEGORY(lcPackageRepo, "tamsel.package.repository", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPackageIndex, "tamsel.package.index", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPm, "tamsel.packages", QtInfoMsg)
Q_LOGGING_CATEGORY(lcInstallLoc, "tamsel.package.install", QtInfoMsg)

} // namespace ts::pm
