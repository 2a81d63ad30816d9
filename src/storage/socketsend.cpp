#include "storage/socketsend_p.h"

#include <QFile>
#include <QTcpSocket>

#include <algorithm>

#ifdef Q_OS_LINUX
#include <sys/sendfile.h>
#include <sys/socket.h>

#include <cerrno>
#include <csignal>
#endif

namespace ts::pm {

namespace {

constexpr qint64 chunkSize = 131072; // bytes

// For files that the system cannot send by itself.
qint64 sendCopy(QTcpSocket *socket, QFile *file, qint64 offset, qint64 size)
{
    static thread_local QByteArray chunk(int(chunkSize), Qt::Uninitialized);
    if (!file->seek(offset))
        return -1;
    const qint64 filled = file->read(chunk.data(), std::min(size, chunkSize));
    return filled > 0 ? sendBytes(socket, chunk.constData(), filled, filled < size) : -1;
}

} // namespace

#ifdef Q_OS_LINUX

namespace {

// sendfile() has no flag that keeps a broken connection from raising the signal.
class PipeSignalBlocker
{
public:
    PipeSignalBlocker()
    {
        sigemptyset(&pipeSignal);
        sigaddset(&pipeSignal, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    }

    ~PipeSignalBlocker()
    {
        if (!sigismember(&before, SIGPIPE))
            pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    // One that was blocked already is the business of whoever blocked it.
    void takeSignal()
    {
        const timespec noTime{};
        if (!sigismember(&before, SIGPIPE))
            sigtimedwait(&pipeSignal, nullptr, &noTime);
    }

private:
    Q_DISABLE_COPY(PipeSignalBlocker)

    sigset_t pipeSignal;
    sigset_t before;
};

bool isFull(int error)
{
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

bool sendsPastSocketBuffer()
{
    return true;
}

qint64 sendBytes(QTcpSocket *socket, const char *bytes, qint64 size, bool moreFollows)
{
    const int flags = MSG_NOSIGNAL | (moreFollows ? MSG_MORE : 0);
    const ssize_t taken = ::send(int(socket->socketDescriptor()), bytes, size_t(size), flags);
    return taken < 0 && isFull(errno) ? 0 : taken;
}

qint64 sendFromFile(QTcpSocket *socket, QFile *file, qint64 offset, qint64 size)
{
    if (file->handle() < 0)
        return sendCopy(socket, file, offset, size);
    PipeSignalBlocker blocker;
    off_t position = offset;
    const ssize_t taken =
        ::sendfile(int(socket->socketDescriptor()), file->handle(), &position, size_t(size));
    const int error = taken < 0 ? errno : 0;
    if (taken < size)
        blocker.takeSignal(); // may be raised although some bytes were taken
    if (taken > 0)
        return taken;
    if (isFull(error))
        return 0;
    // A system may refuse for this file, or a sandbox for any. Past the page cache, a file system that gives
    // less than it was asked for seems to be at its end. What is broken is so for a copy too.
    return sendCopy(socket, file, offset, size);
}

#else

bool sendsPastSocketBuffer()
{
    return false;
}

qint64 sendBytes(QTcpSocket *socket, const char *bytes, qint64 size, bool)
{
    return socket->bytesToWrite() > 0 ? 0 : socket->write(bytes, size);
}

qint64 sendFromFile(QTcpSocket *socket, QFile *file, qint64 offset, qint64 size)
{
    return sendCopy(socket, file, offset, size);
}

#endif

} // namespace ts::pm
