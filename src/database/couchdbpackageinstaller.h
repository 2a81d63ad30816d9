#pragma once

#include "storage/downloadinstaller.h"

class QJsonObject;
class QNetworkAccessManager;

namespace ts::pm {

/**
 * Installs a package whose files are the attachments of a CouchDB document.
 *
 * The files are told by "_attachments": each key is a file name, and the "digest" of its value, "md5-" and
 * the base64 of the digest, is the file's id in the store. An attachment without a usable digest is
 * not fetched, and fails.
 *
 * Ownership and threads: as PackageInstaller; the access manager is not owned, and has to live on the same
 * thread.
 * Errors: as DownloadInstaller, from code 1 on.
 */
class CouchDBPackageInstaller : public DownloadInstaller
{
    Q_OBJECT

public:
    /** \a baseUrl is that of the document, with a "/" at its end. Without a \a manager nothing downloads. */
    CouchDBPackageInstaller(const QUrl &baseUrl, QNetworkAccessManager *manager, const QJsonObject &document,
                            const QSharedPointer<FileStore> &store, const InstallLocation &location);
};

} // namespace ts::pm
