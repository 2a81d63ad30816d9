#include "server/packageserver.h"
#include "server/packageserveraccessor.h"

#include "server/packageledger.h"
#include "storage/filestore.h"
#include "storage/packageinstaller.h"
#include "support/accessors.h"
#include "support/fakeclock.h"
#include "support/files.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/signedledger.h"

#include <Tamsel/Locations>
#include <Tamsel/Request>
#include <TamselAccount/Service>
#include <TamselNetwork/NetworkAccessManager>

#include <QNetworkReply>
#include <QtConcurrentRun>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using ts::network::NetworkAccessManager;
using Polled = PackageServer::PollResult;

namespace {

const QByteArray ledgerPath = "/api/v1/ledger";

bool pollIsUnderWay()
{
    return !NetworkAccessManager::sharedInstance()->findChildren<QNetworkReply *>().isEmpty();
}

QString revisionOf(const PackageServer &server)
{
    const QScopedPointer<PackageAccessor> accessor(server.getAccessor());
    return accessor->packageCount() > 0 ? accessor->packageInfo(0).revision : QString();
}

/** What came of a URL, as in "200 content". */
QString fetch(const QUrl &url)
{
    QNetworkAccessManager manager;
    const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QSignalSpy(reply.data(), &QNetworkReply::finished).wait();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return QString::number(status) + QLatin1Char(' ') + QString::fromUtf8(reply->readAll());
}

/** A ledger with the package "oak", the server that has it and its files, a service that is ready, and the
 * accessor. */
class Stage : public ScriptedServer
{
public:
    explicit Stage(const SignedLedger::Contents &files = {})
        : uuid(QUuid::createUuid().toString(QUuid::WithoutBraces))
        , service(new ts::account::Service(url(), uuid))
    {
        ledger.addPackage("oak", "plant:tree", R"({"title":"Oak"})", files);
        for (const QByteArray &content : files)
            answerFile(content, 200, content);
        service->enable();
        QCoreApplication::processEvents();
        open();
    }

    static QByteArray pathOf(const QByteArray &content)
    {
        return ledgerPath + '/' + idOf(content).toLatin1();
    }

    void answer(int status, const QByteArray &body = {}, const QByteArray &tag = {})
    {
        const QByteArray header = tag.isEmpty() ? QByteArray() : "ETag: " + tag + "\r\n";
        setAnswer(ledgerPath, HttpAnswer::with(status, body, header));
    }

    void answerFile(const QByteArray &content, int status, const QByteArray &body = {})
    {
        setAnswer(pathOf(content), HttpAnswer::with(status, body));
    }

    QByteArray lastTag() const { return requests().constLast().headers.value("if-none-match"); }

    /** Makes the accessor, anew if there is one. */
    void open()
    {
        const auto parsed = QSharedPointer<PackageLedger>::create(ledger.toByteArray(), QByteArray());
        QVERIFY(parsed->valid);
        accessor.reset(new PackageServerAccessor(service.data(), parsed));
    }

    QUrl fileUrl(const QString &name, int package = 0) { return accessor->packageFileUrl(package, name); }

    SignedLedger ledger;
    const QString uuid;
    QScopedPointer<ts::account::Service> service;
    QScopedPointer<PackageServerAccessor> accessor;
};

/** A server at work, and what it tells. */
class Source
{
public:
    explicit Source(ts::account::Service *service)
        : server(new PackageServer(service))
        , polls(server.data(), &PackageServer::pollFinished)
        , updates(server.data(), &PackageSource::updateRequired)
    {
    }

    /** Waits for the end of the poll under way. */
    bool ends(Polled result)
    {
        while (polls.isEmpty()) {
            if (!polls.wait())
                return false;
        }
        return polls.takeFirst().at(0).value<Polled>() == result
               && QTest::qWaitFor([] { return !pollIsUnderWay(); });
    }

    QScopedPointer<PackageServer> server;
    QSignalSpy polls;
    QSignalSpy updates;
};

} // namespace

