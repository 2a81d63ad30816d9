#include "nginx.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"
#include "repository/packagerepository.h"
#include "server/packageserver.h"
#include "support/fakeclock.h"
#include "support/filesizelimit.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "tools/workshop.h"

#include <Tamsel/Locations>
#include <TamselAccount/Service>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThreadPool>
#include <QUuid>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using Polled = PackageServer::PollResult;

Q_DECLARE_METATYPE(ts::pm::test::HttpAnswer)

namespace {

constexpr int patience = 60000; // milliseconds; long, since the machine may be busy
const auto credentials = "Basic dXNlcjpzZWNyZXQ="_s;
const auto sound = "sound-woodpecker"_s;
const auto soundPath = "packages/sound/bird/sound-woodpecker/"_s;

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

/** An application that has the packages of one server. */
class Application
{
public:
    explicit Application(const QUrl &url, const QString &uuid = QUuid::createUuid().toString())
        : service(url, uuid)
        , server(&service)
        , polls(&server, &PackageServer::pollFinished)
        , repository(PackageRepository::PersistAfterUpdate)
    {
        service.setUserAndPassword("user"_s, "secret"_s);
        repository.addSource(&server);
    }

    /** Asks for the ledger, unless that is under way, and waits for what comes of it. */
    int poll()
    {
        polls.clear();
        server.update();
        while (polls.isEmpty() && polls.wait(patience)) {
        }
        return polls.isEmpty() ? -1 : polls.constFirst().first().toInt();
    }

    /** Waits until the index has packages; null if that does not come. */
    PackageNode *package(const QString &id)
    {
        const auto find = [&] {
            const auto index = repository.packageIndex();
            return index ? index->getPackage(QStringRef(&id)) : nullptr;
        };
        return QTest::qWaitFor(find, patience) ? find() : nullptr;
    }

    bool becomes(const QString &id, PackageReference::Status status)
    {
        const PackageReference *reference = repository.packageReference(id);
        return QTest::qWaitFor([=] { return reference->status() == status; }, patience);
    }

    ts::account::Service service;
    PackageServer server;
    QSignalSpy polls;
    PackageRepository repository;
};

} // namespace

class tst_Nginx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void pollsWithTags_data();
    void pollsWithTags();
    void startsWhileTheServerIsAway();
    void copesWithLedgers();
    void copesWithFiles_data();
    void copesWithFiles();
    void showsWhatIsNotInstalled();
    void copesWithFullDisks();
    void copesWithoutItsDirectory();

private:
    bool publish() const { return workshop.run("publish SIGNED CATALOGUE www"_s).exitCode == 0; }
    QByteArray original(const QString &name) const { return read(workshop.catalogue.path() + "/"_s + name); }
    QString served(const QString &file) const; // path below the URL of the service
    HttpAnswer answer(const HttpRequest &request) const;
    int errors(const LogCapture &log, const QString &text) const;

    QTemporaryDir data;
    Workshop workshop;
    Nginx nginx{workshop.path(QString())};
};

void tst_Nginx::initTestCase()
{
    qRegisterMetaType<PackageServer::PollResult>();
    QVERIFY(ts::Locations::setDataLocation(QDir(data.path())));
    QCOMPARE(QProcess::execute("cp"_s, {"-r"_s, CATALOGUE "/."_s, workshop.catalogue.path()}), 0);
    QVERIFY(publish());
    QVERIFY(QDir(workshop.path(QString())).mkdir("temporary"_s));
}

