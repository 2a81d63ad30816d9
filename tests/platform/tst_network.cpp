#include "support/fakeclock.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/GetRequest>
#include <Tamsel/Locations>
#include <TamselAccount/Service>
#include <TamselNetwork/NetworkAccessManager>

#include <QNetworkReply>
#include <QtTest>

#include <zlib.h>

using namespace ts::pm::test;
using ts::GetRequest;
using ts::account::Service;
using ts::network::NetworkAccessManager;

Q_DECLARE_METATYPE(ts::pm::test::HttpAnswer)

namespace {

QByteArray gzip(const QByteArray &text)
{
    const auto little = [](uLong number) {
        const auto bytes = qToLittleEndian(quint32(number));
        return QByteArray(reinterpret_cast<const char *>(&bytes), 4);
    };
    const auto *bytes = reinterpret_cast<const Bytef *>(text.constData());
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\xff", 10) + qCompress(text, 9).mid(6).chopped(4)
           + little(crc32(0, bytes, uInt(text.size()))) + little(uLong(text.size()));
}

HttpAnswer raw(const QByteArray &bytes, HttpAnswer::Then then = HttpAnswer::Close)
{
    return {bytes, then, QByteArray(1 << 16, 'x')};
}

HttpAnswer packed(const QByteArray &body)
{
    return HttpAnswer::with(200, body, "Content-Encoding: gzip\r\n");
}

struct Outcome
{
    int finished = 0;
    int status = 0;
    int error = 0; // of QNetworkReply
    bool ok = false;
    QByteArray body;
    QByteArray hash;
};

using SetUp = std::function<void(GetRequest *)>;

/** Runs an exchange until its request has deleted itself. */
Outcome run(const QNetworkRequest &request, QNetworkAccessManager *manager, const SetUp &setUp = {})
{
    Outcome outcome;
    QEventLoop loop;
    auto *get = new GetRequest(request, manager);
    get->setSuppressErrors(true);
    QObject::connect(get, &QObject::destroyed, &loop, &QEventLoop::quit);
    QObject::connect(get, &GetRequest::finished, [&] {
        outcome = {outcome.finished + 1, get->responseCode(), get->error(),
                   get->isOk(200),       get->rawResponse(),  get->hash()};
    });
    if (setUp)
        setUp(get);
    loop.exec();
    return outcome;
}

/** Does what a test tells it to before it takes each piece. */
class Sink : public QBuffer
{
public:
    std::function<void()> before = [] {};
    int share = 1; // takes one of so many bytes

    Sink() { open(WriteOnly); }

protected:
    qint64 writeData(const char *bytes, qint64 size) override
    {
        before();
        return share == 1 ? QBuffer::writeData(bytes, size) : size / share;
    }
};

} // namespace

class tst_Network : public QObject
{
    Q_OBJECT

    QSharedPointer<NetworkAccessManager> manager = NetworkAccessManager::sharedInstance();
    ScriptedServer server;

