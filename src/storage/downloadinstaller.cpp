#include "storage/downloadinstaller.h"
#include "storage/downloadinstaller_p.h"

#include "storage/filestore.h"
#include "storage/filestoretarget.h"
#include "storage/installlocation_p.h"

#include <Tamsel/Request>

#include <QFutureWatcher>
#include <QVariant>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr char numberProperty[] = "id";
constexpr int httpOk = 200;

QString installMessage(const QString &path, const QString &fileId)
{
    return QStringLiteral("Failed to install file %1 (%2)").arg(path, fileId);
}

// In ascending order of path, whatever the order in which they were added.
QList<InstallError> installFiles(const FileStore &store, const InstallLocation &location,
                                 QVector<DownloadInstallerPrivate::File> files, int errorCode)
{
    std::sort(files.begin(), files.end(), [](const auto &a, const auto &b) { return a.path < b.path; });
    QList<InstallError> errors;
    InstallDirectory directory(location);
    for (const auto &file : qAsConst(files)) {
        if (!directory.installFile(store.pathForId(file.id), file.path))
            errors.append({errorCode, installMessage(file.path, file.id)});
    }
    return errors;
}

} // namespace

DownloadInstallerPrivate::DownloadInstallerPrivate(const QSharedPointer<FileStore> &store,
                                                   QCryptographicHash::Algorithm algorithm, int firstCode)
    : store(store)
    , algorithm(algorithm)
    , downloadError(firstCode)
    , commitError(firstCode + 1)
    , installError(firstCode + 2)
{
}

void DownloadInstaller::Download::dropTarget()
{
    delete target;
    target = nullptr;
}

// Texts are filled in one step: an escape in a URL, such as "%2F", must not pass for a place marker.
QString DownloadInstaller::Download::downloadMessage() const
{
    return QStringLiteral("Download of %1 failed with code %2, error %3")
        .arg(url.toString(), QString::number(responseCode), QString::number(error));
}

QString DownloadInstaller::Download::commitMessage(int result) const
{
    return QStringLiteral("Commit of file %1 (%2) failed (code %3)")
        .arg(fileId, url.toString(), QString::number(result));
}

DownloadInstaller::DownloadInstaller(const QSharedPointer<FileStore> &store,
                                     QCryptographicHash::Algorithm algorithm, int firstCode,
                                     const InstallLocation &location)
    : PackageInstaller(location)
    , d(new DownloadInstallerPrivate(store, algorithm, firstCode))
{
}

DownloadInstaller::~DownloadInstaller() = default;

bool DownloadInstaller::addFile(const QString &path, const QString &fileId)
{
    const bool isStored = d->store->contains(fileId);
    if (!isStored && !d->store->isValidId(fileId)) {
        addErrors({{d->installError, installMessage(path, fileId)}});
        return false;
    }
    d->files.append({path, fileId});
    return !isStored;
}

void DownloadInstaller::download(int number, const QUrl &url, const QString &fileId, Request *request)
{
    FileStoreTarget *target = d->store->getTarget(fileId, d->algorithm);
    d->downloads.insert(number, {url, fileId, request, target});
    target->setParent(this);
    request->setParent(this);
    request->setDataSink(target);
    request->setSuppressErrors(true);
    request->setProperty(numberProperty, number);
    connect(request, &Request::finished, this, &DownloadInstaller::downloadFinished);
    ++d->pending;
}

void DownloadInstaller::start()
{
    if (d->pending == 0)
        install(); // nothing is there to commit
}

// What cannot enter the store is not kept until the last download has ended: a server could answer each of
// many files with 2 GiB of anything.
void DownloadInstaller::downloadFinished()
{
    Download &download = d->downloads[sender()->property(numberProperty).toInt()];
    download.responseCode = download.request->responseCode();
    download.error = download.request->error();
    download.success = download.request->isOk(httpOk);
    download.request = nullptr;
    if (download.success)
        download.target->discardUnlessGenuine();
    else
        download.dropTarget();
    if (--d->pending > 0)
        return;
    commit();
    install();
}

// Nothing enters the store before the last download has ended.
void DownloadInstaller::commit()
{
    for (Download &download : d->downloads) {
        if (!download.success)
            addErrors({{d->downloadError, download.downloadMessage()}});
        else if (const int result = download.target->commit())
            addErrors({{d->commitError, download.commitMessage(result)}});
        download.dropTarget();
    }
}

// A reference keeps its installer for as long as it shows the package, so the result is let go of.
void DownloadInstaller::install()
{
    const auto *worker =
        startWorker([store = d->store, location = location(), files = d->files, code = d->installError] {
            return installFiles(*store, location, files, code);
        });
    connect(worker, &QFutureWatcherBase::finished, worker, &QObject::deleteLater);
}

} // namespace ts::pm
