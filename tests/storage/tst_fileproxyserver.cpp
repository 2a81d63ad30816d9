#include "storage/fileproxyserver.h"
#include "storage/ifileproxy.h"

#include "support/literals.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpSocket>
#include <QtTest>

#include <functional>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** Answers as the test says: within the call, or not at all. */
class ScriptedProxy : public IFileProxy
{
public:
    explicit ScriptedProxy(const std::function<void(const QUrl &)> &answer)
        : answer(answer)
    {
    }

    void requestFile(const QUrl &url) override
    {
        requested.append(url.toString());
        if (answer)
            answer(url);
    }

    QStringList requested;
    std::function<void(const QUrl &)> answer;
};

/** A client that says and hears raw bytes. */
class RawClient
{
public:
    explicit RawClient(quint16 port)
    {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        connected = QTest::qWaitFor([this] { return socket.state() == QAbstractSocket::ConnectedState; });
    }

    void say(const QByteArray &bytes) { socket.write(bytes); }

    /** What comes in reply, up to the length of \a expected, or until the server closes. */
    QByteArray hear(int size)
    {
        const bool heard = QTest::qWaitFor([&] { return socket.bytesAvailable() >= size || isClosed(); });
        return heard ? socket.readAll() : "timed out after " + socket.readAll();
    }

    bool isClosed() const { return connected && socket.state() == QAbstractSocket::UnconnectedState; }

    QTcpSocket socket;
    bool connected = false;
};

QByteArray file(const QByteArray &type, const QByteArray &content)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: " + type + "\r\nConnection: keep-alive\r\nContent-Length: "
           + QByteArray::number(content.size()) + "\r\n\r\n" + content;
}

QByteArray text(const QByteArray &status, const QByteArray &reason, const QByteArray &connection)
{
    return "HTTP/1.1 " + status + ' ' + reason + "\r\nConnection: " + connection
           + "\r\nContent-Length: " + QByteArray::number(reason.size()) + "\r\n\r\n";
}

const QByteArray badRequest = text("400", "Bad Request", "close") + "Bad Request";
const QByteArray notFound = text("404", "Not Found", "keep-alive");
const QByteArray notAllowed = text("405", "Method Not Allowed", "close") + "Method Not Allowed";

} // namespace

