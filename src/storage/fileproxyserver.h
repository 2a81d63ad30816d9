#pragma once

#include "tamselpackagemanager_export.h"

#include <QScopedPointer>
#include <QSharedPointer>
#include <QTcpServer>
#include <QUrl>

namespace ts::pm {

class FileProxyServerPrivate;
class IFileProxy;

/**
 * Serves files that may not be local yet over loopback HTTP, so that any reader of URLs can open them.
 *
 * A provider is installed under a random key and gets URLs of the form "http://localhost:PORT/KEY/PATH". A
 * GET or HEAD of such a URL is passed to the provider, which answers when it has the file. Two methods, no
 * ranges, no chunks, no request bodies; a connection stays open until the client closes it or breaks the
 * protocol. Files leave as their clients read, a piece for each turn of the event loop, and are never in
 * memory as a whole; of each client at most 64 KiB are read ahead, and 100 headers kept. It listens at
 * 127.0.0.1, and keeps its port of "::1" from other users of the machine, who would be asked in its place.
 *
 * Ownership: shared, see defaultServer(). Providers are not owned.
 * Threads: everything on the thread that made the server.
 * Errors: a server that cannot listen has port 0 and is never reached. Clients get 400 for a request that
 * cannot be read, 404 for an unknown key, 405 for another method, and otherwise the code of the provider.
 */
class TAMSELPACKAGEMANAGER_EXPORT FileProxyServer : public QTcpServer
{
    Q_OBJECT

public:
    explicit FileProxyServer(QObject *parent = nullptr);
    ~FileProxyServer() override;

    /**
     * The server of this process, which lives for as long as somebody holds it; the first caller after that
     * gets a new one, on another port.
     */
    static QSharedPointer<FileProxyServer> defaultServer();

    /** Adds a provider and returns its key, 11 characters of the base64 alphabet for URLs. */
    QString install(IFileProxy *proxy);

    /** Removes a provider. Connections that wait for it stay open, and resolveFile() still reaches them. */
    void uninstall(const QString &key);

    /** The absolute URL of \a url below \a key; empty for an unknown key. */
    QUrl fileUrl(const QString &key, const QUrl &url) const;

    /**
     * Answers every connection that waits for \a url below \a key: with the file \a path if \a code is 200,
     * otherwise with the code alone. After any other code a connection still counts as waiting: a later
     * answer reaches it too, and a further request on it gets 400.
     *
     * What the client sent is compared as text with the readable form of \a url, QUrl::toString(). The URLs
     * of fileUrl() agree with it for plain file names; a client that escapes more than it must gets no
     * answer.
     */
    void resolveFile(const QString &key, const QUrl &url, int code, const QString &path);

private Q_SLOTS:
    void handleConnection();
    void closeConnection();
    void requestFile(QUrl file); // NOLINT(performance-unnecessary-value-param): the signature of the signal

private:
    QScopedPointer<FileProxyServerPrivate> d;
};

} // namespace ts::pm
