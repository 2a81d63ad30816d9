#include "ledger/treelock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ts::ledger {

namespace {

constexpr unsigned long pollInterval = 20; // milliseconds

QString textOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

TreeLock::TreeLock(const QString &path)
    : path(QFile::encodeName(path))
{
}

// The file goes before the lock does, or somebody else could have that file locked by then.
TreeLock::~TreeLock()
{
    if (descriptor < 0)
        return;
    unlink(path.constData());
    close(descriptor);
}

// Through a link the file would be made, and locked, where that leads. To remove the link could hit the file
// that another publisher has put in its place by then.
QString TreeLock::acquire(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    constexpr mode_t permissions = 0666; // less those that the user never gives
    while ((descriptor = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, permissions))
           >= 0) {
        const int error = flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
        if (error == 0 && isFileInPlace())
            return QString();
        close(descriptor);
        descriptor = -1;
        if (error != 0 && error != EWOULDBLOCK && error != EINTR)
            return failure(QStringLiteral("cannot be locked: %1").arg(textOf(error)));
        if (deadline.hasExpired())
            return failure(QStringLiteral("another publisher is at work"));
        QThread::msleep(pollInterval);
    }
    return failure(errno == ELOOP ? QStringLiteral("is a symbolic link, and not followed") : textOf(errno));
}

// Whoever had the lock before may have removed the file since it was opened here.
bool TreeLock::isFileInPlace() const
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(descriptor, &opened) == 0 && lstat(path.constData(), &named) == 0
           && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

QString TreeLock::failure(const QString &cause) const
{
    return QStringLiteral("%1: %2").arg(QFile::decodeName(path), cause);
}

} // namespace ts::ledger