// Each function begins with an empty store.
void tst_Nginx::init()
{
    QThreadPool::globalInstance()->waitForDone();
    QDirIterator files(data.filePath("packages/files"_s), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        QVERIFY(QFile::remove(files.next()));
}

QString tst_Nginx::served(const QString &file) const
{
    const QByteArray digest = QCryptographicHash::hash(original(file), QCryptographicHash::Sha224);
    return "/api/v1/ledger/"_s + QString::fromLatin1(digest.toHex());
}

// What nginx would answer.
HttpAnswer tst_Nginx::answer(const HttpRequest &request) const
{
    const QString path = workshop.path("www"_s) + QString::fromLatin1(request.path);
    return HttpAnswer::with(200, read(QFileInfo(path).isDir() ? path + "/index"_s : path));
}

// How often the text has been logged of the files of one package, with ids and names filled in. There may be
// errors of translations, too, which install by themselves.
int tst_Nginx::errors(const LogCapture &log, const QString &text) const
{
    int errors = 0;
    for (const QString &name : {"call.wav"_s, "picture.svg"_s}) {
        const QString id = served(soundPath + name).section(QLatin1Char('/'), -1);
        errors += log.lines().count("critical: Package install error "_s
                                    + QString(text).replace("ID"_s, id).replace("NAME"_s, name));
    }
    return errors;
}

void tst_Nginx::pollsWithTags_data()
{
    QTest::addColumn<QString>("directives");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("encoding");
    QTest::newRow("plain") << QString() << "\"[^\"]+\""_s << QString();
    QTest::newRow("gzip") << "gzip on; gzip_types *; gzip_min_length 1;"_s
                          << "W/\"[^\"]+\""_s
                          << "gzip"_s;
}

void tst_Nginx::pollsWithTags()
{
    QFETCH(QString, directives);
    QFETCH(QString, tag);
    QFETCH(QString, encoding);
    QVERIFY(nginx.start(directives));
    Application application(nginx.url());
    QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
    QCOMPARE(application.poll(), int(Polled::LedgerUnchanged));
    QVERIFY(application.package(sound));
    QVERIFY(!application.package(sound)->readManifest("edited"_s).toBool());
    QVERIFY(application.becomes(sound, PackageReference::Installed));

    const QString name = soundPath + "manifest.json"_s;
    const QByteArray manifest = original(name);
    workshop.catalogue.writeFile(name, QByteArray(manifest).replace(0, 1, "{\"edited\":true,"));
    QVERIFY(publish());
    QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
    QTRY_VERIFY_WITH_TIMEOUT(application.package(sound)->readManifest("edited"_s).toBool(), patience);
    workshop.catalogue.writeFile(name, manifest);
    QVERIFY(publish());

    const auto answers = "%1;/api/v1/ledger;%2;%3;%4"_s;
    QTRY_COMPARE(nginx.count(answers.arg("200"_s, QString(), credentials, encoding)), 1);
    QTRY_COMPARE(nginx.count(answers.arg("304"_s, tag, credentials, QString())), 1);
    QTRY_COMPARE(nginx.count(answers.arg("200"_s, tag, credentials, encoding)), 1);
    QTRY_COMPARE(nginx.count("200;%1;;%2;%3"_s.arg(served(soundPath + "call.wav"_s), credentials, encoding)),
                 1);
}

void tst_Nginx::startsWhileTheServerIsAway()
{
    const QString uuid = QUuid::createUuid().toString();
    QVERIFY(nginx.start());
    {
        Application application(nginx.url(), uuid);
        QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
        QVERIFY(application.becomes("bird-woodpecker"_s, PackageReference::Installed));
        nginx.stop();
        QCOMPARE(application.poll(), int(Polled::PollFailed));
    }
    QThreadPool::globalInstance()->waitForDone(); // the ledger is saved

    const auto hike = "hike-koenigssee-viewpoint"_s;
    Application application(nginx.url(), uuid);
    QVERIFY(application.becomes("bird-woodpecker"_s, PackageReference::Installed));
    QVERIFY(application.package(hike));
    QVERIFY(application.becomes(hike, PackageReference::Incomplete));
    QVERIFY(nginx.start());
    FakeClock::advance(std::chrono::seconds(31)); // the next try
    QVERIFY(application.becomes(hike, PackageReference::Installed));
    for (const QString &required : {hike, "map-berchtesgaden"_s, "map-base-alps"_s})
        QVERIFY(application.package(required)->getFileUrl("picture.svg"_s).isLocalFile());
    QVERIFY(application.poll() != Polled::PollFailed);
    QTRY_VERIFY(nginx.count("304;/api/v1/ledger;\"[^\"]+\";.*"_s) > 0);
}

// Whatever comes in the place of a ledger, the one before stays. Most of it nginx would not send. Those that
// fail come last: after a failure the server is soon asked again, and on a slow machine that could be before
// the next answer.
void tst_Nginx::copesWithLedgers()
{
    const QByteArray good = read(workshop.path("www/api/v1/ledger/index"_s));
    const QByteArray head = "HTTP/1.1 200 OK\r\nETag: \"x\"\r\nContent-Length: ";
    const QByteArray size = QByteArray::number(good.size()) + "\r\n\r\n";
    QByteArray tampered = good;
    tampered[good.indexOf("title")] = 'T';
    const QVector<QPair<Polled, HttpAnswer>> answers{
        {Polled::LedgerRejected, HttpAnswer::with(200, tampered)},
        {Polled::LedgerRejected, HttpAnswer::with(200, {}, "ETag: \"empty\"\r\n")},
        {Polled::LedgerUpdated, {"HTTP/1.1 200 OK\r\nETag: \"x\"\r\n\r\n" + good, HttpAnswer::Close, {}}},
        {Polled::PollFailed, {head + size + good.chopped(1), HttpAnswer::Close, {}}},
        {Polled::PollFailed, HttpAnswer::with(206, good)},
        {Polled::PollFailed, HttpAnswer::with(500, good)},
        {Polled::PollFailed, HttpAnswer::redirect(302, "/api/v1/ledger")},
        {Polled::PollFailed, {"junk\r\n\r\n", HttpAnswer::Close, {}}},
    };
    const LogCapture log("tamsel.packageserver"_s);
    ScriptedServer server;
    server.setHandler([this](const HttpRequest &request) { return answer(request); });
    server.setAnswer("/api/v1/ledger", HttpAnswer::with(304));
    Application application(server.url());
    QCOMPARE(application.poll(), int(Polled::LedgerUnchanged)); // nobody has asked whether there is a change
    server.setAnswer("/api/v1/ledger", HttpAnswer::with(200, good, "ETag: \"x\"\r\n"));
    QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
    QVERIFY(application.package(sound));
    for (const auto &[result, bad] : answers) {
        server.setAnswer("/api/v1/ledger", bad);
        QCOMPARE(application.poll(), int(result));
        QVERIFY(application.package(sound));
    }
    const auto isUntagged = [](const HttpRequest &request) {
        return request.path == "/api/v1/ledger" && !request.headers.contains("if-none-match");
    };
    QCOMPARE(std::count_if(server.requests().begin(), server.requests().end(), isUntagged), 2);

    QVERIFY(nginx.start());
    const QString index = workshop.path("www/api/v1/ledger/index"_s);
    Application other(nginx.url());
    QCOMPARE(other.poll(), int(Polled::LedgerUpdated));
    QVERIFY(write(index, tampered + ' ')); // of another size, so with another tag
    QCOMPARE(other.poll(), int(Polled::LedgerRejected));
    QVERIFY(write(index, good));
    QVERIFY(other.becomes(sound, PackageReference::Installed));
}

void tst_Nginx::copesWithFiles_data()
{
    QTest::addColumn<QString>("directive"); // of nginx; without one the answer comes from another server
    QTest::addColumn<HttpAnswer>("answer");
    QTest::addColumn<QString>("error"); // empty if the file comes all the same
    const auto nginxRow = [](const char *directive, const char *error) {
        QTest::newRow(directive) << QString::fromUtf8(directive) << HttpAnswer() << QString::fromUtf8(error);
    };
    nginxRow("return 404;", "2 \"Download of .* failed with code 404, error 203");
    nginxRow("return 500;", "2 \"Download of .* failed with code 500, error 401");
    nginxRow("return 444;", "2 \"Download of .* failed with code 0, error 2"); // closes the connection
    nginxRow("return 200 tampered;", "3 \"Commit of file .* failed .code 2");
    nginxRow("return 302 ELSEWHERE;", "");
    nginxRow("limit_rate 3k;", "");

    const QByteArray call = original(soundPath + "call.wav"_s);
    const auto row = [](const char *name, const QByteArray &head, const QByteArray &body, const char *error) {
        QTest::newRow(name) << QString()
                            << HttpAnswer{"HTTP/1.1 " + head + "\r\n\r\n" + body, HttpAnswer::Close, {}}
                            << QString::fromUtf8(error);
    };
    const QByteArray length = "200 OK\r\nContent-Length: " + QByteArray::number(call.size());
    row("cut", length, call.chopped(1), "2 \"Download of .* failed with code 200, error 2");
    row("longer", "200 OK\r\nContent-Length: 9", call, "[23] \"");
    row("cut without a length", "200 OK", call.chopped(1), "3 \"Commit of file .* failed .code 2");
    row("cut in a chunk", "200 OK\r\nTransfer-Encoding: chunked", "fff\r\n" + call.left(99), "[23] \"");
    row("no gzip", length + "\r\nContent-Encoding: gzip", call, "[23] \"");
    row("part", "206 Part\r\nContent-Length: 9", call.left(9), "2 \"Download of .* failed with code 206");
    row("unchanged", "304 Not Modified", {}, "2 \"Download of .* failed with code 304, error 0");
}

void tst_Nginx::copesWithFiles()
{
    QFETCH(QString, directive);
    QFETCH(HttpAnswer, answer);
    QFETCH(QString, error);
    const QString name = soundPath + "call.wav"_s;
    const QString path = served(name);
    ScriptedServer scripted;
    scripted.setHandler([this](const HttpRequest &request) { return this->answer(request); });
    if (directive.isEmpty())
        scripted.setAnswer(path.toLatin1(), answer);
    directive.replace("ELSEWHERE"_s, scripted.url(path).toString());
    const auto location = "location = %1 { default_type application/octet-stream; %2 }"_s;
    QVERIFY(nginx.start(location.arg(path, directive)));
    const LogCapture log("tamsel.packages"_s);
    Application application(directive.isEmpty() ? scripted.url() : nginx.url());
    QVERIFY(application.package(sound));

    if (!error.isEmpty()) {
        QVERIFY(application.becomes(sound, PackageReference::Incomplete));
        QCOMPARE(log.lines().size(), 1);
        const QString line = log.lines().constFirst();
        QVERIFY2(line.contains(QRegularExpression("error "_s + error)), qPrintable(line));
        QVERIFY(!QFile::exists(application.package(sound)->getFileUrl("call.wav"_s).toLocalFile()));
        scripted.setAnswer(path.toLatin1(), HttpAnswer::with(200, original(name)));
        QVERIFY(nginx.start());
        FakeClock::advance(std::chrono::seconds(31)); // the next try
    }
    QVERIFY(application.becomes(sound, PackageReference::Installed));
    const PackageReference *reference = application.repository.packageReference(sound);
    QCOMPARE(read(reference->fileUrl("call.wav"_s).toLocalFile()), original(name));
    if (directive.contains("302"_s)) {
        QCOMPARE(scripted.count(path.toLatin1()), 1);
        QVERIFY(!scripted.requests().constLast().headers.contains("authorization"));
    }
}

void tst_Nginx::showsWhatIsNotInstalled()
{
    const QString gone = served(soundPath + "call.wav"_s);
    QVERIFY(nginx.start("location = %1 { return 404; }"_s.arg(gone)));
    Application application(nginx.url());
    PackageNode *node = application.package(sound);
    QVERIFY(node);
    QNetworkAccessManager manager;
    const QUrl picture = node->getFileUrl("picture.svg"_s);
    QCOMPARE(picture.host(), "localhost"_s);
    const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(picture)));
    QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), patience);
    QCOMPARE(reply->readAll(), original(soundPath + "picture.svg"_s));
    QVERIFY(node->getFileUrl("picture.svg"_s).isLocalFile());

    const auto curl = [](const QUrl &url) {
        ChildProcess process;
        process.start(QStringLiteral(CURL),
                      {"-s"_s, "-w"_s, "%{http_code} %{content_type}"_s, url.toString()});
        const auto ended = [&] { return process.state() == QProcess::NotRunning; };
        return QTest::qWaitFor(ended, patience) ? process.readAllStandardOutput() : QByteArray();
    };
    PackageNode *bird = application.package("bird-woodpecker"_s);
    QCOMPARE(curl(bird->getFileUrl("text.html"_s)),
             original("packages/guide/bird/bird-woodpecker/text.html"_s) + "200 text/html");
    QCOMPARE(curl(node->getFileUrl("call.wav"_s)), QByteArray("Not Found404 "));
}

