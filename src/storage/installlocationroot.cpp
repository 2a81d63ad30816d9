#include "storage/installlocationroot_p.h"

#include "logging_p.h"
#include "pooljobs_p.h"
#include "storage/randomname_p.h"

#include <Tamsel/Locations>

#include <QLockFile>
#include <QThread>

#include <atomic>

namespace ts::pm {

namespace {

constexpr int ownLockTimeout = 1000;     // milliseconds
constexpr int cleanupLockTimeout = 350;  // milliseconds
constexpr qint64 smallestStaleAge = 301; // seconds

QString lockFilePath(const QDir &root)
{
    return root.absoluteFilePath(QStringLiteral(".lock"));
}

qint64 ageInSeconds(const QFileInfo &entry, const QDateTime &now)
{
    const QDateTime birth = entry.birthTime();
    return (birth.isValid() ? birth : entry.lastModified()).secsTo(now);
}

// The own locks have no age limit; this one keeps the default, so that the lock of a process that died is
// free.
bool isInUse(const QDir &root)
{
    QLockFile lock(lockFilePath(root));
    if (!lock.tryLock(cleanupLockTimeout))
        return true;
    lock.unlock();
    return false;
}

void removeIfStale(const QFileInfo &entry, const QDateTime &now)
{
    if (ageInSeconds(entry, now) < smallestStaleAge)
        return;
    QDir root(entry.absoluteFilePath());
    if (isInUse(root))
        return;
    QThread::usleep(500);
    root.removeRecursively();
    qCDebug(lcInstallLoc) << "Removing stale install location" << root.absolutePath();
}

// Several indexes are often built within a second. Two clean-ups at once would remove each other's locks,
// about which QLockFile warns. So the one that is under way goes over the roots once more for all that were
// asked for meanwhile.
void cleanupInTurn()
{
    static std::atomic<int> asked(0);
    if (asked.fetch_add(1) > 0)
        return;
    int done = 0;
    do {
        done = asked.load();
        cleanup();
    } while (!asked.compare_exchange_strong(done, 0));
}

} // namespace

QDir _installDir()
{
    return QDir(Locations::dataLocation().absoluteFilePath(QStringLiteral("packages/install")));
}

void cleanup(const QDateTime &now)
{
    // A link among the roots is nobody's root, and what it points to is not ours to remove.
    const QDir::Filters filters = QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    const QFileInfoList entries = _installDir().entryInfoList(filters, QDir::Unsorted);
    for (const QFileInfo &entry : entries)
        removeIfStale(entry, now);
}

InstallLocationRoot::InstallLocationRoot()
{
    create();
    runOnPool(QRunnable::create([] { cleanupInTurn(); }));
}

InstallLocationRoot::~InstallLocationRoot() = default;

void InstallLocationRoot::create()
{
    do {
        rootDirectory.setPath(_installDir().absoluteFilePath(randomName()));
    } while (rootDirectory.exists());
    if (!rootDirectory.mkpath(rootDirectory.absolutePath())) {
        qCCritical(lcInstallLoc) << "Failed to create package install location";
        return;
    }
    lock();
}

void InstallLocationRoot::lock()
{
    lockFile.reset(new QLockFile(lockFilePath(rootDirectory)));
    lockFile->setStaleLockTime(0);
    if (!lockFile->tryLock(ownLockTimeout))
        qCCritical(lcInstallLoc) << "Failed to lock package install location";
}

} // namespace ts::pm