    QNetworkRequest request(const HttpAnswer &answer)
    {
        server.setAnswer("/x", answer);
        return QNetworkRequest(server.url("/x"_s));
    }

private Q_SLOTS:
    void answers_data()
    {
        QTest::addColumn<HttpAnswer>("answer");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("failed");
        QTest::addColumn<QByteArray>("body");
        const QByteArray big = QByteArray(3000000, 'b') + "end";
        const QByteArray head = "HTTP/1.1 200 OK\r\n";
        const QByteArray chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
        const auto row = [](const char *name, const HttpAnswer &answer, int status, const QByteArray &body,
                            bool failed = false) {
            QTest::newRow(name) << answer << status << failed << body;
        };
        row("empty", HttpAnswer::with(200), 200, "");
        row("big", HttpAnswer::with(200, big), 200, big);
        row("unchanged", raw("HTTP/1.1 304 Same\r\nETag: \"a\"\r\nContent-Length: 9\r\n\r\n"), 304, "");
        row("missing", HttpAnswer::with(404, "why"), 404, "why", true);
        row("endless error", raw("HTTP/1.1 500 No\r\n\r\n", HttpAnswer::Repeat), 500,
            QByteArray(1 << 20, 'x'), true);
        row("too short", raw(head + "Content-Length: 4\r\n\r\nowl"), 200, "owl", true);
        row("too long", raw(head + "Content-Length: 3\r\n\r\nowlet"), 200, "owl");
        row("chunks", raw(chunked + "3\r\nowl\r\n2\r\net\r\n0\r\n\r\n"), 200, "owlet");
        row("no answer", raw(""), 0, "", true);
        row("no status", raw("HTTP/1.1 000 None\r\nContent-Length: 3\r\n\r\nowl"), 0, "owl", true);
        row("junk", raw("owl\r\n\r\n"), 0, "", true);
        row("stalled head", raw("HTTP/1.1 200", HttpAnswer::Stall), 0, "", true);
        row("stalled body", raw(head + "Content-Length: 4\r\n\r\nowl", HttpAnswer::Stall), 200, "owl", true);
        row("gzip", packed(gzip(big)), 200, big);
        row("gzip twice", packed(gzip("ow") + gzip("l")), 200, "owl");
        row("gzip and junk", packed(gzip("owl") + "hoo"), 200, "owl", true);
        row("gzip too short", packed(gzip("owl").chopped(1)), 200, "owl", true);
        row("gzip not checked", packed(gzip("owl").chopped(8) + "12345678"), 200, "", true);
        row("other encoding", HttpAnswer::with(200, "owl", "Content-Encoding: br\r\n"), 200, "", true);
        row("choices", HttpAnswer::with(300, "why"), 300, "why");
        row("no encoding", HttpAnswer::with(200, "owl", "Content-Encoding: identity\r\n"), 200, "owl");
        row("no target", HttpAnswer::with(302, "owl"), 302, "owl");
    }

    void answers()
    {
        QFETCH(HttpAnswer, answer);
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        QFETCH(bool, failed);
        for (const bool toSink : {false, true}) {
            Sink sink;
            const Outcome outcome = run(request(answer), manager.data(), [&](GetRequest *get) {
                const auto hurry = [get] { get->setTransferTimeout(std::chrono::milliseconds(50)); };
                if (answer.then == HttpAnswer::Stall && status != 0)
                    connect(get->reply(), &QNetworkReply::readyRead, get, hurry);
                else if (answer.then == HttpAnswer::Stall)
                    hurry();
                if (toSink)
                    get->setDataSink(&sink);
                if (!failed)
                    get->setMaximumBodySize(body.size());
            });
            QCOMPARE(outcome.finished, 1);
            QCOMPARE(outcome.status, status);
            QCOMPARE(outcome.error != 0, failed);
            QCOMPARE(outcome.ok, outcome.error == 0 && status == 200);
            const bool sunk = toSink && status / 100 == 2;
            const QByteArray found = sunk ? sink.data() : outcome.body;
            QCOMPARE(sunk ? outcome.body : sink.data(), QByteArray());
            QCOMPARE(outcome.hash, QCryptographicHash::hash(found, QCryptographicHash::Md5));
            if (answer.then == HttpAnswer::Repeat)
                QVERIFY(found.size() <= body.size());
            else
                QCOMPARE(found, body);
        }
        QTRY_COMPARE(server.connections(), 0);
    }

    void limitsHoldWhileBytesArrive()
    {
        const auto endless = raw("HTTP/1.1 200 OK\r\n\r\n", HttpAnswer::Repeat);
        const auto announced = [](const QByteArray &size) {
            return raw("HTTP/1.1 200 OK\r\nContent-Length: " + size + "\r\n\r\n", HttpAnswer::Stall);
        };
        const struct
        {
            HttpAnswer answer;
            qint64 maximum = 1000000;
        } cases[] = {
            {endless},
            {announced("1000001")},
            {packed(gzip(QByteArray(50000000, '\0')))},
            {announced("2147483584"), std::numeric_limits<qint64>::max()}, // more than a QBuffer holds
        };
        for (const auto &one : cases) {
            Sink sink;
            const Outcome outcome = run(request(one.answer), manager.data(), [&](GetRequest *get) {
                get->setDataSink(&sink);
                get->setMaximumBodySize(one.maximum);
            });
            QVERIFY(outcome.error != 0 && outcome.error != QNetworkReply::TimeoutError);
            QVERIFY(sink.size() <= 1000000);
            QTRY_COMPARE(server.connections(), 0);
        }
    }

