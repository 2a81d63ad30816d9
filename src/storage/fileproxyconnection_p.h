#pragma once

#include "storage/fileproxyrequestreader_p.h"

#include <QObject>
#include <QUrl>

class QTcpSocket;

namespace ts::pm {

class FileProxyWriter;

/**
 * One client of the FileProxyServer.
 *
 * State and method, target and headers are those of its request reader. While an answer is on its way nothing
 * more is read, so that a client which reads nothing holds one answer, and at most
 * FileProxyRequestReader::maxBuffered bytes of further requests.
 *
 * Ownership: a child of the server. Owns the socket. Either may be destroyed while fileRequested() is
 * emitted.
 * Threads: the thread of the server.
 */
class FileProxyConnection : public QObject
{
    Q_OBJECT

public:
    enum ResponseCode : int {
        NoResponse = 0,
        Ok = 200,
        BadRequest = 400,
        NotFound = 404,
        MethodNotAllowed = 405,
    };
    Q_ENUM(ResponseCode)

    explicit FileProxyConnection(QTcpSocket *socket, QObject *parent = nullptr);
    ~FileProxyConnection() override;

    unsigned int connectionId() const { return id; }

    /** The target of the last request, as text. */
    QString requestTarget() const;

    /**
     * Answers the request that waits for a file; does nothing if none waits. After any code but 200 the
     * request still counts as waiting: a later answer goes out too, a further request breaks the protocol.
     */
    void sendResponse(int code, const QString &path);

public Q_SLOTS:
    void read();
    void handleDisconnect();
    void writeErrorResponse(ts::pm::FileProxyConnection::ResponseCode responseCode, bool close = false);

Q_SIGNALS:
    void closed();
    void fileRequested(QUrl url);

private:
    static QByteArray codeToString(ResponseCode code);

    bool readRequest();
    void readSoon();
    void hearOfMore();
    void sendFile(const QString &path);
    void answerWritten();

    const unsigned int id;
    QTcpSocket *const socket; // owned
    FileProxyRequestReader request;
    FileProxyWriter *const writer;
    bool isReading = false; // read() is on the stack
    bool isClosing = false; // nothing more is read, the socket closes when the answer is written
    bool isClosed = false;
};

} // namespace ts::pm