class tst_FileProxyServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        server = FileProxyServer::defaultServer();
        QVERIFY(directory.isValid() && server->isListening());
        write("owl"_s, "hoo hoo\n");
    }

    void cleanup() { server.reset(); }

    // What a client says ("%1" is the key of the provider), all that comes back, and whether the socket stays
    // open. The provider answers within the call: with the file, with 502 below "gone", never below "later".
    void speaksTheProtocol_data()
    {
        QTest::addColumn<QByteArray>("said");
        QTest::addColumn<QByteArray>("heard");
        QTest::addColumn<bool>("open");
        const QByteArray owl = file("text/plain", "hoo hoo\n");
        const QByteArray owlHead = owl.chopped(8);
        const QByteArray gone = text("502", "", "keep-alive");
        const QByteArray later = "GET /%1/later HTTP/1.1\r\n\r\n";
        const auto row = [](const char *name, const QByteArray &said, const QByteArray &heard, bool open) {
            QTest::newRow(name) << said << heard << open;
        };
        row("get", "GET /%1/owl HTTP/1.1\r\nHost: x\r\n\r\n", owl, true);
        row("head", "HEAD /%1/owl HTTP/1.1\r\n\r\n", owlHead, true);
        row("keep-alive", "GET /%1/owl HTTP/1.1\r\nConnection: close\r\n\r\nGET /%1/owl HTTP/1.1\r\n\r\n",
            owl + owl, true);
        row("unknown key", "GET /x/owl HTTP/1.1\r\n\r\n", notFound + "Not Found", true);
        row("unknown key, head", "HEAD /x/owl HTTP/1.1\r\n\r\n", notFound, true);
        row("no path", "GET  HTTP/1.1\r\n\r\n", notFound + "Not Found", true);
        row("after 404", "GET /x HTTP/1.1\r\n\r\nGET /%1/owl HTTP/1.1\r\n",
            notFound + "Not Found" + badRequest, false);
        row("502", "GET /%1/gone HTTP/1.1\r\n\r\n", gone, true);
        row("after 502", "GET /%1/gone HTTP/1.1\r\n\r\n\r\n", gone + badRequest, false);
        row("never", later, "", true);
        row("second request", later + later, badRequest, false);
        row("half a second request", later + "GET", "", true);
        row("two parts", "GET /%1/owl\r\n", badRequest, false);
        row("empty line", "\r\n", badRequest, false);
        row("1.0", "GET /%1/owl HTTP/1.0\r\n", badRequest, false);
        row("1.1 and more", "GET /%1/owl HTTP/1.1x\r\n", badRequest, false);
        row("put", "PUT /%1/owl HTTP/1.1\r\n", notAllowed, false);
        row("put 1.0", "PUT /%1/owl HTTP/1.0\r\n", badRequest, false);
        row("lower case", "get /%1/owl HTTP/1.1\r\n", notAllowed, false);
        row("blanks around", "  GET /%1/owl HTTP/1.1 \r\n\r\n", owl, true);
        row("two blanks", "GET  /%1/owl HTTP/1.1\r\n\r\n", notFound + "Not Found", true);
        row("bare line feeds", "GET /%1/owl HTTP/1.1\n\n\r\n", owl, true);
        row("bare line feeds only", "GET /%1/owl HTTP/1.1\n\n\n", "", true);
        row("half a line", "GET /%1/owl HTTP/1", "", true);
        row("long header", "GET /%1/owl HTTP/1.1\r\nX: " + QByteArray(9000, 'x') + "\r\n\r\n", owl, true);
        row("long target", "GET /%1/" + QByteArray(4096, 'x') + " HTTP/1.1\r\n\r\n", badRequest, false);
        row("many headers", "GET /%1/owl HTTP/1.1\r\n" + manyHeaders() + "\r\n", owl, true);
        row("endless line", QByteArray(70000, 'x'), badRequest, false);
        row("escaped letter", "GET /%1/%6fwl HTTP/1.1\r\n\r\n", "", true); // text is compared with text
        row("encoded blank", "GET /%1/a%20b HTTP/1.1\r\n\r\n", "", true);
        row("NUL", QByteArray("G\0T /%1/owl HTTP/1.1\r\n", 23), notAllowed, false);
    }

    void speaksTheProtocol()
    {
        QFETCH(QByteArray, said);
        QFETCH(QByteArray, heard);
        QFETCH(bool, open);
        for (const bool byteByByte : {false, true}) {
            QString key;
            ScriptedProxy proxy([&](const QUrl &url) {
                const QString name = url.toString();
                if (name != "later"_s)
                    server->resolveFile(key, url, name == "gone"_s ? 502 : 200, directory.filePath(name));
            });
            key = server->install(&proxy);
            RawClient client(server->serverPort());
            client.socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            const QByteArray bytes = QByteArray(said).replace("%1", key.toLatin1());
            for (int i = 0; byteByByte && i < bytes.size() - 1; ++i) {
                client.say(bytes.mid(i, 1));
                client.socket.flush();
            }
            client.say(byteByByte ? bytes.right(1) : bytes);
            QCOMPARE(client.hear(heard.size()), heard);
            if (!open)
                QTRY_VERIFY(client.isClosed());
            RawClient other(server->serverPort()); // is served while nothing more comes for the first
            other.say("GET /x HTTP/1.1\r\n\r\n");
            QCOMPARE(other.hear(72), notFound + "Not Found");
            QCOMPARE(client.socket.readAll(), QByteArray());
            QCOMPARE(client.isClosed(), !open);
            server->uninstall(key);
        }
    }

private:
    static QByteArray manyHeaders()
    {
        QByteArray headers;
        for (int i = 0; i < 5000; ++i)
            headers += "X-" + QByteArray::number(i) + ": owl\r\n";
        return headers;
    }

    void write(const QString &name, const QByteArray &content)
    {
        QFile file(directory.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QTemporaryDir directory;
    QSharedPointer<FileProxyServer> server;
};

QTEST_GUILESS_MAIN(tst_FileProxyServer)
#include "tst_fileproxyserver.moc"