    // Those of a request that nobody has told anything: 30 seconds, and what a QBuffer holds.
    void limitsAtFirst()
    {
        const LogCapture log("tamsel.request"_s);
        for (const auto &[size, passed] :
             {std::pair("2147483584", QVector<int>{}), std::pair("2147483583", QVector<int>{20, 11})}) {
            const QByteArray head = QByteArray("HTTP/1.1 200 OK\r\nContent-Length: ") + size + "\r\n\r\n";
            QPointer<GetRequest> get = new GetRequest(request(raw(head, HttpAnswer::Stall)), manager.data());
            QTRY_VERIFY(!get || get->responseCode() == 200);
            for (const int seconds : passed) {
                QVERIFY(get && get->error() == QNetworkReply::NoError);
                FakeClock::advance(std::chrono::seconds(seconds));
            }
            QTRY_VERIFY(!get);
        }
        QCOMPARE(log.lines().size(), 2);
    }

    // Where to, with OTHER for a server on another port; status and error; whether the last request had
    // credentials.
    void redirects()
    {
        for (const Row &row : rows(R"(
            /y?a=b               | 200 NoError               | yes
            OTHER/y?a=b          | 200 NoError               | no
            file:///etc/hostname | 302 InsecureRedirectError | yes
            /x                   | 302 TooManyRedirectsError | yes)")) {
            ScriptedServer other;
            const QString origin = other.url().toString(QUrl::StripTrailingSlash);
            const QString location =
                row[0].replace("OTHER"_s, QString(origin).replace("//"_s, "//me:own@"_s));
            QNetworkRequest get = request(HttpAnswer::redirect(302, location.toLatin1()));
            for (const char *header : {"Authorization", "Cookie", "If-None-Match"})
                get.setRawHeader(header, "a=secret");
            for (ScriptedServer *place : {&server, &other})
                place->setAnswer("/y?a=b", HttpAnswer::with(200, "owl"));
            Sink sink;
            const Outcome outcome =
                run(get, manager.data(), [&](GetRequest *sent) { sent->setDataSink(&sink); });
            const QByteArray body = outcome.status == 200 ? "owl" : ""; // of the last answer alone
            QCOMPARE(sink.data(), body);
            QCOMPARE(outcome.hash, QCryptographicHash::hash(body, QCryptographicHash::Md5));
            const auto error = QVariant::fromValue(QNetworkReply::NetworkError(outcome.error)).toString();
            QCOMPARE("%1 %2"_s.arg(outcome.status).arg(error), row[1]);
            QCOMPARE(other.requests().size(), row[0].startsWith("OTHER"_s) ? 1 : 0);
            const auto headers = (other.requests().isEmpty() ? server : other).requests().last().headers;
            QCOMPARE(headers.contains("authorization"), row[2] == "yes"_s);
            QCOMPARE(headers.contains("cookie"), row[2] == "yes"_s);
            QCOMPARE(headers.value("if-none-match"), "a=secret");
        }
    }

