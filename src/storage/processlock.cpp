#include "storage/processlock_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace ts::pm {

namespace {

#ifdef Q_OS_UNIX
bool isHeld(const QString &path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false; // by nobody that one could know of
    const bool held = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(descriptor);
    return held;
}
#else
bool isHeld(const QString &)
{
    return true;
}
#endif

// QLockFile takes over what a process that died has left only if it may write to the file, and if the file
// system has locks, which some network file systems have not.
bool isAbandoned(const QLockFile &lock, const QString &path)
{
    const QFileInfo file(path);
    const qint64 age = file.lastModified().msecsTo(QDateTime::currentDateTime());
    return file.isFile() && qAbs(age) > lock.staleLockTime() && !isHeld(path);
}

} // namespace

bool waitForLock(QLockFile &lock, const QString &path)
{
    const QFileInfo present(path);
    const bool isFree = !present.exists() && !present.isSymLink();
    // Where nobody can write, nobody can remove what a process that died has left either.
    const bool isWritable = QFileInfo(present.path()).isWritable();
    if (!(isFree || present.isFile()) || !isWritable)
        return false;
    for (int patience = 0; !lock.tryLock(patience); patience = lock.staleLockTime()) {
        if (lock.error() != QLockFile::LockFailedError)
            return false;
        if (isAbandoned(lock, path) && !QFile::remove(path))
            return false;
    }
    return true;
}

} // namespace ts::pm
