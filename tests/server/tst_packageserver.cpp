#include "server/packageserver.h"

#include "repository/packageaccessor.h"
#include "repository/packagerecords.h"
#include "servedledger.h"
#include "support/fakeclock.h"
#include "support/logcapture.h"

#include <TamselNetwork/NetworkAccessManager>

#include <QNetworkReply>
#include <QSignalSpy>
#include <QThreadPool>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using ts::network::NetworkAccessManager;
using Polled = PackageServer::PollResult;

namespace {

bool pollIsUnderWay()
{
    return !NetworkAccessManager::sharedInstance()->findChildren<QNetworkReply *>().isEmpty();
}

QString revisionOf(const PackageServer &server)
{
    const QScopedPointer<PackageAccessor> accessor(server.getAccessor());
    return accessor->packageCount() > 0 ? accessor->packageInfo(0).revision : QString();
}

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
    void initTestCase() { qRegisterMetaType<PackageServer::PollResult>(); }

    void waitsBetweenPolls()
    {
        // Status of the answer, seconds until the next poll.
        const QVector<QPair<int, int>> steps{{500, 5},   {404, 10},  {500, 20},  {500, 40},  {500, 80},
                                             {500, 160}, {500, 320}, {500, 320}, {304, 120}, {500, 5},
                                             {500, 10},  {200, 120}, {500, 5}};
        const QMap<int, Polled> results{{200, Polled::LedgerRejected}, {304, Polled::LedgerUnchanged}};
        const LogCapture log("tamsel.packageserver"_s);
        ServedLedger http;
        ReadyService service(http);
        http.answer(steps.first().first, "no ledger");
        Source source(&service);
        source.server->update(); // while one is under way, another one does not begin
        QStringList lines;
        for (int i = 0; i < steps.size(); ++i) {
            const auto [status, wait] = steps.at(i);
            QVERIFY(source.ends(results.value(status, Polled::PollFailed)));
            QCOMPARE(http.count(ledgerPath), i + 1);
            http.answer(steps.value(i + 1).first, "no ledger");
            FakeClock::advance(std::chrono::seconds(wait * 3 / 5));
            QVERIFY2(!pollIsUnderWay(), qPrintable(QString::number(wait)));
            FakeClock::advance(std::chrono::seconds(wait * 2 / 5 + 4));
            QVERIFY2(pollIsUnderWay(), qPrintable(QString::number(wait)));
            if (status == 304)
                lines.append("debug: Package server update complete - no changes"_s);
            else if (status != 200)
                lines.append("critical: Ledger update failed with status %1 \"no ledger\""_s.arg(status));
        }
        QCOMPARE(log.lines(), lines);
    }

    void ledgersReplaceEachOther()
    {
        ServedLedger http;
        ReadyService service(http);
        http.answer(200, http.ledger.toByteArray(), R"(W/"a b")");
        Source source(&service);
        QVERIFY(pollIsUnderWay());
        QVERIFY(source.ends(Polled::LedgerUpdated));
        QCOMPARE(http.lastTag(), QByteArray());
        QCOMPARE(source.updates.size(), 1);
        const QString first = revisionOf(*source.server);
        QCOMPARE(first.size(), 32);

        SignedLedger forged = http.ledger;
        forged.records.packages[0].manifest = R"({"title":"Elm"})";
        SignedLedger newer = forged;
        newer.sign(newer.records.packages[0], R"({"title":"Elm"})");
        const QVector<std::tuple<int, QByteArray, Polled>> steps{
            {304, {}, Polled::LedgerUnchanged},
            {200, "no ledger", Polled::LedgerRejected},
            {200, forged.toByteArray(), Polled::LedgerRejected},
            {503, "away", Polled::PollFailed},
            {200, newer.toByteArray(), Polled::LedgerUpdated},
        };
        for (const auto &[status, body, result] : steps) {
            http.answer(status, body, R"("other")");
            source.server->update();
            QVERIFY(source.ends(result));
            QCOMPARE(http.lastTag(), QByteArray(R"(W/"a b")"));
            const bool replaced = result == Polled::LedgerUpdated;
            QCOMPARE(source.updates.size(), replaced ? 2 : 1);
            QCOMPARE(revisionOf(*source.server) != first, replaced);
        }
    }

    void startsFromWhatWasSaved()
    {
        const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces);
        ServedLedger http;
        QString revision;
        {
            http.answer(200, http.ledger.toByteArray(), R"("tag")");
            ReadyService service(http, uuid);
            Source source(&service);
            source.server->persist(); // there is nothing to save yet
            QVERIFY(source.ends(Polled::LedgerUpdated));
            revision = revisionOf(*source.server);
            source.server->persist();
        }
        QVERIFY(QThreadPool::globalInstance()->waitForDone());

        const LogCapture log("tamsel.packageserver"_s);
        ts::account::Service service(http.url(), uuid); // not ready before the saved ledger has been read
        Source source(&service);
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QVERIFY(!pollIsUnderWay());
        http.answer(304);
        QVERIFY(source.ends(Polled::LedgerUnchanged));
        QCOMPARE(source.updates.size(), 1);
        QCOMPARE(revisionOf(*source.server), revision);
        QCOMPARE(log.lines().first(),
                 "info: Loaded persisted ledger of \"%1\" ETag \"\\\"tag\\\"\""_s.arg(uuid));
        source.server->update();
        QVERIFY(source.ends(Polled::LedgerUnchanged));
        QCOMPARE(http.lastTag(), QByteArray(R"("tag")"));
    }

    // Requests, verifications, servers and services end in any order.
    void outlivesNobody()
    {
        ServedLedger http;
        http.answer(200, http.ledger.toByteArray(), R"("tag")");
        QScopedPointer<ReadyService> service(new ReadyService(http));
        QScopedPointer<PackageServer> polling(new PackageServer(service.data()));
        QVERIFY(pollIsUnderWay());
        polling.reset();
        QTRY_VERIFY(!pollIsUnderWay());
        QScopedPointer<PackageServer> verifying(new PackageServer(service.data()));
        QVERIFY(pollIsUnderWay());
        QTRY_VERIFY(!pollIsUnderWay());
        verifying.reset();

        Source source(service.data());
        QCOMPARE(source.server->service(), service.data());
        service.reset();
        QVERIFY(!source.server->isValid());
        QTRY_VERIFY(!pollIsUnderWay());
        source.server->update();
        source.server->persist();
        QVERIFY(!pollIsUnderWay());
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QCOMPARE(revisionOf(PackageServer(nullptr)), QString());
    }

private:
    const QSharedPointer<NetworkAccessManager> manager = NetworkAccessManager::sharedInstance();
};

QTEST_GUILESS_MAIN(tst_PackageServer)

#include "tst_packageserver.moc"