    void finishesOnceWhateverGoesAway()
    {
        const auto half = raw("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nowl", HttpAnswer::Stall);
        const LogCapture log("tamsel.request"_s);
        auto mortal = std::make_unique<NetworkAccessManager>();
        auto sink = std::make_unique<Sink>();
        const auto fails = [&](const HttpAnswer &answer, const SetUp &setUp) {
            const Outcome outcome = run(request(answer), mortal ? mortal.get() : manager.data(), setUp);
            return outcome.finished == 1 && outcome.error != 0 && !outcome.ok;
        };
        const auto pour = [&sink](GetRequest *get) { get->setDataSink(sink.get()); };
        sink->before = [&] { QTimer::singleShot(0, this, [&] { mortal.reset(); }); };
        QVERIFY(fails(half, pour) && !mortal);
        sink->before = [] {};
        sink->share = 2;
        QVERIFY(fails(half, pour));
        QVERIFY(fails(HttpAnswer::with(200, "owl"), [&](GetRequest *get) {
            pour(get);
            sink.reset();
        }));
        QVERIFY(fails(half, [](GetRequest *get) {
            get->setSuppressErrors(false);
            connect(get->reply(), &QNetworkReply::readyRead, get, [get] { get->reply()->abort(); });
        }));
        QCOMPARE(run(request(half), nullptr).finished, 1);
        QCOMPARE(run(QNetworkRequest(QUrl("file:///etc/hostname"_s)), manager.data()).finished, 1);
        QCOMPARE(log.lines().filter("debug: Request failed: "_s).size(), 5);
        QCOMPARE(log.lines().filter("warning: Request failed: "_s).size(),
                 1); // of the one that was to complain
    }

    void waitsForItsTurnWithoutItsClock()
    {
        ScriptedServer other;
        for (ScriptedServer *place : {&server, &other})
            place->setAnswer("/held", raw("", HttpAnswer::Stall));
        server.setAnswer("/good", HttpAnswer::with(200));
        server.setAnswer("/away", HttpAnswer::redirect(302, other.url("/held"_s).toEncoded()));
        auto mortal = std::make_unique<NetworkAccessManager>();
        QStringList ended;
        QObject owner;
        const auto send = [&](const char *path, const ScriptedServer &to) {
            auto *get =
                new GetRequest(QNetworkRequest(to.url(QString::fromLatin1(path))), mortal.get(), &owner);
            get->setSuppressErrors(true);
            connect(get, &GetRequest::finished, get,
                    [&ended, get, path] { ended << "%1 %2"_s.arg(QLatin1String(path)).arg(get->error()); });
            return get;
        };
        GetRequest *held = nullptr;
        for (int i = 0; i < 6; ++i)
            held = send("/held", server);
        GetRequest *waiting = send("/good", server);
        waiting->setTransferTimeout(std::chrono::milliseconds(1));
        send("/held", other)->setTransferTimeout(std::chrono::milliseconds(100));
        QTRY_COMPARE(ended, QStringList("/held %1"_s.arg(QNetworkReply::TimeoutError)));
        QTRY_COMPARE(server.count("/held"), 6);
        waiting->setTransferTimeout(std::chrono::seconds(30));
        delete send("/good", server);
        send("/good", server);
        delete held;
        QTRY_COMPARE(ended.mid(1), QStringList({"/good 0"_s, "/good 0"_s}));
        send("/away", server);
        send("/good", server);
        QTRY_COMPARE(ended.mid(3), QStringList("/good 0"_s));
        for (const char *path : {"/held", "/good", "/good"})
            send(path, server);
        mortal.reset();
        QTRY_COMPARE(ended.mid(4).filter(" %1"_s.arg(QNetworkReply::OperationCanceledError)).size(), 9);
    }

    void destructionAborts()
    {
        Sink sink;
        GetRequest *get = nullptr;
        sink.before = [&] { delete get; };
        const QByteArray body(500000, 'x');
        for (const HttpAnswer &answer : {HttpAnswer::with(200, body), packed(gzip(body))}) {
            get = new GetRequest(request(answer), manager.data());
            QSignalSpy finished(get, &GetRequest::finished);
            QSignalSpy gone(get, &QObject::destroyed);
            get->setDataSink(&sink);
            QVERIFY(gone.wait() && finished.isEmpty());
            QTRY_COMPARE(server.connections(), 0);
        }
    }

    void managerIsSharedWhileHeldAndKeepsNoCookies()
    {
        QCOMPARE(NetworkAccessManager::sharedInstance(), manager);
        run(request(HttpAnswer::with(200, {}, "Set-Cookie: a=b; path=/\r\n")), manager.data());
        run(request(HttpAnswer::with(200)), manager.data());
        QVERIFY(!server.requests().last().headers.contains("cookie"));
    }

