#include "ledger/filecopy.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <limits>

namespace ts::ledger {

namespace {

constexpr int bufferSize = 1048576; // bytes

using Taker = std::function<bool(const char *bytes, qint64 size)>;

// Null, or what went wrong; a taker that returns false has to know what that was.
QString readAll(const QString &path, const Taker &take)
{
    QFile file(path);
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    qint64 size = file.open(QIODevice::ReadOnly) ? 0 : -1;
    while (size >= 0 && (size = file.read(buffer.data(), buffer.size())) > 0) {
        if (!take(buffer.constData(), size))
            return QString();
    }
    return size < 0 ? FileCopy::failureOf(file) : QString();
}

// Bytes that a full disk refuses only when buffers are flushed go unnoticed by QSaveFile::commit(). So do
// those that make a write come out short, which only its caller can see.
QString commit(QSaveFile &file)
{
    if (file.error() == QFileDevice::NoError && file.flush() && file.commit())
        return QString();
    return FileCopy::failureOf(file);
}

// In seconds; far back if there is no such file.
qint64 timeOf(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() ? file.lastModified().toSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

} // namespace

QString FileCopy::copy(const QString &source, const QString &target, const QByteArray &digest,
                       const Listener &listener)
{
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return failureOf(file);
    QCryptographicHash hash(QCryptographicHash::Sha224);
    bool isWhole = true;
    const QString error = readAll(source, [&](const char *bytes, qint64 size) {
        hash.addData(bytes, int(size));
        listener(size);
        isWhole = file.write(bytes, size) == size;
        return isWhole;
    });
    if (!error.isNull())
        return error;
    if (!isWhole)
        return failureOf(file);
    if (hash.result() != digest)
        return QStringLiteral("%1: the file has changed since the ledger was built").arg(source);
    return commit(file);
}

QString FileCopy::write(const QByteArray &content, const QString &target)
{
    return write(fillerOf(content), target);
}

FileCopy::Filler FileCopy::fillerOf(const QByteArray &content)
{
    return [content](QFileDevice &file) {
        return file.write(content) == content.size() ? QString() : failureOf(file);
    };
}

QString FileCopy::write(const Filler &fill, const QString &target)
{
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return failureOf(file);
    if (const QString error = fill(file); !error.isNull())
        return error;
    const qint64 oldTime = timeOf(target);
    if (file.flush() && QDateTime::currentSecsSinceEpoch() <= oldTime)
        file.setFileTime(QDateTime::fromSecsSinceEpoch(oldTime + 1), QFileDevice::FileModificationTime);
    return commit(file);
}

QString FileCopy::failureOf(const QFileDevice &file)
{
    return QStringLiteral("%1: %2").arg(file.fileName(), causeOf(file));
}

// Files do not tell why a write came out short. The disk is full then, or a quota used up.
QString FileCopy::causeOf(const QFileDevice &file)
{
    const bool isKnown = file.errorString() != QFile().errorString();
    return isKnown ? file.errorString() : QStringLiteral("not all could be written; the disk may be full");
}

QByteArray FileCopy::digest(const QString &path, QCryptographicHash::Algorithm algorithm, QString *error,
                            const Listener &listener)
{
    QCryptographicHash hash(algorithm);
    *error = readAll(path, [&](const char *bytes, qint64 size) {
        hash.addData(bytes, int(size));
        if (listener)
            listener(size);
        return true;
    });
    return error->isNull() ? hash.result() : QByteArray();
}

} // namespace ts::ledger
