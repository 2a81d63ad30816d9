#pragma once

#include "storage/downloadinstaller.h"

#include <QByteArray>
#include <QHash>

namespace ts::account {
class Service;
}

namespace ts::pm {

/**
 * Installs a package of a package server, whose files come by their SHA-224 digests.
 *
 * Ownership and threads: as DownloadInstaller. The service is not owned.
 * Errors: code 1, "No service for package file download", without a service, in which case nothing is
 * installed; codes 2, 3 and 4 as told in DownloadInstaller.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageServerInstaller : public DownloadInstaller
{
    Q_OBJECT

public:
    /** Starts to install \a files, path in the package to the 28 bytes of the digest, into \a location. */
    PackageServerInstaller(const QHash<QString, QByteArray> &files, ts::account::Service *service,
                           const QSharedPointer<FileStore> &store, const InstallLocation &location);
    ~PackageServerInstaller() override;
};

} // namespace ts::pm
