#pragma once

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QScopedPointer>

class QSocketNotifier;
class QTcpSocket;

namespace ts::pm {

/**
 * Writes the answers of the FileProxyServer to the socket of one client: bytes, and after them, if wanted, a
 * file.
 *
 * As much as the system takes at once is written at once, up to a bound that keeps the event loop responsive;
 * the rest follows from the event loop as the client reads. Of a file no more than one chunk is in memory at
 * any time. All of the connection's output goes through here, in order, past the buffer of the socket.
 *
 * Ownership: a child of its connection. The socket is not owned.
 * Threads: the thread of the server.
 * Errors: a client that has gone, one that reads nothing while answers pile up, and a file that gets shorter
 * on the way end in an aborted socket.
 */
class FileProxyWriter : public QObject
{
    Q_OBJECT

public:
    explicit FileProxyWriter(QTcpSocket *socket, QObject *parent = nullptr);
    ~FileProxyWriter() override;

    /** Not while a file is on its way. */
    void write(const QByteArray &bytes);

    /** Writes \a bytes, and \a size bytes of \a file after them. Not while a file is on its way. */
    void write(const QByteArray &bytes, QScopedPointer<QFile> &file, qint64 size);

    bool isBusy() const;

    /** Forgets what is not yet written. To be called when the socket is closed, at the latest. */
    void stop();

Q_SIGNALS:
    /** All is written, or the socket broke. Not for what a call of write() could write at once. */
    void written();

private Q_SLOTS:
    void resume();

private:
    void writeSome();
    qint64 writePart(qint64 most);
    void waitForRoom();

    QTcpSocket *socket;
    QSocketNotifier *notifier = nullptr;
    QByteArray head;
    QScopedPointer<QFile> file;
    qint64 size = 0; // of head and file
    qint64 sent = 0; // of these
};

} // namespace ts::pm
