#include "database/persistedlisting_p.h"

#include "storage/processlock_p.h"

#include <Tamsel/Locations>
#include <TamselUtil/FileUtils>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QLockFile>

namespace ts::pm {

namespace {

// Hidden, so that neither a half-written copy nor the lock ever passes for a listing.
const QLatin1String copyName(".copy");
const QLatin1String lockName(".lock");

bool isBelowPackages(const QString &path)
{
    return QDir::cleanPath(path).startsWith(QLatin1String("packages/")) && !path.contains(QChar::Null);
}

QFileInfo newestFile(const QDir &directory)
{
    QFileInfo newest;
    QDirIterator files(directory.path(), QDir::Files);
    while (files.hasNext()) {
        files.next();
        const QFileInfo file = files.fileInfo();
        if (newest.fileName().isEmpty() || file.lastModified() > newest.lastModified())
            newest = file;
    }
    return newest;
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

} // namespace

QByteArray hexMd5(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

PersistedListing::PersistedListing(LogCategory category, const QString &path)
    : category(category)
    , directory(ts::Locations::dataLocation().absoluteFilePath(path))
    , usable(isBelowPackages(path))
{
}

bool PersistedListing::load()
{
    const QFileInfo newest = usable ? newestFile(directory) : QFileInfo();
    if (newest.fileName().isEmpty())
        return false;
    hash = newest.fileName().toLatin1();
    dataFile = {newest.absoluteFilePath(), std::nullopt};
    return validate();
}

bool PersistedListing::validate()
{
    QFile file(dataFile.path);
    if (!file.open(QIODevice::ReadOnly)) {
        file.remove();
        return true;
    }
    QCryptographicHash md5(QCryptographicHash::Md5);
    md5.addData(&file);
    file.close();
    const QByteArray computed = md5.result().toHex();
    if (computed == hash)
        return true;
    qCCritical(category) << "Persisted data verification failed, expected" << computed << "got" << hash;
    file.remove();
    hash.clear();
    dataFile = {};
    return false;
}

void PersistedListing::persist() const
{
    if (!usable)
        return;
    if (!directory.exists())
        directory.mkpath(QStringLiteral("."));
    if (hash.isEmpty() || !QFile::exists(dataFile.path))
        return;
    const QString lockPath = directory.filePath(lockName);
    QLockFile lock(lockPath);
    if (!waitForLock(lock, lockPath)) {
        qCCritical(category) << "Failed to persist package list" << hash;
        return;
    }
    const QString name = QString::fromLatin1(hash);
    if (!directory.exists(name)) {
        if (copyTo(name))
            qCInfo(category) << "Persisted package list" << hash;
        else
            qCCritical(category) << "Failed to persist package list" << hash;
    }
    const QStringList files = directory.entryList(QDir::Files, QDir::Unsorted);
    for (const QString &file : files) {
        if (file != name)
            QFile::remove(directory.filePath(file));
    }
}

// The copy gets its name only when it is whole and on the disk: the newest file is the one that the next
// start goes by, so a part of one would cost the listing. QFile::copy() works through a visible file.
bool PersistedListing::copyTo(const QString &name) const
{
    QFile file(dataFile.path);
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QString copy = directory.filePath(copyName);
    const QString target = directory.filePath(name);
    QFile::remove(copy); // left by a process that was killed, or a link that leads elsewhere
    const bool copied = hexMd5(content) == hash && writeFile(copy, content)
                        && ts::util::FileUtils::syncFile(copy) && QFile::rename(copy, target);
    if (!copied)
        QFile::remove(copy);
    return ts::util::FileUtils::syncFile(target) && copied;
}

} // namespace ts::pm
