#include "ledger/treelock.h"

#include <QDeadlineTimer>
#include <QThread>

#include <sys/file.h>
#include <sys/stat.h>

namespace ts::ledger {

namespace {

constexpr unsigned long pollInterval = 20; // milliseconds

} // namespace

TreeLock::TreeLock(const QString &path)
    : file(path)
{
}

// The file goes before the lock does, or somebody else could have that file locked by then.
TreeLock::~TreeLock()
{
    if (file.isOpen())
        QFile::remove(file.fileName());
}

QString TreeLock::acquire(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (file.open(QIODevice::ReadWrite)) {
        if (flock(file.handle(), LOCK_EX | LOCK_NB) == 0 && isFileInPlace())
            return QString();
        file.close();
        if (deadline.hasExpired())
            return QStringLiteral("%1: another publisher is at work").arg(file.fileName());
        QThread::msleep(pollInterval);
    }
    return QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
}

// Whoever had the lock before may have removed the file since it was opened here.
bool TreeLock::isFileInPlace() const
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(file.handle(), &opened) == 0
           && stat(QFile::encodeName(file.fileName()).constData(), &named) == 0
           && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace ts::ledger
