#include "storage/fileproxywriter_p.h"

#include "storage/socketsend_p.h"

#include <QSocketNotifier>
#include <QTcpSocket>

#include <algorithm>

namespace ts::pm {

namespace {

constexpr qint64 bytesPerTurn = 1048576; // of the event loop: well below a millisecond
constexpr qint64 maxPending = 65536;     // bytes of short answers

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
    qint64 left = bytesPerTurn;
    while (isBusy() && left > 0) {
        const qint64 taken = writePart(left);
        if (taken < 0) {
            socket->abort();
            return;
        }
        if (taken == 0)
            break;
        sent += taken;
        left -= taken;
    }
    if (isBusy())
        waitForRoom();
    else
        stop();
}

qint64 FileProxyWriter::writePart(qint64 most)
{
    if (sent < head.size())
        return sendBytes(socket, head.constData() + sent, head.size() - sent, head.size() < size);
    return sendFromFile(socket, file.data(), sent - head.size(), std::min(size - sent, most));
}

void FileProxyWriter::waitForRoom()
{
    if (!sendsPastSocketBuffer()) {
        connect(socket, &QTcpSocket::bytesWritten, this, &FileProxyWriter::resume, Qt::UniqueConnection);
        return;
    }
    if (!notifier) {
        notifier = new QSocketNotifier(socket->socketDescriptor(), QSocketNotifier::Write, this);
        connect(notifier, &QSocketNotifier::activated, this, &FileProxyWriter::resume);
    }
    notifier->setEnabled(true);
}

} // namespace ts::pm
