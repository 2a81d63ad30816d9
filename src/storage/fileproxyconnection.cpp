#include "storage/fileproxyconnection_p.h"

#include "storage/fileproxywriter_p.h"

#include <QHash>
#include <QMimeDatabase>
#include <QPointer>
#include <QTcpSocket>

namespace ts::pm {

namespace {

constexpr int sniffedBytes = 64;
constexpr int maxKnownTypes = 1000;

unsigned int nextId()
{
    static unsigned int ConnectionId = 0;
    return ConnectionId++;
}

// Finding out the type takes longer than sending a small file does. It depends on nothing but these bytes.
QByteArray contentType(const QByteArray &start)
{
    static QMimeDatabase database;
    static thread_local QHash<QByteArray, QByteArray> knownTypes;
    const auto known = knownTypes.constFind(start);
    if (known != knownTypes.constEnd())
        return *known;
    if (knownTypes.size() >= maxKnownTypes)
        knownTypes.clear();
    return *knownTypes.insert(start, database.mimeTypeForData(start).name().toLatin1());
}

/** Puts the head of an answer together, in room that is made once. */
class AnswerHead
{
public:
    AnswerHead(int code, const QByteArray &reason)
    {
        constexpr int usualSize = 256;
        bytes.reserve(usualSize);
        bytes.append("HTTP/1.1 ").append(QByteArray::number(code)).append(' ').append(reason).append("\r\n");
    }

    AnswerHead &header(const char *key, const QByteArray &value)
    {
        bytes.append(key).append(": ").append(value).append("\r\n");
        return *this;
    }

    QByteArray followedBy(const QByteArray &body) { return bytes.append("\r\n").append(body); }

private:
    QByteArray bytes;
};

QByteArray textAnswer(int code, const QByteArray &reason, bool close, bool hasBody)
{
    return AnswerHead(code, reason)
        .header("Connection", close ? "close" : "keep-alive")
        .header("Content-Length", QByteArray::number(reason.size()))
        .followedBy(hasBody ? reason : QByteArray());
}

} // namespace

FileProxyConnection::FileProxyConnection(QTcpSocket *socket, QObject *parent)
    : QObject(parent)
    , id(nextId())
    , socket(socket)
    , writer(new FileProxyWriter(socket, this))
{
    socket->setParent(this);
    socket->setReadBufferSize(FileProxyRequestReader::maxBuffered);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &FileProxyConnection::read);
    connect(socket, &QTcpSocket::disconnected, this, &FileProxyConnection::handleDisconnect);
    connect(writer, &FileProxyWriter::written, this, &FileProxyConnection::answerWritten);
    readSoon(); // bytes may have arrived before this object was there to hear of them
}

// The socket is in the middle of a signal if this happens below read(), which takes care of it then.
FileProxyConnection::~FileProxyConnection()
{
    if (isClosed)
        return; // and the socket is gone, or will be
    socket->disconnect(this);
    writer->stop();
    socket->abort();
    if (isReading)
        socket->setParent(nullptr);
}

QString FileProxyConnection::requestTarget() const
{
    return QString::fromUtf8(request.target);
}

// One answered request at a time, so that a client which sends many lets the other ones have their turn.
// What has come behind a request that still waits is looked at in the same turn, before an answer can come.
void FileProxyConnection::read()
{
    if (isReading || isClosed)
        return;
    const QPointer<FileProxyConnection> self(this);
    QTcpSocket *const currentSocket = socket;
    isReading = true;
    bool wasRequest = readRequest();
    if (wasRequest && self && request.state == FileProxyRequestReader::WaitingForFile)
        wasRequest = readRequest();
    if (!self) {
        currentSocket->deleteLater();
        return;
    }
    isReading = false;
    if (socket->state() == QAbstractSocket::UnconnectedState)
        handleDisconnect();
    else if (wasRequest && socket->bytesAvailable() > 0)
        readSoon();
    else
        hearOfMore();
}

// The object may be gone after a request.
bool FileProxyConnection::readRequest()
{
    if (isClosing || writer->isBusy())
        return false;
    switch (request.read(socket)) {
    case FileProxyRequestReader::Result::Requested:
        Q_EMIT fileRequested(QUrl(QString::fromLatin1(request.target)));
        return true;
    case FileProxyRequestReader::Result::BadRequest:
        writeErrorResponse(BadRequest, true);
        return false;
    case FileProxyRequestReader::Result::MethodNotAllowed:
        writeErrorResponse(MethodNotAllowed, true);
        return false;
    default:
        return false;
    }
}

void FileProxyConnection::readSoon()
{
    QMetaObject::invokeMethod(this, &FileProxyConnection::read, Qt::QueuedConnection);
}

// A socket whose buffer was full says nothing of further bytes until somebody looks past its end.
void FileProxyConnection::hearOfMore()
{
    if (socket->isOpen())
        socket->peek(socket->bytesAvailable() + 1);
}

void FileProxyConnection::sendResponse(int code, const QString &path)
{
    if (request.state != FileProxyRequestReader::WaitingForFile || isClosing || isClosed)
        return;
    if (code == Ok) {
        sendFile(path);
        request.state = FileProxyRequestReader::RequestLine;
        return;
    }
    const QByteArray reason = codeToString(ResponseCode(code));
    writer->write(textAnswer(code, reason, false, request.method != FileProxyRequestReader::Head));
}

// A file that cannot be opened is announced with the size that the file system tells, and has no body.
// Without a name, as for a file that broke off on its way here, there is nothing to try, and Qt would warn of
// it.
void FileProxyConnection::sendFile(const QString &path)
{
    QScopedPointer<QFile> file(new QFile(path));
    const bool isOpen = !path.isEmpty() && file->open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    const qint64 size = file->size();
    const QByteArray start = isOpen ? file->read(sniffedBytes) : QByteArray();
    const bool hasBody = isOpen && request.method != FileProxyRequestReader::Head;
    const QByteArray head = AnswerHead(Ok, codeToString(Ok))
                                .header("Content-Type", contentType(start))
                                .header("Connection", QByteArrayLiteral("keep-alive"))
                                .header("Content-Length", QByteArray::number(size))
                                .followedBy(QByteArray());
    writer->write(head, file, hasBody ? size : 0);
}

// A closing answer is left to the event loop if the client does not take it at once.
void FileProxyConnection::writeErrorResponse(ResponseCode responseCode, bool close)
{
    const QByteArray reason = codeToString(responseCode);
    isClosing = close;
    if (!close)
        request.state = FileProxyRequestReader::RequestLine;
    writer->write(textAnswer(responseCode, reason, close, true));
    if (!writer->isBusy())
        answerWritten();
}

void FileProxyConnection::answerWritten()
{
    if (isClosing)
        socket->close();
    else
        readSoon();
}

void FileProxyConnection::handleDisconnect()
{
    writer->stop();
    if (isReading || isClosed)
        return;
    isClosed = true;
    socket->disconnect(this);
    socket->close();
    socket->deleteLater();
    Q_EMIT closed();
}

QByteArray FileProxyConnection::codeToString(ResponseCode code)
{
    switch (code) {
    case Ok:
        return QByteArrayLiteral("OK");
    case BadRequest:
        return "Bad Request";
    case NotFound:
        return "Not Found";
    case MethodNotAllowed:
        return "Method Not Allowed";
    default:
        return QByteArray();
    }
}

} // namespace ts::pm
