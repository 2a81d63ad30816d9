#pragma once

#include <QLoggingCategory>

namespace ts::pm {

// Each is enabled from info upward.
Q_DECLARE_LOGGING_CATEGORY(lcPackageRepo)  // tamsel.package.repository
Q_DECLARE_LOGGING_CATEGORY(lcPackageIndex) // tamsel.package.index
Q_DECLARE_LOGGING_CATEGORY(lcPm)           // tamsel.packages
Q_DECLARE_LOGGING_CATEGORY(lcInstallLoc)   // tamsel.package.install

} // namespace ts::pm
