#include "httpserver.h"

#include <QTcpSocket>

namespace ts::pm::test {

namespace {

HttpRequest parse(const QByteArray &head)
{
    HttpRequest request;
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.first().trimmed().split(' ');
    request.method = words.value(0);
    request.path = words.value(1);
    for (const QByteArray &line : lines.mid(1))
        request.headers.insert(line.split(':').first().toLower(), line.mid(line.indexOf(':') + 1).trimmed());
    return request;
}

} // namespace

HttpAnswer HttpAnswer::with(int status, const QByteArray &body, const QByteArray &headers)
{
    return {"HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\nConnection: close\r\nContent-Length: "
                + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body,
            Close,
            {}};
}

ScriptedServer::ScriptedServer(const QHostAddress &address)
{
    connect(&server, &QTcpServer::newConnection, this, &ScriptedServer::accept);
    if (!server.listen(address))
        qFatal("ScriptedServer: %s", qPrintable(server.errorString()));
}

QUrl ScriptedServer::url(const QString &path) const
{
    QUrl base(QStringLiteral("http://host"));
    base.setHost(server.serverAddress().toString());
    base.setPort(server.serverPort());
    return base.resolved(QUrl(path));
}

void ScriptedServer::accept()
{
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        socket->setObjectName(QStringLiteral("connection"));
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void ScriptedServer::read(QTcpSocket *socket)
{
    const QByteArray head = socket->peek(1 << 16);
    const int end = head.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    socket->disconnect(this);
    socket->readAll(); // closing a socket with unread bytes would reset the connection
    const HttpRequest request = parse(head.left(end));
    received.append(request);
    send(socket, answers.contains(request.path) ? answers.value(request.path) : handler(request));
}

void ScriptedServer::send(QTcpSocket *socket, const HttpAnswer &answer)
{
    socket->write(answer.bytes);
    if (answer.then == HttpAnswer::Close)
        socket->disconnectFromHost();
    if (answer.then != HttpAnswer::Repeat)
        return;
    const auto refill = [socket, bytes = answer.repeated] {
        if (socket->bytesToWrite() == 0)
            socket->write(bytes);
    };
    connect(socket, &QTcpSocket::bytesWritten, socket, refill);
    refill();
}

} // namespace ts::pm::test
