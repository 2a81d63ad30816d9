#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>

#include <functional>

class QFileDevice;

namespace ts::ledger {

/** Files that appear whole, and on the disk, or not at all. Any thread. */
class FileCopy
{
public:
    /** Is told of bytes as they are written. */
    using Listener = std::function<void(qint64 bytes)>;

    /** Copies \a source, whose SHA-224 has to be \a digest, to \a target. Null, or what went wrong. */
    static QString copy(const QString &source, const QString &target, const QByteArray &digest,
                        const Listener &listener);

    /**
     * Null, or what went wrong. The new file is at least a second younger than the one in whose place it
     * comes: web servers make entity tags of the size and the time in seconds.
     */
    static QString write(const QByteArray &content, const QString &target);

    /** Writes to the file; null, or what went wrong. A write that comes out short is no error of the
     * file. */
    using Filler = std::function<QString(QFileDevice &file)>;
    static Filler fillerOf(const QByteArray &content);

    /** As above, for content that need not lie in memory as a whole. */
    static QString write(const Filler &fill, const QString &target);

    /** What went wrong with the file, with its name or without. */
    static QString failureOf(const QFileDevice &file);
    static QString causeOf(const QFileDevice &file);

    /** The digest of a file; null, with what went wrong in \a error, if it cannot be read to its end. */
    static QByteArray digest(const QString &path, QCryptographicHash::Algorithm algorithm, QString *error,
                             const Listener &listener = {});
};

} // namespace ts::ledger
