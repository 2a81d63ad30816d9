#include "storage/fileproxywriter_p.h"

#include <QSocketNotifier>
#include <QTcpSocket>
#include <QVarLengthArray>

#include <algorithm>
#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#endif

namespace ts::pm {

namespace {

constexpr qint64 chunkSize = 128 * 1024;
constexpr int chunksPerTurn = 8; // of the event loop: well below a millisecond
constexpr qint64 maxPending = 64 * 1024;

} // namespace

FileProxyWriter::FileProxyWriter(QTcpSocket *socket, QObject *parent)
    : QObject(parent)
    , socket(socket)
{
}

FileProxyWriter::~FileProxyWriter() = default;

bool FileProxyWriter::isBusy() const
{
    return sent < size;
}

void FileProxyWriter::write(const QByteArray &bytes)
{
    QScopedPointer<QFile> none;
    write(bytes, none, 0);
}

void FileProxyWriter::write(const QByteArray &bytes, QScopedPointer<QFile> &newFile, qint64 fileSize)
{
    Q_ASSERT(!file);
    if (size - sent > maxPending) {
        socket->abort();
        return;
    }
    const bool wasBusy = isBusy();
    head = head.mid(int(sent)) + bytes;
    sent = 0;
    file.swap(newFile);
    size = head.size() + fileSize;
    if (!wasBusy)
        writeSome();
}

void FileProxyWriter::resume()
{
    if (!isBusy())
        return;
    writeSome();
    if (!isBusy())
        Q_EMIT written();
}

void FileProxyWriter::stop()
{
    if (notifier)
        notifier->setEnabled(false);
    file.reset();
    head.clear();
    size = sent = 0;
}

void FileProxyWriter::writeSome()
{
    static thread_local QByteArray chunk(int(chunkSize), Qt::Uninitialized);
    for (int i = 0; i < chunksPerTurn && isBusy(); ++i) {
        const qint64 filled = fillChunk(chunk.data());
        const qint64 taken = filled > 0 ? send(chunk.constData(), filled) : -1;
        if (taken < 0) {
            socket->abort();
            return;
        }
        sent += taken;
        if (taken < filled)
            break;
    }
    if (isBusy())
        watch(true);
    else
        stop();
}

// Nothing is filled in only if the file has become too short.
qint64 FileProxyWriter::fillChunk(char *chunk)
{
    const qint64 headLeft = std::max<qint64>(0, head.size() - sent);
    const qint64 fromHead = std::min(headLeft, chunkSize);
    std::memcpy(chunk, head.constData() + head.size() - headLeft, size_t(fromHead));
    const qint64 fromFile = std::min(size - sent - fromHead, chunkSize - fromHead);
    if (fromFile <= 0 || !file)
        return fromHead;
    if (!file->seek(sent + fromHead - head.size()))
        return fromHead;
    return fromHead + std::max<qint64>(0, file->read(chunk + fromHead, fromFile));
}

#if defined(Q_OS_UNIX) && defined(MSG_NOSIGNAL)

// The number of bytes that the system took; negative if the client is gone.
qint64 FileProxyWriter::send(const char *data, qint64 dataSize)
{
    const ssize_t taken =
        ::send(int(socket->socketDescriptor()), data, size_t(dataSize), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (taken < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR))
        return 0;
    return taken;
}

void FileProxyWriter::watch(bool enabled)
{
    if (!notifier) {
        notifier = new QSocketNotifier(socket->socketDescriptor(), QSocketNotifier::Write, this);
        connect(notifier, &QSocketNotifier::activated, this, &FileProxyWriter::resume);
    }
    notifier->setEnabled(enabled);
}

#else

// Through the buffer of the socket, which holds one chunk at most.
qint64 FileProxyWriter::send(const char *data, qint64 dataSize)
{
    if (socket->bytesToWrite() > 0)
        return 0;
    return socket->write(data, dataSize);
}

void FileProxyWriter::watch(bool)
{
    connect(socket, &QTcpSocket::bytesWritten, this, &FileProxyWriter::resume, Qt::UniqueConnection);
}

#endif

} // namespace ts::pm
