#include "storage/fileproxyserver.h"
#include "storage/ifileproxy.h"

#include "support/files.h"
#include "support/literals.h"

#include <QTcpSocket>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <functional>
#include <memory>
#include <vector>

#include <dlfcn.h>
#include <sys/sendfile.h>
#include <sys/socket.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

bool sendfileIsDenied = false;

} // namespace

// Stands before the function of the C library. That has another name where offsets have 64 bits.
extern "C" __attribute__((visibility("default"))) ssize_t sendfile(int to, int from, off_t *offset,
                                                                   size_t size) noexcept
{
    if (sendfileIsDenied) {
        errno = EPERM;
        return -1;
    }
    const char *name = sizeof(off_t) == 8 ? "sendfile64" : "sendfile";
    return reinterpret_cast<decltype(&sendfile)>(dlsym(RTLD_NEXT, name))(to, from, offset, size);
}

namespace {

/** Does with a request what the test says. */
struct ScriptedProxy : IFileProxy
{
    using Script = std::function<void(const QUrl &)>;

    explicit ScriptedProxy(const Script &script)
        : script(script)
    {
    }
    void requestFile(const QUrl &url) override { script(url); }

    const Script script;
};

/** A client that says and hears raw bytes. */
class RawClient
{
public:
    explicit RawClient(const FileProxyServer &server, const QByteArray &said = QByteArray())
    {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server.serverPort());
        connected = QTest::qWaitFor([this] { return socket.state() == QAbstractSocket::ConnectedState; });
        say(said);
    }

    void say(const QByteArray &bytes)
    {
        socket.write(bytes);
        socket.flush();
    }

