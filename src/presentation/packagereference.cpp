#include "presentation/packagereference.h"
#include "presentation/packagereference_p.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "logging_p.h"
#include "presentation/inturn_p.h"
#include "repository/packagerepository.h"

#include <QTimer>

namespace ts::pm {

namespace {

constexpr int firstRetryDelay = 30000; // milliseconds
constexpr qint32 lastDoubling = 16;    // the last one that 32 bits hold, about 23 days

int retryDelay(qint32 retryCount)
{
    return (1 << qMin(retryCount, lastDoubling)) * firstRetryDelay;
}

QString typeOf(const PackageNode *node)
{
    return node ? node->type().toString() : QString();
}

} // namespace

PackageReferencePrivate::PackageReferencePrivate(PackageReference *q, const QString &id)
    : q(q)
    , id(id)
{
}

PackageRepository *PackageReferencePrivate::repository() const
{
    return qobject_cast<PackageRepository *>(q->parent());
}

ReferenceState PackageReferencePrivate::createState() const
{
    const QSharedPointer<PackageIndex> index = repository()->packageIndex();
    PackageNode *node = index ? index->getPackage(QStringRef(&id)) : nullptr;
    if (!node)
        return {};
    return {index, node, std::unique_ptr<PackageInstaller>(node->install(InstallLocation()))};
}

// Who makes an installer may destroy the repository, and this with it, or run an event loop in which a newer
// index comes: false in these cases, with the states left to whoever came last.
bool PackageReferencePrivate::renew(ReferenceState &state)
{
    const QPointer<PackageReference> alive(q);
    const quint32 number = ++renewals;
    ReferenceState fresh = createState();
    if (!alive || number != renewals)
        return false;
    state = std::move(fresh);
    return true;
}

void PackageReferencePrivate::setStatus(PackageReference::Status newStatus)
{
    if (status == newStatus)
        return;
    status = newStatus;
    Q_EMIT q->statusChanged();
}

// The connection stays when the installer has become the current one. It then only counts for retries.
void PackageReferencePrivate::watchPending(PackageInstaller *installer)
{
    QObject::connect(installer, &PackageInstaller::statusChanged, q,
                     [this, installer] { checkPending(installer); });
    checkPending(installer);
}

// Only the success of the installer that is waited for ends the wait: one that has been swapped in already
// may come back to success when a package that it requires does.
void PackageReferencePrivate::checkPending(PackageInstaller *installer)
{
    switch (installer->status()) {
    case PackageInstaller::Failed:
        scheduleRetry();
        break;
    case PackageInstaller::Succeeded:
        if (installer == pendingState.installer.get())
            finishUpdate();
        break;
    case PackageInstaller::Running:
        break;
    }
}

void PackageReferencePrivate::finishUpdate()
{
    const QString oldType = typeOf(currentState.node);
    currentState = std::move(pendingState);
    pendingState = {};
    qCDebug(lcPm) << "Finished update of package" << id;
    const auto tellType = [this, oldType] {
        if (typeOf(currentState.node) != oldType)
            Q_EMIT q->typeChanged();
    };
    inTurn(q, &PackageReference::computeStatus, tellType, &PackageReference::updated);
}

// The flag falls only after the update: an installer that has failed by then arms no timer of its own.
void PackageReferencePrivate::scheduleRetry()
{
    if (retryPending)
        return;
    retryPending = true;
    QTimer::singleShot(retryDelay(retryCount), q,
                       [this] { inTurn(q, &PackageReference::update, [this] { retryPending = false; }); });
    if (retryCount <= lastDoubling)
        ++retryCount;
}

PackageReference::PackageReference(const QString &id, PackageRepository *repository)
    : QObject(repository)
    , d(new PackageReferencePrivate(this, id))
{
}

PackageReference::~PackageReference() = default;

QString PackageReference::id() const
{
    return d->id;
}

QString PackageReference::type() const
{
    return typeOf(d->currentState.node);
}

PackageReference::Status PackageReference::status() const
{
    return d->status;
}

PackageNode *PackageReference::node() const
{
    return d->currentState.node;
}

QSharedPointer<PackageIndex> PackageReference::packageIndex() const
{
    return d->currentState.index;
}

InstallLocation PackageReference::installLocation() const
{
    return d->currentState.installer ? d->currentState.installer->location() : InstallLocation();
}

PackageSnapshot PackageReference::snapshot() const
{
    if (d->status != Installed)
        return PackageSnapshot();
    return PackageSnapshot(d->currentState.index, d->currentState.node);
}

QJsonObject PackageReference::manifest() const
{
    return d->currentState.node ? d->currentState.node->manifest() : QJsonObject();
}

QJsonValue PackageReference::manifestField(const QString &field) const
{
    return d->currentState.node ? d->currentState.node->readManifest(field)
                                : QJsonValue(QJsonValue::Undefined);
}

QUrl PackageReference::fileUrl(const QString &fileName) const
{
    return d->currentState.node ? d->currentState.node->getFileUrl(fileName) : QUrl();
}

// Not part of the constructor: a source that is asked for news, or an accessor for an installer, may destroy
// the repository, and with it this. A newer index may come while it is asked.
void PackageReference::follow()
{
    connect(d->repository(), &PackageRepository::packageIndexChanged, this, &PackageReference::update,
            Qt::DirectConnection);
    init();
}

void PackageReference::init()
{
    if (!d->renew(d->currentState))
        return;
    if (d->currentState.installer) {
        connect(d->currentState.installer.get(), &PackageInstaller::statusChanged, this,
                &PackageReference::computeStatus);
    }
    computeStatus();
}

void PackageReference::computeStatus()
{
    if (!d->currentState.node) {
        // A source that is asked may destroy the repository.
        inTurn(
            this, [this] { d->repository()->scheduleSourceUpdate(); }, [this] { d->setStatus(Unavailable); });
        return;
    }
    switch (d->currentState.installer->status()) {
    case PackageInstaller::Failed:
        d->scheduleRetry();
        d->setStatus(Incomplete);
        break;
    case PackageInstaller::Succeeded:
        d->retryCount = 0;
        d->setStatus(Installed);
        break;
    case PackageInstaller::Running:
        d->setStatus(Installing);
        break;
    }
}

void PackageReference::update()
{
    // A package that appears shows by its status alone.
    if (!d->currentState.node) {
        init();
        return;
    }
    if (!d->renew(d->pendingState))
        return;
    if (d->pendingState.node) {
        d->watchPending(d->pendingState.installer.get());
    } else {
        d->currentState = std::move(d->pendingState);
        d->pendingState = {};
        computeStatus();
    }
}

} // namespace ts::pm
