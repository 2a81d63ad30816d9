#pragma once

#include "storage/packageinstaller.h"
#include "tamselpackagemanager_export.h"

#include <QCryptographicHash>
#include <QScopedPointer>
#include <QSharedPointer>

class QUrl;

namespace ts {
class Request;
}

namespace ts::pm {

class DownloadInstallerPrivate;
class FileStore;

/**
 * The job of a package whose files come over the network: downloads what the FileStore lacks, commits it when
 * the last download has ended, and then installs all files of the package from the store.
 *
 * A subclass tells the files and makes the requests in its constructor: addFile() for each file, download()
 * for those that the store lacks, at the end start(). All downloads run at once, each into memory; how many
 * transfers run together is up to the access manager. A body that is not the file is let go of as it ends.
 *
 * Ownership and threads: as PackageInstaller; the commits, with their hashing and writing, run on the thread
 * of the installer.
 * Errors, with codes that count from the first one on: "Download of %1 failed with code %2, error %3" for
 * everything but a good 200, "Commit of file %1 (%2) failed (code %3)" with the result of
 * FileStoreTarget::commit(), "Failed to install file %1 (%2)". A file that fails stops no other. One that was
 * not downloaded still gets its link, which leads nowhere until the store has the file.
 */
class TAMSELPACKAGEMANAGER_EXPORT DownloadInstaller : public PackageInstaller
{
    Q_OBJECT

public:
    ~DownloadInstaller() override;

protected:
    struct Download;

    /** \a algorithm is the one whose digests the file ids are; \a firstCode the code of a failed download. */
    DownloadInstaller(const QSharedPointer<FileStore> &store, QCryptographicHash::Algorithm algorithm,
                      int firstCode, const InstallLocation &location);

    /**
     * Adds a file to the package; each path once. Returns whether the store lacks it, so that download() has
     * to follow.
     *
     * A file with an id that is not valid, as of a database that lies, cannot be stored: it is an error of
     * the third kind at once, and needs no download.
     */
    [[nodiscard]] bool addFile(const QString &path, const QString &fileId);

    /**
     * Lets \a request, which has just been made for \a url, fetch a file for which addFile() has returned
     * true; takes the request over. \a number tells the downloads of this job apart.
     */
    void download(int number, const QUrl &url, const QString &fileId, Request *request);

    /** Waits for the downloads, or goes straight on if there are none. To be called once. */
    void start();

private Q_SLOTS:
    void downloadFinished();

private:
    friend class DownloadInstallerPrivate;
    void commit();
    void install();

    QScopedPointer<DownloadInstallerPrivate> d;
};

} // namespace ts::pm
