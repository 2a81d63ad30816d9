#include "nginx.h"

#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"
#include "repository/packagerepository.h"
#include "server/packageserver.h"
#include "support/diskfaults.h"
#include "support/fakeclock.h"
#include "support/files.h"
#include "support/httpserver.h"
#include "support/logcapture.h"
#include "tools/workshop.h"

#include <Tamsel/Locations>
#include <TamselAccount/Service>

#include <QDirIterator>
#include <QScopeGuard>
#include <QSslConfiguration>
#include <QThreadPool>
#include <QUuid>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using Polled = PackageServer::PollResult;

namespace {

constexpr int patience = 60000; // milliseconds; long, since the machine may be busy
const auto sound = "sound-woodpecker"_s;
const auto soundPath = "packages/sound/bird/sound-woodpecker/"_s;
const auto call = soundPath + "call.wav"_s;

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
    void knowsItsServer();
    void startsWhileTheServerIsAway();
    void copesWithFiles_data();
    void copesWithFiles();
    void copesWithItsDisk();
    void showsWhatIsNotInstalled();

private:
    bool publish() const { return workshop.run("publish SIGNED CATALOGUE www"_s).exitCode == 0; }
    QByteArray original(const QString &name) const
    {
        return readFile(workshop.catalogue.path() + "/"_s + name);
    }
    QString idOf(const QString &file) const
    {
        return QString::fromLatin1(
            QCryptographicHash::hash(original(file), QCryptographicHash::Sha224).toHex());
    }

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

void tst_Nginx::pollsWithTags_data()
{
    QTest::addColumn<QString>("directives");
    QTest::addColumn<QString>("tag");
    QTest::newRow("") << QString() << "\"[^\"]+\""_s;
    QTest::newRow("gzip") << "gzip on; gzip_types *; gzip_min_length 1;"_s
                          << "W/\"[^\"]+\""_s;
}

void tst_Nginx::pollsWithTags()
{
    QFETCH(QString, directives);
    QFETCH(QString, tag);
    const auto encoding = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(nginx.start(directives));
    Application application(nginx.url());
    QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
    QCOMPARE(application.poll(), int(Polled::LedgerUnchanged));
    QVERIFY(application.package(sound));
    QVERIFY(application.becomes(sound, PackageReference::Installed));

    const QByteArray member = "edited " + encoding.toLatin1();
    const QByteArray manifest =
        original(soundPath + "manifest.json"_s).replace(0, 1, "{\"" + member + "\":true,");
    workshop.catalogue.writeFile(soundPath + "manifest.json"_s, manifest);
    QVERIFY(publish());
    QCOMPARE(application.poll(), int(Polled::LedgerUpdated));
    const auto edited = [&] {
        return application.package(sound)->readManifest(QString::fromLatin1(member)).toBool();
    };
    QTRY_VERIFY_WITH_TIMEOUT(edited(), patience);

    const auto answers = "%1;/api/v1/ledger%2;%3;Basic dXNlcjpzZWNyZXQ=;%4"_s;
    QTRY_COMPARE(nginx.count(answers.arg("200"_s, QString(), QString(), encoding)), 1);
    QTRY_COMPARE(nginx.count(answers.arg("304"_s, QString(), tag, QString())), 1);
    QTRY_COMPARE(nginx.count(answers.arg("200"_s, QString(), tag, encoding)), 1);
    QTRY_COMPARE(nginx.count(answers.arg("200"_s, "/"_s + idOf(call), QString(), encoding)), 1);
}

// A library that does not trust the certificate gets nothing. One that does follows redirects to TLS, and
// none that lead out of it.
void tst_Nginx::knowsItsServer()
{
    const QString certificate = workshop.path("server.pem"_s);
    const auto make = "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=x "
                      "-addext subjectAltName=IP:127.0.0.1 -out %1 -keyout %2"_s;
    const QStringList arguments = make.arg(certificate, workshop.path("server.key"_s)).split(" "_s);
    QCOMPARE(QProcess::execute(QStringLiteral(OPENSSL), arguments), 0);
    QVERIFY(nginx.start(QString(), Nginx::Tls));
    const LogCapture log("tamsel.request"_s);
    QCOMPARE(Application(nginx.url()).poll(), int(Polled::PollFailed));

    const QSslConfiguration untrusting = QSslConfiguration::defaultConfiguration();
    const auto restore = qScopeGuard([&] { QSslConfiguration::setDefaultConfiguration(untrusting); });
    QSslConfiguration trusting = untrusting;
    QVERIFY(trusting.addCaCertificates(certificate));
    QSslConfiguration::setDefaultConfiguration(trusting);
    QCOMPARE(Application(nginx.url()).poll(), int(Polled::LedgerUpdated));
    ScriptedServer plain;
    plain.setAnswer("/api/v1/ledger", HttpAnswer::redirect(302, nginx.url().toEncoded() + "/api/v1/ledger"));
    QCOMPARE(Application(plain.url()).poll(), int(Polled::LedgerUpdated));
    const int asked = plain.requests().size();
    QVERIFY(nginx.start("rewrite ^ %1 redirect;"_s.arg(plain.url().toString()), Nginx::Tls));
    QCOMPARE(Application(nginx.url()).poll(), int(Polled::PollFailed));
    QCOMPARE(plain.requests().size(), asked);

    QCOMPARE(log.lines().size(), 2);
    QVERIFY2(log.lines().at(0).contains("self-signed"_s), qPrintable(log.lines().at(0)));
    QVERIFY2(log.lines().at(1).contains("less safe"_s), qPrintable(log.lines().at(1)));
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

// What nginx is told to do with a file, and the error; none if the file comes all the same.
void tst_Nginx::copesWithFiles_data()
{
    QTest::addColumn<QString>("error");
    const auto row = [](const char *directive, const char *error) {
        QTest::newRow(directive) << QString::fromUtf8(error);
    };
    row("return 404;", "2 \"Download of .* failed with code 404, error 203");
    row("return 500;", "2 \"Download of .* failed with code 500, error 401");
    row("return 444;", "2 \"Download of .* failed with code 0, error 2"); // closes the connection
    row("return 200 tampered;", "3 \"Commit of file .* failed .code 2");
    row("return 302 ELSEWHERE;", "");
    row("limit_rate 3k;", "");
}

void tst_Nginx::copesWithFiles()
{
    QFETCH(QString, error);
    QByteArray directive = QTest::currentDataTag();
    const QString path = "/api/v1/ledger/"_s + idOf(call);
    ScriptedServer elsewhere;
    elsewhere.setAnswer(path.toLatin1(), HttpAnswer::with(200, original(call)));
    directive.replace("ELSEWHERE", elsewhere.url(path).toEncoded());
    QVERIFY(nginx.start("location = %1 { %2 }"_s.arg(path, QString::fromLatin1(directive))));
    const LogCapture log("tamsel.packages"_s);
    Application application(nginx.url());
    QVERIFY(application.package(sound));

    if (!error.isEmpty()) {
        QVERIFY(application.becomes(sound, PackageReference::Incomplete));
        // A server that closes a connection without a word may take the next file with it.
        const QStringList lines = log.lines().filter(idOf(call));
        QVERIFY2(lines.size() == 1, qPrintable(log.lines().join(QLatin1Char('\n'))));
        QVERIFY2(lines.constFirst().contains(QRegularExpression("error "_s + error)),
                 qPrintable(lines.constFirst()));
        QVERIFY(!QFile::exists(application.package(sound)->getFileUrl("call.wav"_s).toLocalFile()));
        QVERIFY(nginx.start());
        FakeClock::advance(std::chrono::seconds(31)); // the next try
    }
    QVERIFY(application.becomes(sound, PackageReference::Installed));
    const PackageReference *reference = application.repository.packageReference(sound);
    QCOMPARE(readFile(reference->fileUrl("call.wav"_s).toLocalFile()), original(call));
    if (directive.contains("302")) {
        QCOMPARE(elsewhere.requests().size(), 1);
        QVERIFY(!elsewhere.requests().constLast().headers.contains("authorization"));
    }
}

// Which is full at first, and then has a file in the place of the directory into which packages are
// installed.
void tst_Nginx::copesWithItsDisk()
{
    QVERIFY(nginx.start());
    auto application = std::make_unique<Application>(nginx.url());
    QVERIFY(application->package(sound));
    const LogCapture log("tamsel.packages"_s);
    const QString id = idOf(call);
    {
        const FileSizeLimit limit(1000);
        QVERIFY(application->becomes(sound, PackageReference::Incomplete));
    }
    const auto noRoom =
        "critical: Package install error 3 \"Commit of file %1 (./api/v1/ledger/%1) failed (code 5)\""_s;
    QCOMPARE(log.lines().filter(id), QStringList(noRoom.arg(id)));
    QVERIFY(!application->package(sound)->getFileUrl("call.wav"_s).isLocalFile());
    FakeClock::advance(std::chrono::seconds(31)); // the next try
    QVERIFY(application->becomes(sound, PackageReference::Installed));
    application.reset();
    const QString place = data.filePath("packages/install"_s);
    QVERIFY(QDir(place).removeRecursively() && writeFile(place, "in the way"));
    application = std::make_unique<Application>(nginx.url());
    QVERIFY(application->becomes(sound, PackageReference::Incomplete));
    const auto noPlace = "critical: Package install error 4 \"Failed to install file call.wav (%1)\""_s;
    QCOMPARE(log.lines().filter(id).mid(1), QStringList(noPlace.arg(id)));
    QVERIFY(QFile::remove(place));
    application->repository.update(); // the new index gets a place of its own
    QVERIFY(application->becomes(sound, PackageReference::Installed));
}

// To another client, which asks for all over one connection.
void tst_Nginx::showsWhatIsNotInstalled()
{
    QVERIFY(nginx.start("location = /api/v1/ledger/%1 { return 404; }"_s.arg(idOf(call))));
    Application application(nginx.url());
    QVERIFY(application.package(sound));
    const QUrl missing = application.package(sound)->getFileUrl("call.wav"_s);
    const QUrl text = application.package("bird-woodpecker"_s)->getFileUrl("text.html"_s);
    QCOMPARE(text.host(), "localhost"_s);
    ChildProcess curl;
    curl.start(QStringLiteral(CURL), {"-s"_s, "-w"_s, " %{http_code} %{content_type} %{num_connects}\n"_s,
                                      text.toString(), text.toString(), missing.toString()});
    QTRY_COMPARE_WITH_TIMEOUT(curl.state(), QProcess::NotRunning, patience);
    const QByteArray page = original("packages/guide/bird/bird-woodpecker/text.html"_s);
    QCOMPARE(curl.readAllStandardOutput(),
             page + " 200 text/html 1\n" + page + " 200 text/html 0\nNot Found 404  0\n");
    QVERIFY(application.package("bird-woodpecker"_s)->getFileUrl("text.html"_s).isLocalFile());
}

QTEST_GUILESS_MAIN(tst_Nginx)

#include "tst_nginx.moc"
