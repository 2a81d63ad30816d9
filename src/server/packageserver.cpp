#include "server/packageserver.h"
#include "server/packageserver_p.h"

#include "logging_p.h"
#include "pooljobs_p.h"
#include "server/ledgerformat_p.h"
#include "server/packageserveraccessor.h"

#include <Tamsel/Locations>
#include <Tamsel/Request>

#include <QNetworkReply>
#include <QNetworkRequest>

#include <chrono>
#include <limits>

namespace ts::pm {

namespace {

using namespace std::chrono_literals;
using ts::account::Service;
using LedgerWatcher = QFutureWatcher<QSharedPointer<PackageLedger>>;

constexpr int httpOk = 200;
constexpr int httpNotModified = 304;
constexpr int tickInterval = 3000; // milliseconds
constexpr std::chrono::seconds pollInterval = 120s;
constexpr std::chrono::seconds firstRetryDelay = 5s;
constexpr int mostDoublings = 6;         // of the delay between retries
constexpr int longestLoggedBody = 65536; // bytes

QSharedPointer<PackageLedger> readPersistedLedger(const QDir &dir, const QString &name)
{
    const auto ledger = QSharedPointer<PackageLedger>::create(dir);
    if (ledger->valid)
        qCInfo(lcPackageServer) << "Loaded persisted ledger of" << name << "ETag" << ledger->etag;
    return ledger;
}

// A server whose tags are of no use sends its document with every poll, and at a start the one that was saved
// comes once more. A document that is held already has been verified.
QSharedPointer<PackageLedger> openLedger(const QByteArray &data, const QByteArray &etag,
                                         const PackageLedger &held)
{
    if (held.valid && held.data == data)
        return QSharedPointer<PackageLedger>::create(held, etag);
    return QSharedPointer<PackageLedger>::create(data, etag);
}

// As it was received: Qt decodes the bytes of a header as Latin-1. A reply goes with the access manager, and
// that with the last service, even after the answer has arrived.
QByteArray entityTag(const ts::Request &request)
{
    const QNetworkReply *reply = request.reply();
    return reply ? reply->header(QNetworkRequest::ETagHeader).toString().toLatin1() : QByteArray();
}

// No tag that came in a header has line ends or NULs; one that was read from a damaged file may.
bool fitsHeader(const QByteArray &tag)
{
    return !tag.isEmpty() && !tag.contains('\r') && !tag.contains('\n') && !tag.contains('\0');
}

} // namespace

PackageServerPrivate::PackageServerPrivate(PackageServer *q, Service *service)
    : q(q)
    , service(service)
    , ledger(QSharedPointer<PackageLedger>::create())
    , watcher(new LedgerWatcher(q))
{
}

// To be called while the service is alive.
QDir PackageServerPrivate::persistDir() const
{
    const QString path = QStringLiteral("packages/servers/%1").arg(service->uuid());
    return QDir(ts::Locations::dataLocation().absoluteFilePath(path));
}

bool PackageServerPrivate::isReady() const
{
    return service && service->status() == Service::Ready;
}

void PackageServerPrivate::loadPersistedLedger()
{
    runOnPool(watcher,
              [dir = persistDir(), name = service->uuid()] { return readPersistedLedger(dir, name); });
}

void PackageServerPrivate::updateLedger()
{
    if (request || !isReady())
        return;
    QNetworkRequest poll = service->createRequest(QUrl(QStringLiteral("./api/v1/ledger")));
    if (fitsHeader(ledger->etag))
        poll.setHeader(QNetworkRequest::IfNoneMatchHeader, ledger->etag);
    request = service->getRequest(poll);
    request->setSuppressErrors(true);
    request->setMaximumBodySize(ledgerformat::LargestDocument);
    QObject::connect(request, &ts::Request::finished, q, &PackageServer::processResponse);
}

// The new future takes the place of that of an earlier verification, whose result is dropped.
void PackageServerPrivate::loadNewLedger(const QByteArray &data, const QByteArray &etag)
{
    polled = true;
    runOnPool(watcher, [data, etag, held = ledger] { return openLedger(data, etag, *held); });
}

// A rejected ledger counts as a poll that went well: the server is asked again in its usual time.
void PackageServerPrivate::swapLedger()
{
    const QSharedPointer<PackageLedger> loaded = watcher->result();
    const QPointer<PackageServer> polledServer = polled ? q : nullptr;
    if (loaded->valid) {
        ledger = loaded;
        Q_EMIT q->updateRequired();
    }
    if (polledServer)
        Q_EMIT polledServer->pollFinished(loaded->valid ? PackageServer::LedgerUpdated
                                                        : PackageServer::LedgerRejected);
}

void PackageServerPrivate::noteSuccess()
{
    nextUpdate.setRemainingTime(pollInterval, Qt::CoarseTimer);
    failures = 0;
}

void PackageServerPrivate::noteFailure()
{
    nextUpdate.setRemainingTime(firstRetryDelay * (1 << qMin(failures, mostDoublings)), Qt::CoarseTimer);
    if (failures < std::numeric_limits<int>::max())
        ++failures;
}

StorageRunnable::StorageRunnable(const QSharedPointer<PackageLedger> &ledger, const QDir &dir,
                                 const QString &name)
    : ledger(ledger)
    , dir(dir)
    , name(name)
{
}

void StorageRunnable::run()
{
    ledger->persist(dir, name);
}

PackageServer::PackageServer(Service *service, QObject *parent)
    : PackageSource(parent)
    , d(new PackageServerPrivate(this, service))
{
    if (!service)
        return;
    d->loadPersistedLedger();
    service->enable(); // who hears of that may delete the service
    if (d->service)
        connect(service, &Service::statusChanged, this, &PackageServer::processServiceStatusChange);
    d->updateLedger();
    startTimer(tickInterval, Qt::CoarseTimer);
    connect(d->watcher, &LedgerWatcher::finished, this, [this] { d->swapLedger(); });
}

PackageServer::~PackageServer() = default;

int PackageServer::priority() const
{
    return 0;
}

PackageAccessor *PackageServer::getAccessor() const
{
    return new PackageServerAccessor(d->service, d->ledger);
}

void PackageServer::persist()
{
    if (!d->service || !d->ledger->valid)
        return;
    runOnPool(new StorageRunnable(d->ledger, d->persistDir(), d->service->uuid()));
}

void PackageServer::update()
{
    d->updateLedger();
}

bool PackageServer::isValid() const
{
    return !d->service.isNull();
}

Service *PackageServer::service() const
{
    return d->service;
}

void PackageServer::timerEvent(QTimerEvent *)
{
    if (!d->request && d->nextUpdate.hasExpired())
        d->updateLedger();
}

void PackageServer::processServiceStatusChange()
{
    if (d->isReady())
        d->updateLedger();
}

void PackageServer::processResponse()
{
    const ts::Request *request = d->request;
    d->request = nullptr;
    if (request->isOk(httpOk)) {
        d->noteSuccess();
        d->loadNewLedger(request->rawResponse(), entityTag(*request));
    } else if (request->responseCode() == httpNotModified) {
        qCDebug(lcPackageServer) << "Package server update complete - no changes";
        d->noteSuccess();
        Q_EMIT pollFinished(LedgerUnchanged);
    } else {
        qCCritical(lcPackageServer) << "Ledger update failed with status" << request->responseCode()
                                    << request->rawResponse().left(longestLoggedBody);
        d->noteFailure();
        Q_EMIT pollFinished(PollFailed);
    }
}

} // namespace ts::pm