void tst_Nginx::copesWithFullDisks()
{
    QVERIFY(nginx.start());
    Application application(nginx.url());
    QVERIFY(application.package(sound));
    const LogCapture log("tamsel.packages"_s);
    {
        const FileSizeLimit limit(1000);
        QVERIFY(application.becomes(sound, PackageReference::Incomplete));
    }
    QCOMPARE(errors(log, "3 \"Commit of file ID (./api/v1/ledger/ID) failed (code 5)\""_s), 2);
    for (const QString &name : {"call.wav"_s, "picture.svg"_s})
        QVERIFY(!application.package(sound)->getFileUrl(name).isLocalFile());
    FakeClock::advance(std::chrono::seconds(31)); // the next try
    QVERIFY(application.becomes(sound, PackageReference::Installed));
}

// Which can be neither made nor written, for a file that stands in its place.
void tst_Nginx::copesWithoutItsDirectory()
{
    const QString place = data.filePath("packages/install"_s);
    QVERIFY(QDir(place).removeRecursively() && write(place, "in the way"));
    QVERIFY(nginx.start());
    Application application(nginx.url());
    QVERIFY(application.package(sound));
    const LogCapture log("tamsel.packages"_s);
    QVERIFY(application.becomes(sound, PackageReference::Incomplete));
    QCOMPARE(errors(log, "4 \"Failed to install file NAME (ID)\""_s), 2);
    QVERIFY(QFile::remove(place));
    application.repository.update(); // the new index gets a place of its own
    QVERIFY(application.becomes(sound, PackageReference::Installed));
}

QTEST_GUILESS_MAIN(tst_Nginx)

#include "tst_nginx.moc"
