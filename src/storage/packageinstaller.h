#pragma once

#include "storage/installlocation.h"
#include "tamselpackagemanager_export.h"

#include <QList>
#include <QObject>
#include <QScopedPointer>
#include <QString>

#include <functional>

class QFutureWatcherBase;

namespace ts::pm {

/** One thing that went wrong in an install. */
struct InstallError
{
    /** A number whose meaning belongs to the installer that made it. */
    int code = 0;
    /** Readable text, with file names filled in. */
    QString message;
};

class PackageInstallerPrivate;

/**
 * The job that brings one package into an InstallLocation, together with the jobs of all packages that it
 * requires.
 *
 * A job starts in its constructor and cannot be cancelled; deleting it drops its result.
 *
 * Ownership: installers of required packages are QObject children of the installer that needs them; whoever
 * asked for the root of the tree owns the tree.
 * Threads: lives on the thread that made it. Workers run on the global thread pool and touch only copies.
 * Signals: statusChanged() comes when the folded status has changed, from the leaves of the tree towards its
 * root. A job that ends in its constructor emits before anybody can listen, so read status() once as well.
 * Errors: collected as InstallError records, and logged in "tamsel.packages" when the job ends. Nothing is
 * retried or rolled back.
 */
class TAMSELPACKAGEMANAGER_EXPORT PackageInstaller : public QObject
{
    Q_OBJECT

public:
    enum Status {
        Failed = -1,   ///< all members of the tree have come to rest, at least one of them with an error
        Running = 0,   ///< at least one member of the tree is still at work
        Succeeded = 1, ///< all members of the tree have ended without errors
    };
    Q_ENUM(Status)

    ~PackageInstaller() override;

    /** The status of the whole tree below this job, as folded at the last change of one of its members. */
    Status status() const;

    /** Whether this job and all that it depends on, down the tree, have ended, with or without errors. */
    bool isFinished() const;

    /** Where the files of this package go. */
    InstallLocation location() const;

    /** The errors of this job alone, in order of occurrence. */
    QList<InstallError> errors() const;

    /** The jobs of the required packages, in the order in which they were added. */
    QList<PackageInstaller *> dependencies() const;

    /**
     * Makes the status of this job depend on \a installer, which becomes a child of this object. The status
     * is not folded here: it changes when a member of the tree next does.
     *
     * One that was a dependency of another job is taken from that one. Null, one that is a dependency
     * already, and one that would close a circle change nothing.
     */
    void addDependency(PackageInstaller *installer);

public Q_SLOTS:
    /** Folds the status of this job and its dependencies anew, then that of the jobs that depend on it. */
    void updateStatus();

Q_SIGNALS:
    void statusChanged();

protected:
    explicit PackageInstaller(const InstallLocation &location);

    /** To be called by the subclass before finish(). */
    void addErrors(const QList<InstallError> &errors);

    /** Ends the job: logs its errors and folds the status. Only the first call has an effect. */
    void finish();

    /**
     * Runs \a work on the global thread pool; its result becomes the errors of this job, which then ends.
     * \a work must hold copies of all that it needs, since the installer may be gone before it returns. It
     * must not be empty, and does not throw. Returns the watcher of the job, a child of this object.
     */
    QFutureWatcherBase *startWorker(const std::function<QList<InstallError>()> &work);

private Q_SLOTS:
    void installFinished();

private:
    friend class PackageInstallerPrivate;
    QScopedPointer<PackageInstallerPrivate> d;
};

} // namespace ts::pm
