#pragma once

#include <QMap>
#include <QTcpServer>
#include <QUrl>
#include <QVector>

#include <algorithm>
#include <functional>

class QTcpSocket;

namespace ts::pm::test {

/** What a client has asked for. */
struct HttpRequest
{
    QByteArray method;
    QByteArray path;                      ///< as it was sent, with the query
    QMap<QByteArray, QByteArray> headers; ///< by name in lower case
};

/** The bytes of an answer, down to the last one, and what becomes of the connection behind them. */
struct HttpAnswer
{
    enum Then {
        Close, ///< closes the connection
        Stall, ///< leaves it open and says nothing more
        Repeat ///< sends the bytes of repeated, over and over, for as long as the client reads
    };

    QByteArray bytes;
    Then then = Close;
    QByteArray repeated;

    /** A whole answer, with Content-Length and "Connection: close". Each header ends in "\r\n". */
    static HttpAnswer with(int status, const QByteArray &body = {}, const QByteArray &headers = {});
    static HttpAnswer redirect(int status, const QByteArray &location)
    {
        return with(status, "moved", "Location: " + location + "\r\n");
    }
};

/**
 * An HTTP server on the loopback that answers as a test tells it to, broken answers included.
 *
 * Threads: works in the event loop of the thread it was made on; handlers are called there, so they may touch
 * what the test touches. One answer for each connection.
 */
class ScriptedServer : public QObject
{
public:
    using Handler = std::function<HttpAnswer(const HttpRequest &request)>;

    explicit ScriptedServer(const QHostAddress &address = QHostAddress::LocalHost);

    /** For paths without an answer of their own; 404 at first. */
    void setHandler(const Handler &newHandler) { handler = newHandler; }

    /** The answer to every request for \a path from now on. */
    void setAnswer(const QByteArray &path, const HttpAnswer &answer) { answers.insert(path, answer); }

    /** The URL of \a path, which begins with a slash. */
    QUrl url(const QString &path = QStringLiteral("/")) const;

    /** The complete requests so far, in order. */
    const QVector<HttpRequest> &requests() const { return received; }
    int count(const QByteArray &path) const
    {
        return int(std::count_if(received.cbegin(), received.cend(),
                                 [&path](const HttpRequest &request) { return request.path == path; }));
    }

    /** Connections that are open now. */
    int connections() const { return server.findChildren<QObject *>(QStringLiteral("connection")).size(); }

private:
    void accept();
    void read(QTcpSocket *socket);
    static void send(QTcpSocket *socket, const HttpAnswer &answer);

    QTcpServer server;
    Handler handler = [](const HttpRequest &) { return HttpAnswer::with(404, "nothing here"); };
    QMap<QByteArray, HttpAnswer> answers;
    QVector<HttpRequest> received;
};

} // namespace ts::pm::test