class tst_PackageServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<PackageServer::PollResult>();
        QVERIFY(ts::Locations::setDataLocation(QDir(data.path()))); // files of an earlier run would be there
    }

    void waitsBetweenPolls()
    {
        // Status of the answer, seconds until the next poll.
        const QVector<QPair<int, int>> steps{{500, 5},   {404, 10},  {500, 20},  {500, 40},  {500, 80},
                                             {500, 160}, {500, 320}, {500, 320}, {304, 120}, {500, 5},
                                             {500, 10},  {200, 120}, {500, 5}};
        const QMap<int, Polled> results{{200, Polled::LedgerRejected}, {304, Polled::LedgerUnchanged}};
        const LogCapture log("tamsel.packageserver"_s);
        Stage http;
        http.answer(steps.first().first, "no ledger");
        Source source(http.service.data());
        source.server->update(); // while one is under way, another one does not begin
        for (int i = 0; i < steps.size(); ++i) {
            const auto [status, wait] = steps.at(i);
            QVERIFY(source.ends(results.value(status, Polled::PollFailed)));
            QCOMPARE(http.count(ledgerPath), i + 1);
            http.answer(steps.value(i + 1, {500, 0}).first, "no ledger");
            FakeClock::advance(std::chrono::seconds(wait * 3 / 5));
            QVERIFY2(!pollIsUnderWay(), qPrintable(QString::number(wait)));
            FakeClock::advance(std::chrono::seconds(wait * 2 / 5 + 4));
            QVERIFY2(pollIsUnderWay(), qPrintable(QString::number(wait)));
        }
        QVERIFY(source.ends(Polled::PollFailed)); // a request whose server goes away may take 30 s to end
        QCOMPARE(log.lines().size(), 13);
        QCOMPARE(log.lines().at(1), "critical: Ledger update failed with status 404 \"no ledger\""_s);
        QCOMPARE(log.lines().at(8), "debug: Package server update complete - no changes"_s);
    }

    void keepsTheLastGoodLedger()
    {
        Stage http;
        const QByteArray tag = "W/\"a \xe4\"";
        http.answer(200, http.ledger.toByteArray(), tag);
        Source source(http.service.data());
        QCOMPARE(source.server->priority(), 0);
        source.server->persist(); // there is nothing to save yet
        QVERIFY(source.ends(Polled::LedgerUpdated));
        QCOMPARE(http.lastTag(), QByteArray());
        const QString first = revisionOf(*source.server);
        QCOMPARE(first.size(), 32);

        http.setAnswer(ledgerPath,
                       {"HTTP/1.1 200 OK\r\nContent-Length: 268435457\r\n\r\n", HttpAnswer::Stall, {}});
        source.server->update();
        QVERIFY(source.ends(Polled::PollFailed)); // for its size, long before its time is over

        SignedLedger forged = http.ledger;
        forged.records.packages[0].manifest = R"({"title":"Elm"})";
        SignedLedger newer = forged;
        newer.sign(newer.records.packages[0], R"({"title":"Elm"})");
        const QVector<std::tuple<int, QByteArray, Polled>> steps{
            {304, {}, Polled::LedgerUnchanged},
            {200, "no ledger", Polled::LedgerRejected},
            {200, forged.toByteArray(), Polled::LedgerRejected},
            {503, "away", Polled::PollFailed},
            {206, newer.toByteArray(), Polled::PollFailed},
            {200, newer.toByteArray(), Polled::LedgerUpdated},
        };
        for (const auto &[status, body, result] : steps) {
            http.answer(status, body, R"("other")");
            source.server->update();
            QVERIFY(source.ends(result));
            QCOMPARE(http.lastTag(), tag);
            const bool replaced = result == Polled::LedgerUpdated;
            QCOMPARE(source.updates.size(), replaced ? 2 : 1);
            QCOMPARE(revisionOf(*source.server) != first, replaced);
        }

        source.server->persist();
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        const LogCapture log("tamsel.packageserver"_s);
        ts::account::Service service(http.url(), http.uuid); // not ready before the saved ledger is read
        Source restarted(&service);
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QVERIFY(!pollIsUnderWay());
        http.answer(304);
        QVERIFY(restarted.ends(Polled::LedgerUnchanged));
        QCOMPARE(restarted.updates.size(), 1);
        QCOMPARE(revisionOf(*restarted.server), revisionOf(*source.server));
        QCOMPARE(log.lines().first(),
                 "info: Loaded persisted ledger of \"%1\" ETag \"\\\"other\\\"\""_s.arg(http.uuid));
        restarted.server->update();
        QVERIFY(restarted.ends(Polled::LedgerUnchanged));
        QCOMPARE(http.lastTag(), QByteArray(R"("other")"));
    }

    void verifiesADocumentOnce()
    {
        Stage http;
        http.answer(200, http.ledger.toByteArray(), R"("first")");
        Source source(http.service.data());
        QVERIFY(source.ends(Polled::LedgerUpdated));
        const QString revision = revisionOf(*source.server);
        const LogCapture verification("tamsel.packageserver.ledger"_s);
        http.answer(200, http.ledger.toByteArray(), R"("second")");
        for (const char *sent : {R"("first")", R"("second")"}) {
            source.server->update();
            QVERIFY(source.ends(Polled::LedgerUpdated));
            QCOMPARE(http.lastTag(), sent);
        }
        QCOMPARE(source.updates.size(), 3);
        QCOMPARE(revisionOf(*source.server), revision);
        QCOMPARE(verification.lines(), QStringList());
    }

    // Requests, verifications, servers and services end in any order.
    void outlivesNobody()
    {
        Stage http;
        http.answer(200, http.ledger.toByteArray(), R"("tag")");
        QScopedPointer<PackageServer> polling(new PackageServer(http.service.data()));
        QVERIFY(pollIsUnderWay());
        polling.reset();
        QTRY_VERIFY(!pollIsUnderWay());
        QScopedPointer<PackageServer> verifying(new PackageServer(http.service.data()));
        QVERIFY(pollIsUnderWay());
        QTRY_VERIFY(!pollIsUnderWay());
        verifying.reset();
        Source told(http.service.data());
        connect(told.server.data(), &PackageSource::updateRequired, this, [&] { told.server.reset(); });
        QTRY_VERIFY(!told.server);
        QVERIFY(told.polls.isEmpty());
        auto *account = new ts::account::Service(http.url(), http.uuid);
        connect(account, &ts::account::Service::statusChanged, this, [account] { delete account; });
        QVERIFY(!PackageServer(account).isValid());

        Source source(http.service.data());
        http.service.reset();
        QVERIFY(!source.server->isValid());
        QTRY_VERIFY(!pollIsUnderWay());
        source.server->update();
        source.server->persist();
        QVERIFY(!pollIsUnderWay());
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QCOMPARE(revisionOf(PackageServer(nullptr)), QString());
    }

    // The access manager goes with the last service, after the answer and before anybody hears of it.
    void survivesTheAccessManager()
    {
        Stage http;
        http.answer(200, http.ledger.toByteArray(), R"("tag")");
        Source source(http.service.data());
        connect(manager.data(), &QNetworkAccessManager::finished, http.service.data(),
                [&] { http.service.take()->deleteLater(); });
        manager.reset();
        QVERIFY(source.ends(Polled::LedgerUpdated));
        manager = NetworkAccessManager::sharedInstance();
    }

    void records()
    {
        Stage http;
        SignedLedger &ledger = http.ledger;
        ledger.addPackage("ash", "plant", "no manifest");
        ledger.addKeyword("tree", Keyword::Noun,
                          {{"en", {QByteArray("tree\0trees\0x", 12), "wood"}}, {"de", {"Baum"}}});
        ledger.addKeyword("odd", 5);
        ledger.addKeyword("wood", Keyword::Category);
        std::swap(ledger.records.keywords[0].translations[0], ledger.records.keywords[0].translations[1]);
        // Type, flags, source and target.
        ledger.records.links = {{6, 17, 0, 0}, {0, 128, 0, 0},           {1, 8, 0, 0},
                                {7, 0, 0, 3},  {255, 16, 3, 4294967295}, {2, 1, 2147483648, 0}};
        http.open();
        const LogCapture log("tamsel.packageserver.ledger"_s);
        const auto revision = [&](int package) {
            return QString::fromLatin1(ledger.records.packages[package].signature.left(24).toBase64());
        };
        QCOMPARE(recordsOf(*http.accessor).join("; "_s),
                 "plant:tree/oak {\"title\":\"Oak\"} %1; plant/ash {} %2; "
                 "tree 0, de=Baum/, en=tree/trees, en=wood/; odd -1; wood 4; "
                 "oak 6 oak; tree 0 oak; oak 1 tree; tree -1; -1; 2 tree"_s.arg(revision(0), revision(1)));
        QCOMPARE(log.lines(), QStringList("critical: Package manifest parsing failed: \"illegal value\""_s));
        QCOMPARE(http.accessor->keywordLanguages(), QStringList({"de"_s, "en"_s}));
    }

    // Ids are not signed: whatever a server gives for one, nobody is sent to another place.
    void filesComeThroughTheProxy()
    {
        QVector<QPair<QByteArray, QByteArray>> files{{"a-b", "dir/b.png"}, {"c", "e//f"}}; // id, name
        for (const char *text :
             {"a b", "\u00e4", "50%", "%41", "x?y#z", "http:", "http://host", "//host", "..", "../c",
              "file:///etc/passwd?", "/..", "=", "[1]{2}|\\", "\U0001f333", "a:b"}) {
            const QByteArray number = QByteArray::number(files.size());
            files << qMakePair(number, QByteArray(text)) << qMakePair(QByteArray(text), '/' + number);
        }
        Stage http;
        for (const auto &[id, name] : files) {
            http.answerFile(id + name, 200, id + name);
            http.ledger.addPackage(id, "plant", "{}", {{name, id + name}});
        }
        http.open();
        for (int i = 0; i < files.size(); ++i) {
            const QString name = QString::fromUtf8(files[i].second);
            const QByteArray content = files[i].first + files[i].second;
            const QUrl url = http.fileUrl(name, i + 1);
            QCOMPARE(url.host(), "localhost"_s);
            QCOMPARE(fetch(url), "200 "_s + QString::fromUtf8(content));
            QVERIFY(http.fileUrl(name, i + 1).isLocalFile());
            QCOMPARE(fetch(http.fileUrl(name, i + 1)), "0 "_s + QString::fromUtf8(content));
            QCOMPARE(fetch(url), "200 "_s + QString::fromUtf8(content));
            QCOMPARE(http.count(Stage::pathOf(content)), 1);
        }
        QCOMPARE(http.fileUrl("none"_s), QUrl());
    }

    void answersWithoutFile()
    {
        Stage http({{"picture", "of another tree"}, {"forged", "as signed"}});
        http.answerFile("of another tree", 503);
        http.answerFile("as signed", 200, "as forged");
        const auto ask = [&http] { return http.fileUrl("picture"_s); };
        const QFuture<QUrl> asked = QtConcurrent::run(ask);
        QTRY_VERIFY(asked.isFinished());
        const QUrl url = asked.result();
        QCOMPARE(fetch(url), "503 "_s);
        QCOMPARE(fetch(http.fileUrl("forged"_s)), "500 "_s);
        const QString key = url.toString().section(QLatin1Char('/'), 0, 3);
        for (const char *path : {"/oak", "/elm/picture", "/oak/none", "/=oak/=none"})
            QCOMPARE(fetch(QUrl(key + QLatin1String(path))), "404 Not Found"_s);
        const QFuture<QUrl> askedAgain = QtConcurrent::run(ask);
        QVERIFY(QThreadPool::globalInstance()->waitForDone(10000)); // although this thread does nothing else
        QCOMPARE(askedAgain.result(), url);
        http.service.reset();
        QCOMPARE(fetch(url), "502 "_s);
    }

    void requestsOutliveTheAccessor()
    {
        Stage http({{"picture", "late"}});
        QNetworkAccessManager applications;
        const QScopedPointer<QNetworkReply> reply(
            applications.get(QNetworkRequest(http.fileUrl("picture"_s))));
        QTRY_COMPARE(http.count(Stage::pathOf("late")), 1);
        http.accessor.reset();
        QTRY_VERIFY(reply->isFinished());
        QVERIFY(FileStore::defaultStore()->contains(idOf("late")));
        http.open();
        QCOMPARE(fetch(http.fileUrl("picture"_s)), "0 late"_s);
    }

    void keepsNothingThatIsForged()
    {
        Stage http({{"1", "absent"}, {"2", "signed"}, {"3", "never"}});
        http.answerFile("absent", 404);
        http.answerFile("signed", 200, "forged");
        http.setAnswer(Stage::pathOf("never"), {{}, HttpAnswer::Stall, {}});
        const QScopedPointer<PackageInstaller> job(
            http.accessor->packageInstaller(0, InstallLocation::createRoot().subLocation("oak"_s)));
        QTRY_COMPARE(job->findChildren<ts::Request *>().size(), 1);
        for (const QBuffer *target : job->findChildren<QBuffer *>())
            QVERIFY(target->buffer().isEmpty());
        QCOMPARE(job->findChildren<QBuffer *>().size(), 2);
    }

    void installs()
    {
        const LogCapture log("tamsel.packages"_s);
        Stage http({{"1", "first"}, {"2", "absent"}, {"3", "part"}, {"4", "first"}, {"5", "signed"}});
        http.answerFile("absent", 404);
        http.answerFile("signed", 200, "forged");
        http.answerFile("part", 206, "part");
        QCOMPARE(install(*http.accessor, 0),
                 "1 2 3 4 5; status -1\n2 Download of ./api/v1/ledger/%1 failed with code 404, error 203\n"
                 "2 Download of ./api/v1/ledger/%2 failed with code 206, error 0\n"
                 "3 Commit of file %3 (./api/v1/ledger/%3) failed (code 2)"_s.arg(
                     idOf("absent"), idOf("part"), idOf("signed")));
        QVERIFY(!FileStore::defaultStore()->contains(idOf("signed")));
        http.ledger.addPackage("deep", "plant", "{}", {{"a/b", "first"}});
        http.open();
        QCOMPARE(install(*http.accessor, 1),
                 "; status -1\n4 Failed to install file a/b (%1)"_s.arg(idOf("first")));
        http.service.reset();
        QCOMPARE(install(*http.accessor, 0), "; status -1\n1 No service for package file download"_s);
    }

private:
    const QTemporaryDir data;
    QSharedPointer<NetworkAccessManager> manager = NetworkAccessManager::sharedInstance();
};

QTEST_GUILESS_MAIN(tst_PackageServer)
#include "tst_packageserver.moc"
