#include "storage/fileproxyserver.h"
#include "storage/fileproxyserver_p.h"

#include "logging_p.h"
#include "storage/fileproxyconnection_p.h"
#include "storage/ifileproxy.h"
#include "storage/randomname_p.h"

#include <QNetworkProxy>
#include <QTimer>

#include <chrono>

namespace ts::pm {

namespace {

constexpr int mostPorts = 16; // that are tried

} // namespace

FileProxyServerPrivate::FileProxyServerPrivate(FileProxyServer *q)
    : q(q)
{
    twin.setProxy(QNetworkProxy::NoProxy);
}

// Most clients try "::1" first when they are told "localhost". Another user of the machine who listened there
// on the same port would get their requests, and could pass anything for a file of a package.
QString FileProxyServerPrivate::listen()
{
    for (int i = 0; i < mostPorts; ++i) {
        if (!q->listen(QHostAddress::LocalHost, 0))
            return q->errorString();
        if (reserveTwin())
            return QString();
        q->close();
    }
    return twin.errorString();
}

// Clients are refused there, and turn to the server. Where there is no such address, nobody can listen at it.
bool FileProxyServerPrivate::reserveTwin()
{
    twin.abort();
    return twin.bind(QHostAddress::LocalHostIPv6, q->serverPort(), QAbstractSocket::DontShareAddress)
           || twin.error() != QAbstractSocket::AddressInUseError;
}

// A server that has run out of file descriptors stops to accept, and would never start again by itself.
void FileProxyServerPrivate::resumeAcceptingSoon()
{
    constexpr std::chrono::milliseconds pause(500);
    QTimer::singleShot(pause, q, &QTcpServer::resumeAccepting);
}

FileProxyServer::FileProxyServer(QObject *parent)
    : QTcpServer(parent)
    , d(new FileProxyServerPrivate(this))
{
    connect(this, &QTcpServer::newConnection, this, &FileProxyServer::handleConnection);
    connect(this, &QTcpServer::acceptError, this, [this] { d->resumeAcceptingSoon(); });
    const QString error = d->listen();
    if (!error.isEmpty())
        qCWarning(lcPm) << "Cannot serve files on the loopback interface:" << error;
}

FileProxyServer::~FileProxyServer()
{
    qDeleteAll(d->connections);
}

QSharedPointer<FileProxyServer> FileProxyServer::defaultServer()
{
    static QWeakPointer<FileProxyServer> current;
    QSharedPointer<FileProxyServer> server = current.toStrongRef();
    if (!server) {
        server = QSharedPointer<FileProxyServer>::create();
        current = server;
    }
    return server;
}

QString FileProxyServer::install(IFileProxy *proxy)
{
    const QString key = randomName();
    d->providers.insert(key, proxy);
    return key;
}

void FileProxyServer::uninstall(const QString &key)
{
    d->providers.remove(key);
}

QUrl FileProxyServer::fileUrl(const QString &key, const QUrl &url) const
{
    if (!d->providers.contains(key))
        return QUrl();
    const QUrl base(QStringLiteral("http://localhost:%1/%2/").arg(QString::number(serverPort()), key));
    return base.resolved(url);
}

void FileProxyServer::resolveFile(const QString &key, const QUrl &url, int code, const QString &path)
{
    const QString target = QStringLiteral("/%1/%2").arg(key, url.toString());
    const QList<unsigned int> ids = d->waiting.values(target);
    if (code == FileProxyConnection::Ok)
        d->waiting.remove(target);
    for (const unsigned int id : ids) {
        FileProxyConnection *connection = d->connections.value(id);
        if (connection && connection->requestTarget() == target)
            connection->sendResponse(code, path);
    }
}

void FileProxyServer::handleConnection()
{
    while (hasPendingConnections()) {
        auto *connection = new FileProxyConnection(nextPendingConnection(), this);
        d->connections.insert(connection->connectionId(), connection);
        connect(connection, &FileProxyConnection::closed, this, &FileProxyServer::closeConnection);
        connect(connection, &FileProxyConnection::fileRequested, this, &FileProxyServer::requestFile);
    }
}

void FileProxyServer::closeConnection()
{
    auto *connection = qobject_cast<FileProxyConnection *>(sender());
    if (!connection)
        return;
    d->waiting.remove(connection->requestTarget(), connection->connectionId());
    d->connections.remove(connection->connectionId());
    connection->deleteLater();
}

// The provider may delete this server: nothing may follow the call.
void FileProxyServer::requestFile(QUrl file) // NOLINT(performance-unnecessary-value-param)
{
    auto *connection = qobject_cast<FileProxyConnection *>(sender());
    if (!connection)
        return;
    const QString target = connection->requestTarget();
    if (!d->waiting.contains(target, connection->connectionId()))
        d->waiting.insert(target, connection->connectionId());
    QString path = file.path(QUrl::FullyDecoded);
    if (path.startsWith(QLatin1Char('/')))
        path.remove(0, 1);
    const int slash = path.indexOf(QLatin1Char('/'));
    IFileProxy *provider = d->providers.value(path.left(slash));
    if (!provider) {
        connection->sendResponse(FileProxyConnection::NotFound, QString());
        return;
    }
    provider->requestFile(QUrl(slash < 0 ? QString() : path.mid(slash + 1)));
}

} // namespace ts::pm
