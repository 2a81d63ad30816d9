#include "database/couchdbpackagesource.h"
#include "database/couchdbpackagesource_p.h"

#include "database/couchdbpackageaccessor.h"
#include "database/rowdata_p.h"
#include "logging_p.h"
#include "storage/randomname_p.h"

#include <Tamsel/GetRequest>

#include <QFile>
#include <QNetworkRequest>

namespace ts::pm {

namespace {

constexpr int pollInterval = 120000; // milliseconds
constexpr int httpOk = 200;
constexpr int httpNotFound = 404;

QString persistencePath(const QUrl &database)
{
    const QByteArray hash = hexMd5(database.toString().toLatin1());
    return QStringLiteral("packages/couchdb/%1").arg(QString::fromLatin1(hash));
}

// Tells also of bytes that only now turn out not to fit on the disk.
bool closeWritten(QFile *file)
{
    const bool written = file->isOpen() && file->flush();
    file->close();
    return written;
}

} // namespace

CouchDBPackageSourcePrivate::CouchDBPackageSourcePrivate(CouchDBPackageSource *q, const QUrl &database,
                                                         QNetworkAccessManager *manager)
    : q(q)
    , database(database)
    , manager(manager)
    , listing(lcCouchDBPackageSource, persistencePath(database))
    , countdown(pollInterval)
{
}

QUrl CouchDBPackageSourcePrivate::viewUrl() const
{
    return QUrl(database.toString() + QLatin1String("/_design/tamsel/_view/packages"));
}

// One that is running goes on, into a file that nobody reads. One that still waits for its turn need not
// begin: a database that hardly answers would have them pile up, each with an open file.
void CouchDBPackageSourcePrivate::abandonRequest()
{
    if (!request)
        return;
    request->disconnect(q);
    if (!request->reply())
        request->deleteLater();
}

void CouchDBPackageSourcePrivate::forgetRequest()
{
    request = nullptr;
    file = nullptr;
}

CouchDBPackageSource::CouchDBPackageSource(const QUrl &url, QNetworkAccessManager *manager, QObject *parent)
    : PackageSource(parent)
    , d(new CouchDBPackageSourcePrivate(this, url, manager))
{
    if (d->listing.load())
        qCInfo(lcCouchDBPackageSource) << "Loaded persisted package list" << d->listing.hash;
    d->countdown.start(this);
}

CouchDBPackageSource::~CouchDBPackageSource() = default;

int CouchDBPackageSource::priority() const
{
    return 2;
}

PackageAccessor *CouchDBPackageSource::getAccessor() const
{
    return new CouchDBPackageAccessor(d->database, d->listing.dataFile, d->manager);
}

void CouchDBPackageSource::persist()
{
    d->listing.persist();
}

void CouchDBPackageSource::update()
{
    d->abandonRequest();
    d->workingDir = ts::util::WorkingDir();
    auto *file = new QFile(d->workingDir.filePath(randomName()));
    file->open(QIODevice::WriteOnly); // if it fails, the request does
    // Network file systems only hide what is removed while it is open, and keep the directory for it. So each
    // file has a share, which goes after it has been closed.
    connect(file, &QObject::destroyed, file, [share = d->workingDir] {});
    QNetworkRequest request(d->viewUrl());
    request.setRawHeader(QByteArrayLiteral("Connection"), QByteArrayLiteral("close"));
    d->request = new ts::GetRequest(request, d->manager, this);
    d->file = file;
    file->setParent(d->request);
    d->request->setMaximumBodySize(largestViewResponse);
    d->request->setDataSink(file);
    d->request->setSuppressErrors(true);
    connect(d->request, &ts::Request::finished, this, &CouchDBPackageSource::finishUpdate);
}

void CouchDBPackageSource::finishUpdate()
{
    const ts::Request *request = d->request;
    QFile *file = d->file;
    d->forgetRequest();
    const bool isWritten = closeWritten(file);
    if (!request->isOk(httpOk) || !isWritten) {
        if (request->responseCode() != httpNotFound) {
            qCCritical(lcCouchDBPackageSource)
                << "Failed to load package listing" << d->database.adjusted(QUrl::RemoveUserInfo)
                << "with code" << request->responseCode();
        }
        file->remove();
        return;
    }
    const QByteArray hash = request->hash().toHex();
    if (hash == d->listing.hash) {
        file->remove();
        return;
    }
    d->listing.dataFile = {file->fileName(), d->workingDir};
    d->listing.hash = hash;
    qCInfo(lcCouchDBPackageSource) << "Finished update - new package list hash" << hash;
    Q_EMIT updateRequired();
}

void CouchDBPackageSource::timerEvent(QTimerEvent *)
{
    if (d->countdown.isDue())
        update();
}

} // namespace ts::pm
