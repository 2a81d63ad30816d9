#include "storage/packageinstaller.h"
#include "storage/packageinstaller_p.h"

#include "logging_p.h"
#include "pooljobs_p.h"

#include <QFutureWatcher>

#include <utility>

namespace ts::pm {

using ErrorWatcher = QFutureWatcher<QList<InstallError>>;

PackageInstallerPrivate::PackageInstallerPrivate(PackageInstaller *q, const InstallLocation &location)
    : q(q)
    , location(location)
{
}

PackageInstaller::Status PackageInstallerPrivate::ownStatus() const
{
    if (!finished)
        return PackageInstaller::Running;
    return errors.isEmpty() ? PackageInstaller::Succeeded : PackageInstaller::Failed;
}

// A member that failed does not end the tree early: it is Running until every member has come to rest.
PackageInstaller::Status PackageInstallerPrivate::foldedStatus() const
{
    const PackageInstaller::Status own = ownStatus();
    if (own == PackageInstaller::Running || runningDependencies > 0)
        return PackageInstaller::Running;
    return own == PackageInstaller::Failed || failedDependencies > 0 ? PackageInstaller::Failed
                                                                     : PackageInstaller::Succeeded;
}

void PackageInstallerPrivate::count(PackageInstaller::Status dependencyStatus, int change)
{
    if (dependencyStatus == PackageInstaller::Running)
        runningDependencies += change;
    else if (dependencyStatus == PackageInstaller::Failed)
        failedDependencies += change;
}

// Returns whether the status has changed. The object may be gone afterwards, by the hand of a listener.
bool PackageInstallerPrivate::refold()
{
    const PackageInstaller::Status folded = foldedStatus();
    if (folded == status)
        return false;
    if (dependent) {
        dependent->d->count(status, -1);
        dependent->d->count(folded, +1);
    }
    status = folded;
    Q_EMIT q->statusChanged();
    return true;
}

QVector<QPointer<PackageInstaller>> PackageInstallerPrivate::takeDependencies()
{
    const QList<PackageInstaller *> taken = std::exchange(dependencies, {});
    for (PackageInstaller *dependency : taken) {
        dependency->setParent(nullptr);
        dependency->d->dependent = nullptr;
    }
    return QVector<QPointer<PackageInstaller>>(taken.begin(), taken.end());
}

void PackageInstallerPrivate::forget(PackageInstaller *dependency)
{
    dependencies.removeOne(dependency);
    count(dependency->status(), -1);
}

bool PackageInstallerPrivate::isBelow(const PackageInstaller *installer) const
{
    // One without dependencies, as are all that are just being made, has nothing below it.
    if (installer->d->dependencies.isEmpty())
        return installer == q;
    const PackageInstaller *above = q;
    while (above && above != installer)
        above = above->d->dependent;
    return above;
}

PackageInstaller::PackageInstaller(const InstallLocation &location)
    : d(new PackageInstallerPrivate(this, location))
{
}

// Takes the tree apart itself: children that delete children would need stack for each link of a long chain.
// Who hears that one of them is gone may delete others.
PackageInstaller::~PackageInstaller()
{
    if (d->dependent)
        d->dependent->d->forget(this);
    auto doomed = d->takeDependencies();
    while (!doomed.isEmpty()) {
        const QPointer<PackageInstaller> installer = doomed.takeLast();
        if (installer)
            doomed += installer->d->takeDependencies();
        delete installer;
    }
}

PackageInstaller::Status PackageInstaller::status() const
{
    return d->status;
}

bool PackageInstaller::isFinished() const
{
    QVector<const PackageInstaller *> unvisited{this};
    while (!unvisited.isEmpty()) {
        const PackageInstaller *installer = unvisited.takeLast();
        if (!installer->d->finished)
            return false;
        for (const PackageInstaller *dependency : qAsConst(installer->d->dependencies))
            unvisited.append(dependency);
    }
    return true;
}

InstallLocation PackageInstaller::location() const
{
    return d->location;
}

QList<InstallError> PackageInstaller::errors() const
{
    return d->errors;
}

QList<PackageInstaller *> PackageInstaller::dependencies() const
{
    return d->dependencies;
}

void PackageInstaller::addDependency(PackageInstaller *installer)
{
    if (!installer || installer->d->dependent == this || d->isBelow(installer))
        return;
    if (installer->d->dependent)
        installer->d->dependent->d->forget(installer);
    installer->setParent(this);
    installer->d->dependent = this;
    d->dependencies.append(installer);
    d->count(installer->status(), +1);
}

// Climbs towards the root of the tree in a loop rather than through nested signals, for the sake of long
// chains.
void PackageInstaller::updateStatus()
{
    QPointer<PackageInstaller> installer = this;
    while (installer) {
        const QPointer<PackageInstaller> next = installer->d->dependent;
        if (!installer->d->refold())
            return;
        installer = next;
    }
}

void PackageInstaller::addErrors(const QList<InstallError> &errors)
{
    d->errors += errors;
}

void PackageInstaller::finish()
{
    if (d->finished)
        return;
    d->finished = true;
    for (const InstallError &error : qAsConst(d->errors))
        qCCritical(lcPm) << "Package install error" << error.code << error.message;
    updateStatus();
}

QFutureWatcherBase *PackageInstaller::startWorker(const std::function<QList<InstallError>()> &work)
{
    auto *watcher = new ErrorWatcher(this);
    connect(watcher, &ErrorWatcher::finished, this, &PackageInstaller::installFinished);
    runOnPool(watcher, work);
    return watcher;
}

void PackageInstaller::installFinished()
{
    const auto *watcher = static_cast<ErrorWatcher *>(sender());
    addErrors(watcher->result());
    finish();
}

} // namespace ts::pm
