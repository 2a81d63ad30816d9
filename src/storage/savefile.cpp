#include "storage/savefile_p.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

namespace ts::pm {

namespace {

// Whoever waits too long for a lock may take one whose owner lives, and is still writing.
constexpr qint64 ageOfRemains = 86400; // seconds, a day

} // namespace

bool commitFlushed(QSaveFile &file)
{
    return file.flush() && file.commit();
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
