#pragma once

#include <QLoggingCategory>

namespace ts::pm {

// Each is enabled from info upward.
Q_DECLARE_LOGGING_CATEGORY(lcPackageRepo)             // tamsel.package.repository
Q_DECLARE_LOGGING_CATEGORY(lcPackageIndex)            // tamsel.package.index
Q_DECLARE_LOGGING_CATEGORY(lcPm)                      // tamsel.packages
Q_DECLARE_LOGGING_CATEGORY(lcInstallLoc)              // tamsel.package.install
Q_DECLARE_LOGGING_CATEGORY(lcPackageFileStore)        // tamsel.package.filestore
Q_DECLARE_LOGGING_CATEGORY(lcLedger)                  // tamsel.packageserver.ledger
Q_DECLARE_LOGGING_CATEGORY(lcPackageServer)           // tamsel.packageserver
Q_DECLARE_LOGGING_CATEGORY(lcPackageServerInstaller)  // tamsel.packageserver.installer
Q_DECLARE_LOGGING_CATEGORY(lcCouchDBPackageSource)    // tamsel.package.couchdb
Q_DECLARE_LOGGING_CATEGORY(lcCouchDBPackageInstaller) // tamsel.package.couchdb.installer
Q_DECLARE_LOGGING_CATEGORY(lcDocPackageSource)        // tamsel.package.document

} // namespace ts::pm
