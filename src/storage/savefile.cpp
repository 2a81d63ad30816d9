#include "storage/savefile_p.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <unistd.h>
#endif

namespace ts::pm {

namespace {

// Whoever waits too long for a lock may take one whose owner lives, and is still writing.
constexpr qint64 ageOfRemains = 86400; // seconds, a day

// A storage that takes bytes on credit, as over a network or within a quota, may tell only now that they have
// no room. Qt asks it too, but takes any answer for a good one.
#ifdef Q_OS_UNIX
bool hasReachedStorage(const QFileDevice &file)
{
    int result = -1;
    do {
        result = fsync(file.handle());
    } while (result < 0 && errno == EINTR);
    return result == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT); // or it cannot be asked
}
#else
bool hasReachedStorage(const QFileDevice &)
{
    return true;
}
#endif

} // namespace

bool commitFlushed(QSaveFile &file)
{
    return file.flush() && hasReachedStorage(file) && file.commit();
}

void removeRemains(const QString &path)
{
    const QFileInfo target(path);
    const QString name = QRegularExpression::escape(target.fileName()) + QLatin1String("\\.[A-Za-z]{6}");
    const QRegularExpression remains(QRegularExpression::anchoredPattern(name));
    const QDateTime now = QDateTime::currentDateTime();
    const QFileInfoList files = target.dir().entryInfoList(QDir::Files, QDir::Unsorted);
    for (const QFileInfo &file : files) {
        if (remains.match(file.fileName()).hasMatch() && file.lastModified().secsTo(now) > ageOfRemains)
            QFile::remove(file.filePath());
    }
}

} // namespace ts::pm
