#include "logging_p.h"
#include "server/packageledger.h"
#include "storage/processlock_p.h"
#include "storage/savefile_p.h"

#include <TamselUtil/FileUtils>

#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QScopeGuard>

#include <limits>

namespace ts::pm {

namespace {

// Where the lock cannot be had, reading and writing go on without it: the file is only ever replaced as a
// whole, so that nobody reads half of one, and of two writers the last one wins.
QString lockPath(const QDir &dir)
{
    return dir.absoluteFilePath(QStringLiteral(".lock"));
}

QString dataPath(const QDir &dir)
{
    return dir.absoluteFilePath(QStringLiteral("ledger"));
}

/** Opens what the path leads to if it is a file; to open a pipe could take forever. */
bool openFile(QFile *file)
{
    return QFileInfo(*file).isFile() && file->open(QIODevice::ReadOnly);
}

/** Reads what QDataStream writes for a QByteArray; false if the file is too short for it. QDataStream's own
 * operator overflows on a count beyond 2 GiB. */
bool readArray(QDataStream &stream, QByteArray *array)
{
    constexpr quint32 null = 0xffffffff;
    constexpr qint64 most = std::numeric_limits<int>::max() - 64;
    quint32 size = 0;
    stream >> size;
    *array = QByteArray();
    if (stream.status() != QDataStream::Ok || size == null)
        return stream.status() == QDataStream::Ok;
    if (size > qMin(stream.device()->bytesAvailable(), most))
        return false;
    array->resize(int(size));
    if (stream.readRawData(array->data(), int(size)) == int(size))
        return true;
    array->clear();
    return false;
}

bool holdsTag(const QString &path, const QByteArray &etag)
{
    QFile file(path);
    if (!openFile(&file))
        return false;
    QDataStream stream(&file);
    QByteArray tag;
    return readArray(stream, &tag) && tag == etag;
}

/** Replaces the file, or leaves it as it is. The caller holds the lock. */
bool writeFile(const QString &path, const QByteArray &etag, const QByteArray &document)
{
    removeRemains(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qCCritical(lcLedger) << "Failed to open target file for ledger pesistence:" << int(file.error())
                             << file.errorString();
        return false;
    }
    QDataStream stream(&file);
    stream << etag << document;
    // A write that reaches the end of the disk is only short, and no error of the file: it could be
    // committed.
    if (stream.status() != QDataStream::Ok || !commitFlushed(file)) {
        qCCritical(lcLedger) << "Failed to commit target file for ledger pesistence:" << int(file.error())
                             << file.errorString();
        return false;
    }
    // Should the storage refuse to flush, the new file is in place all the same.
    Q_UNUSED(util::FileUtils::syncFile(path))
    return true;
}

} // namespace

PackageLedger::PackageLedger(const QDir &dir)
{
    QLockFile lock(lockPath(dir));
    waitForLock(lock, lockPath(dir));
    QFile file(dataPath(dir));
    if (!file.exists())
        return;
    if (!openFile(&file)) {
        qCCritical(lcLedger) << "Failed to open persisted ledger file" << file.fileName();
        return;
    }
    QByteArray tag;
    QByteArray document;
    QDataStream stream(&file);
    if (readArray(stream, &tag))
        readArray(stream, &document);
    file.close();
    parse(document, tag);
}

bool PackageLedger::persist(const QDir &dir, const QString &name) const
{
    if (!valid)
        return false;
    QElapsedTimer timer;
    timer.start();
    if (!dir.exists() && !dir.mkpath(dir.absolutePath())) {
        qCCritical(lcLedger) << "Failed to create persistence directory forledger persistence of" << name;
        return false;
    }

    QLockFile lock(lockPath(dir));
    const auto guard = qScopeGuard([&] {
        if (lock.isLocked())
            lock.unlock();
        qCDebug(lcLedger) << "Persisting ledger of" << name << "took" << double(timer.nsecsElapsed()) / 1e6
                          << "msecs";
    });
    waitForLock(lock, lockPath(dir));
    const QString path = dataPath(dir);
    if (holdsTag(path, etag)) {
        qCDebug(lcLedger) << "Skipping ledger persistence for" << name << "- already persisted";
        return false;
    }

    qCDebug(lcLedger) << "Persisting ledger for package server" << name << "ETag" << etag;
    return writeFile(path, etag, data);
}

} // namespace ts::pm
