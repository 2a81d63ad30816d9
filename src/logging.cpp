#include "logging_p.h"

namespace ts::pm {

Q_LOGGING_CATEGORY(lcPackageRepo, "tamsel.package.repository", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPackageIndex, "tamsel.package.index", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPm, "tamsel.packages", QtInfoMsg)
Q_LOGGING_CATEGORY(lcInstallLoc, "tamsel.package.install", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPackageFileStore, "tamsel.package.filestore", QtInfoMsg)
Q_LOGGING_CATEGORY(lcLedger, "tamsel.packageserver.ledger", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPackageServer, "tamsel.packageserver", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPackageServerInstaller, "tamsel.packageserver.installer", QtInfoMsg)
Q_LOGGING_CATEGORY(lcCouchDBPackageSource, "tamsel.package.couchdb", QtInfoMsg)
Q_LOGGING_CATEGORY(lcCouchDBPackageInstaller, "tamsel.package.couchdb.installer", QtInfoMsg)
Q_LOGGING_CATEGORY(lcDocPackageSource, "tamsel.package.document", QtInfoMsg)

} // namespace ts::pm