    void urlsOfAService()
    {
        // base | url | request | credentials
        const auto table = rows(R"(
            https://h/x          | ./api/v1/ledger      | https://h/x/api/v1/ledger | yes
            https://h/a%2Fb?q#f  | c                    | https://h/a%2Fb/c         | yes
            https://h/x          | ../../y              | https://h/y               | yes
            https://h/x          | https://H:443/y      | https://h:443/y           | yes
            https://h/x          | //other/y            | https://other/y           | no
            https://h/x          | https://h:444/y      | https://h:444/y           | no
            https://h/x          | file:///etc/hostname | file:///etc/hostname      | no
        )");
        for (const Row &row : table) {
            Service service{QUrl(row[0])};
            service.setBearerToken("secret"_s);
            const QNetworkRequest made = service.createRequest(QUrl(row[1]));
            QCOMPARE(made.url().toString(QUrl::FullyEncoded), row[2]);
            QCOMPARE(made.rawHeader("Authorization"), row[3] == "yes"_s ? "Bearer secret" : "");
        }
    }

    void servicesConnectAndSendTheirCredentials()
    {
        const bool hasSix = QTcpServer().listen(QHostAddress::LocalHostIPv6); // containers may not
        ScriptedServer six(hasSix ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost);
        six.setHandler([](const HttpRequest &) { return HttpAnswer::with(200); });
        QUrl url = six.url("/base"_s);
        url.setUserInfo("me:p%40ss"_s);
        Service service(url);
        Service unusable(QUrl("ftp://h/"_s));
        const auto sent = [&service] {
            ts::Request *get = service.getRequest(QUrl("./y"_s));
            get->setSuppressErrors(true);
            QSignalSpy finished(get, &ts::Request::finished);
            return finished.wait() && get->isOk(200);
        };
        QVERIFY(!sent());
        QSignalSpy changed(&service, &Service::statusChanged);
        for (Service *each : {&service, &unusable, &service})
            each->enable();
        QVERIFY(service.status() == Service::Connecting && changed.size() == 1); // until the event loop runs
        QTRY_COMPARE(unusable.status(), Service::Failed);
        QVERIFY(service.status() == Service::Ready && changed.size() == 2);
        QVERIFY(sent());
        QCOMPARE(six.requests().last().path, "/base/y");
        const QByteArray credentials = six.requests().last().headers.value("authorization");
        QCOMPARE(credentials, "Basic " + QByteArray("me:p@ss").toBase64());
        service.setBearerToken("a\r\nX: y"_s);
        QVERIFY(sent() && !six.requests().last().headers.contains("authorization"));
        service.disable();
        service.enable();
        service.disable();
        service.disable();
        QCoreApplication::processEvents();
        QVERIFY(service.status() == Service::Disabled && changed.size() == 5);
    }

    void idsNameDirectories()
    {
        const auto id = [](const QString &text) { return Service(QUrl("http://h/x"_s), text).uuid(); };
        const QString good = "0f8fad5b-d9cb-469f-a165-70867728950e"_s;
        for (const QString &form : {good, good.toUpper(), QUuid(good).toString()})
            QCOMPARE(id(form), good);
        for (const QString &bad : {""_s, "../../etc"_s, QString(good + "/.."_s), QUuid().toString()})
            QCOMPARE(QUuid(id(bad)).toString(QUuid::WithoutBraces), id(bad));
        QCOMPARE(id("a"_s), "e1407479-3136-56c0-9908-bb02fb0339e2"_s); // in every version
        QCOMPARE(Service(QUrl("http://u@h/x/"_s)).uuid(), Service(QUrl("http://h/x"_s)).uuid());
    }

    void keepsTheDataDirectory()
    {
        qputenv("XDG_DATA_HOME", "data"); // relative
        const QString place = ts::Locations::dataLocation().absolutePath();
        const QString start = QDir::currentPath();
        QVERIFY(QDir::setCurrent(QDir::rootPath()));
        const QString later = ts::Locations::dataLocation().absolutePath();
        QVERIFY(QDir::setCurrent(start));
        QCOMPARE(later, place);
    }
};

QTEST_GUILESS_MAIN(tst_Network)
#include "tst_network.moc"