    /** What comes, once it is \a size bytes or the server has closed. */
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
        QVERIFY(server->isListening());
        QTcpServer thief; // of the requests of clients that try the other "localhost" first
        QVERIFY(!thief.listen(QHostAddress::LocalHostIPv6, server->serverPort()));
        QVERIFY(writeFile(directory.filePath("owl"_s), "hoo hoo\n"));
        QVERIFY(writeFile(directory.filePath("picture"_s), picture()));
        key = server->install(&proxy);
        QCOMPARE(key.size(), 11);
        QCOMPARE(FileProxyServer::defaultServer(), server);
    }

    void cleanup()
    {
        const auto isConnected = [this] { // by any client
            return std::any_of(
                server->children().begin(), server->children().end(),
                [](const QObject *child) { return child->inherits("ts::pm::FileProxyConnection"); });
        };
        QTRY_VERIFY(!server || !isConnected());
        server.reset();
    }

    // What a client says ("%1" is the key), all that comes back, and whether the socket stays open.
    void speaksTheProtocol_data()
    {
        QTest::addColumn<QByteArray>("said");
        QTest::addColumn<QByteArray>("heard");
        QTest::addColumn<bool>("open");
        const QByteArray owl = file("text/plain", "hoo hoo\n");
        const QByteArray owlHead = owl.chopped(8);
        const QByteArray gone = text("502", "", "keep-alive");
        const auto row = [](const char *name, const QByteArray &said, const QByteArray &heard, bool open) {
            QTest::newRow(name) << said << heard << open;
        };
        row("head", "HEAD /%1/owl HTTP/1.1\r\n\r\n", owlHead, true);
        row("keep-alive", "GET /%1/owl HTTP/1.1\r\nConnection: close\r\n\r\nGET /%1/owl HTTP/1.1\r\n\r\n",
            owl + owl, true);
        row("unknown key, head", "HEAD /x/owl HTTP/1.1\r\n\r\n", notFound, true);
        row("after 404", "GET /x HTTP/1.1\r\n\r\nGET /%1/owl HTTP/1.1\r\n",
            notFound + "Not Found" + badRequest, false);
        row("502", "GET /%1/gone HTTP/1.1\r\n\r\n", gone, true);
        row("missing", "GET /%1/missing HTTP/1.1\r\n\r\n", file("application/x-zerosize", ""), true);
        row("second request", "GET /%1/later HTTP/1.1\r\n\r\nG\r\n", badRequest, false);
        row("empty line", "\r\n", badRequest, false);
        row("1.0", "GET /%1/owl HTTP/1.0\r\n", badRequest, false);
        row("blanks around", " GET /%1/owl HTTP/1.1 \r\n\r\n", owl, true);
        row("two blanks", "GET  /%1/owl HTTP/1.1\r\n\r\n", notFound + "Not Found", true);
        row("bare line feeds", "GET /%1/owl HTTP/1.1\n\n\r\n", owl, true);
        row("bare line feeds only", "GET /%1/owl HTTP/1.1\n\n\n", "", true);
        const QByteArray longHeader = "X: " + QByteArray(9000, 'x') + "\r\n";
        row("long headers", "GET /%1/owl HTTP/1.1\r\n" + longHeader.repeated(9) + "\r\n", owl, true);
        row("long target", "GET /%1/" + QByteArray(4096, 'x') + " HTTP/1.1\r\n\r\n", badRequest, false);
        row("endless line", QByteArray(65536, 'x'), badRequest, false);    // fills the read buffer
        row("escaped letter", "GET /%1/%6fwl HTTP/1.1\r\n\r\n", "", true); // text is compared with text
        row("NUL", QByteArray("G\0T /%1/owl HTTP/1.1\r\n", 23), notAllowed, false);
    }

    void speaksTheProtocol()
    {
        QFETCH(QByteArray, said);
        QFETCH(QByteArray, heard);
        QFETCH(bool, open);
        said.replace("%1", key.toLatin1());
        for (const int step : {said.size(), 1 + said.size() / 200}) {
            RawClient client(*server);
            client.socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            for (int i = 0; i < said.size(); i += step)
                client.say(said.mid(i, step));
            QCOMPARE(client.hear(heard.size()), heard);
            if (!open)
                QTRY_VERIFY(client.isClosed());
            RawClient other(*server, "GET /x HTTP/1.1\r\n\r\n"); // is served while nothing more comes here
            QCOMPARE(other.hear(72), notFound + "Not Found");
            QCOMPARE(client.socket.readAll(), QByteArray());
            QCOMPARE(client.isClosed(), !open);
        }
    }

    void answersAllThatWait()
    {
        QVector<QUrl> asked;
        ScriptedProxy later([&](const QUrl &url) { asked.append(url); });
        const QString laterKey = server->install(&later);
        const QByteArray head = "HEAD /" + laterKey.toLatin1() + "/a b HTTP/1.1\r\n\r\n";
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < 100; ++i)
            clients.push_back(std::make_unique<RawClient>(*server, head));
        RawClient elsewhere(*server, QByteArray(head).replace("a b", "other"));
        clients.at(50)->socket.abort();
        clients.erase(clients.begin() + 50);
        QTRY_COMPARE(asked.size(), 101);
        QCOMPARE(asked.at(0), QUrl("a b"_s));
        QCOMPARE(server->fileUrl(laterKey, asked.at(0)).toString(),
                 "http://localhost:%1/%2/a b"_s.arg(server->serverPort()).arg(laterKey));
        server->uninstall(laterKey); // what waits goes on waiting
        QVERIFY(server->fileUrl(laterKey, asked.at(0)).isEmpty());
        server->resolveFile(laterKey, asked.at(0), 404, QString());
        server->resolveFile(laterKey, asked.at(0), 200, directory.filePath("owl"_s));
        server->resolveFile(laterKey, asked.at(0), 200, directory.filePath("owl"_s));
        const QByteArray heard = notFound + file("text/plain", "hoo hoo\n").chopped(8);
        for (const auto &client : clients) // after 404 a request still waits, after 200 no more
            QCOMPARE(client->hear(heard.size()), heard);
        QCOMPARE(elsewhere.socket.bytesAvailable(), 0);

        ScriptedProxy soon([&](const QUrl &url) {
            QTimer::singleShot(0, server.data(),
                               [this, url] { server->resolveFile(key, url, 200, QString()); });
        });
        key = server->install(&soon);
        RawClient hasty(*server, get("owl").repeated(2)); // has not waited for the first answer
        QCOMPARE(hasty.hear(badRequest.size()), badRequest);
    }

    void sendsAsClientsRead()
    {
        const QByteArray answer = file("application/octet-stream", picture());
        const QByteArray owl = file("text/plain", "hoo hoo\n");
        const QByteArray longRequest = get("owl").chopped(2) + "X: " + QByteArray(3000, 'x') + "\r\n\r\n";
        std::vector<std::unique_ptr<RawClient>> idle;
        for (int i = 0; i < 10; ++i) {
            idle.push_back(std::make_unique<RawClient>(*server, get("owl")));
            QCOMPARE(idle.back()->hear(owl.size()), owl);
            const auto sender = server->findChildren<QTcpSocket *>().constLast(); // that is often full
            sender->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, 100000);
            idle.back()->socket.setReadBufferSize(1000);
            idle.back()->say(get("picture"));
            QCOMPARE(idle.back()->hear(1000), answer.left(1000));
            idle.back()->say(longRequest.repeated(100)); // more than the server reads ahead
        }
        QCOMPARE(RawClient(*server, get("picture")).hear(answer.size()), answer);
        for (size_t i = 0; i < 8; ++i)
            idle.at(i)->socket.abort();
        idle.at(8)->socket.setReadBufferSize(0);
        const QByteArray rest = answer.mid(1000) + owl.repeated(100);
        QCOMPARE(idle.at(8)->hear(rest.size()), rest);
        QVERIFY(QFile::resize(directory.filePath("picture"_s), 1000)); // below what was promised
        idle.at(9)->socket.setReadBufferSize(0);
        QVERIFY(idle.at(9)->hear(answer.size()).size() < answer.size() - 1000);
        QVERIFY(idle.at(9)->isClosed());

        // Whoever embeds this may have left SIGPIPE alone, as Qt does until it has written to a socket
        // itself.
        const auto handler = std::signal(SIGPIPE, SIG_DFL);
        QVERIFY(QFile::resize(directory.filePath("picture"_s), answer.size()));
        for (int i = 0; i < 10; ++i) {
            const RawClient hasty(*server, get("picture"));
            ::shutdown(int(hasty.socket.socketDescriptor()), SHUT_RDWR);
            RawClient after(*server, get("owl"));
            QCOMPARE(after.hear(8).left(8), QByteArray("HTTP/1.1"));
        }
        std::signal(SIGPIPE, handler);
    }

    // As in a sandbox that knows nothing of sendfile().
    void sendsCopies()
    {
        sendfileIsDenied = true;
        const auto allow = qScopeGuard([] { sendfileIsDenied = false; });
        const QByteArray answer = file("application/octet-stream", picture());
        QCOMPARE(RawClient(*server, get("picture")).hear(answer.size()), answer);
    }

    void survivesItsProviders()
    {
        const ScriptedProxy::Script scripts[] = {
            [&](const QUrl &) { server->uninstall(key); },
            [&](const QUrl &) { server.reset(); },
            [&](const QUrl &url) {
                server->resolveFile(key, url, 200, directory.filePath("picture"_s));
                server.reset();
            },
            [&](const QUrl &) { // runs an event loop, in which the client goes and then the server
                leaving->socket.abort();
                QTest::qWait(20);
                server.reset();
                QTest::qWait(20);
            },
        };
        for (const auto &script : scripts) {
            server = FileProxyServer::defaultServer();
            ScriptedProxy destructive(script);
            key = server->install(&destructive);
            RawClient bystander(*server, "GET /x HTTP/1.1\r\n\r\n");
            QCOMPARE(bystander.hear(72), notFound + "Not Found");
            leaving =
                std::make_unique<RawClient>(*server, "GET /" + key.toLatin1() + "/owl HTTP/1.1\r\n\r\nGET");
            QTRY_VERIFY(!server || server->fileUrl(key, QUrl()).isEmpty());
            if (!server)
                QTRY_VERIFY(bystander.isClosed() && leaving->isClosed());
        }
    }

private:
    QByteArray get(const char *name) const
    {
        return "GET /" + key.toLatin1() + '/' + name + " HTTP/1.1\r\n\r\n";
    }

    // Of no known type, and different at every place.
    static QByteArray picture()
    {
        QByteArray content(8 << 20, Qt::Uninitialized);
        quint32 number = 1;
        for (char &byte : content)
            byte = char((number = number * 1664525 + 1013904223) >> 24);
        return content;
    }

    QTemporaryDir directory;
    QSharedPointer<FileProxyServer> server;
    std::unique_ptr<RawClient> leaving;
    QString key;
    // With the file, with 502 for "gone", never for "later".
    ScriptedProxy proxy{[this](const QUrl &url) {
        const QString name = url.toString();
        if (name != "later"_s)
            server->resolveFile(key, url, name == "gone"_s ? 502 : 200, directory.filePath(name));
    }};
};

QTEST_GUILESS_MAIN(tst_FileProxyServer)
#include "tst_fileproxyserver.moc"
