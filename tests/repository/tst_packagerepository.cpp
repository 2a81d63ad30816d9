#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/keyword.h"
#include "presentation/packagereference.h"

#include "support/fakeclock.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/memorysource.h"
#include "support/testprovider.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// The types of all packages.
QString contentOf(const PackageRepository &repository)
{
    QStringList types;
    for (const PackageNode *node : PackageIndex::selectPackages(repository.packageIndex(), {}, {}, {}))
        types.append(node->type().toString());
    return types.join(QLatin1Char(' '));
}

// A repository and a source with one package, which is not added yet.
struct Stage
{
    Stage() { source.catalogue.addPackage("p"_s, "first"_s); }

    MemorySource source;
    std::unique_ptr<PackageRepository> owner =
        std::make_unique<PackageRepository>(PackageRepository::PersistOnRequest);
    PackageRepository &repository = *owner;
    QSignalSpy changed{&repository, &PackageRepository::packageIndexChanged};
    LogCapture log{"tamsel.package.repository"_s};
};

} // namespace

class tst_PackageRepository : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QThreadPool::globalInstance()->setMaxThreadCount(8);
    } // some of them wait at a gate

    void buildsOnceForAllNotifications()
    {
        Stage stage;
        QVERIFY(!stage.repository.packageIndex());
        stage.repository.addSource(&stage.source);
        Q_EMIT stage.source.updateRequired();
        Q_EMIT stage.source.updateRequired();
        stage.repository.scheduleUpdate();
        QCOMPARE(stage.source.accessors, 0);
        QVERIFY(stage.changed.wait());
        QCOMPARE(stage.log.lines(), QStringList{"info: Scheduling package index update"_s});
        QCOMPARE(stage.source.accessors, 1);
        QCOMPARE(contentOf(stage.repository), "first"_s);
        Q_EMIT stage.source.updateRequired();
        QVERIFY(stage.changed.wait());
        QCOMPARE(stage.log.lines().size(), 2);
        QCOMPARE(stage.changed.count(), 2);
    }

    void dropsABuildThatIsOvertaken()
    {
        Stage stage;
        QSemaphore gate;
        stage.source.listener = [&gate](const char *call) {
            if (qstrcmp(call, "initialize") == 0)
                gate.acquire();
        };
        stage.repository.addSource(&stage.source);
        stage.repository.update();
        QCoreApplication::processEvents(); // starts the scheduled one as well
        QCOMPARE(stage.source.accessors, 2);
        stage.source.listener = {};
        stage.source.catalogue.packages.first().type = "second"_s;
        stage.repository.update();
        QVERIFY(stage.changed.wait());
        gate.release(2);
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(stage.changed.count(), 1);
        QCOMPARE(contentOf(stage.repository), "second"_s);
    }

    void goesDuringABuild()
    {
        Stage stage;
        QSemaphore gate;
        stage.source.listener = [&gate](const char *call) {
            if (qstrcmp(call, "initialize") == 0)
                gate.acquire();
        };
        stage.repository.addSource(&stage.source);
        stage.repository.update();
        stage.owner.reset();
        gate.release();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QVERIFY(stage.changed.isEmpty());
    }

    void buildsAgainWhenListenersAsk()
    {
        Stage stage;
        connect(&stage.repository, &PackageRepository::packageIndexChanged, this, [&stage] {
            if (stage.changed.count() < 3)
                stage.repository.scheduleUpdate();
            QCOMPARE(stage.source.accessors, stage.changed.count()); // not before the next pass
        });
        stage.repository.addSource(&stage.source);
        QTRY_COMPARE(stage.changed.count(), 3);
    }

    void addsAndRemovesSources()
    {
        Stage stage;
        stage.repository.addSource(nullptr);
        stage.repository.removeSource(nullptr);
        stage.repository.removeSource(&stage.source);
        QVERIFY(stage.log.lines().isEmpty() && stage.repository.sources().isEmpty());
        stage.repository.addSource(&stage.source);
        QVERIFY(stage.changed.wait());
        stage.repository.addSource(&stage.source);
        QCOMPARE(stage.repository.sources(), QList<PackageSource *>{&stage.source});
        QCOMPARE(stage.log.lines().size(), 1);
        stage.repository.removeSource(&stage.source);
        QCOMPARE(contentOf(stage.repository), "first"_s); // until the next index is there
        QVERIFY(stage.changed.wait());
        QVERIFY(stage.repository.sources().isEmpty() && stage.repository.packageIndex());
        QCOMPARE(contentOf(stage.repository), QString());
        Q_EMIT stage.source.updateRequired();
        QCOMPARE(stage.log.lines().size(), 2);
    }

    void ordersSourcesByPriority()
    {
        Stage stage;
        MemorySource low(-1);
        MemorySource high(3);
        low.catalogue.addPackage("p"_s, "low"_s);
        low.catalogue.addPackage("q"_s, "only"_s);
        high.catalogue.addPackage("p"_s, "high"_s);
        for (MemorySource *source : {&high, &low, &stage.source})
            stage.repository.addSource(source);
        QCOMPARE(stage.repository.sources(), QList<PackageSource *>({&low, &stage.source, &high}));
        QVERIFY(stage.changed.wait());
        QCOMPARE(contentOf(stage.repository), "high only"_s);
    }

    void losesASourceThatIsDestroyed()
    {
        Stage stage;
        auto source = std::make_unique<MemorySource>();
        source->catalogue.addPackage("q"_s, "lost"_s);
        stage.repository.addSource(source.get());
        QVERIFY(stage.changed.wait());
        source.reset();
        QVERIFY(stage.repository.sources().isEmpty());
        stage.repository.persistSources();
        QVERIFY(stage.changed.wait());
        QCOMPARE(contentOf(stage.repository), QString());
    }

    void persistsBeforeListenersHear()
    {
        for (const auto policy :
             {PackageRepository::PersistAfterUpdate, PackageRepository::PersistOnRequest}) {
            QStringList calls;
            PackageRepository repository(policy);
            MemorySource low(0);
            MemorySource high(1);
            low.onPersist = [&] { calls.append(repository.packageIndex() ? "low"_s : "early"_s); };
            high.onPersist = [&] { calls.append("high"_s); };
            connect(&repository, &PackageRepository::packageIndexChanged, this,
                    [&] { calls.append("heard"_s); });
            repository.addSource(&high);
            repository.addSource(&low);
            QTRY_VERIFY(calls.contains("heard"_s));
            QCOMPARE(repository.persistencePolicy(), policy);
            const bool afterUpdate = policy == PackageRepository::PersistAfterUpdate;
            QCOMPARE(calls.join(QLatin1Char(' ')), afterUpdate ? "low high heard"_s : "heard"_s);
            calls.clear();
            repository.persistSources();
            QCOMPARE(calls.join(QLatin1Char(' ')), "low high"_s);
        }
    }

    void asksForNewsOnceInAWhile()
    {
        using namespace std::chrono_literals;
        Stage stage;
        stage.repository.addSource(&stage.source);
        const auto askedAfter = [&stage](std::chrono::seconds time) {
            FakeClock::advance(time);
            stage.repository.scheduleSourceUpdate();
            return stage.source.updateCalls;
        };
        QCOMPARE(askedAfter(0s), 1);
        QCOMPARE(askedAfter(0s), 1);
        QCOMPARE(askedAfter(110s), 1);
        QCOMPARE(askedAfter(10s), 2); // not put off by the attempt in between
        QCOMPARE(askedAfter(110s), 2);
        FakeClock::advance(10s);
        QCOMPARE(stage.source.updateCalls, 2); // what was asked too early is lost
    }

    void handsOutOneReferenceForEachId()
    {
        Stage stage;
        PackageReference *reference = stage.repository.packageReference("p"_s);
        QCOMPARE(reference->id(), "p"_s);
        QCOMPARE(reference->parent(), &stage.repository);
        QVERIFY(stage.repository.packageReference("q"_s) != reference);
        stage.repository.addSource(&stage.source);
        QVERIFY(stage.changed.wait());
        QCOMPARE(stage.repository.packageReference("p"_s), reference);
        QVERIFY(!stage.repository.packageReference(QString()));
        QCOMPARE(stage.repository.findChildren<PackageReference *>().size(), 2);
    }

    void isFoundThroughItsProvider()
    {
        TestProvider provider;
        QCOMPARE(qobject_cast<IPackageProvider *>(&provider), static_cast<IPackageProvider *>(&provider));
        QCOMPARE(provider.qt_metacast("tamsel.IPackageProvider/1.0"),
                 static_cast<IPackageProvider *>(&provider));
        MemorySource source;
        source.catalogue.addKeyword("k"_s, Keyword::Name, "Eule"_s, "owl"_s);
        provider.packageRepository()->addSource(&source);
        QVERIFY(provider.rebuild());
        Keyword keyword;
        keyword.setKeywordId("k"_s);
        keyword.setPackageProvider(&provider);
        QCOMPARE(keyword.displayString(), "owl"_s);

        LogCapture log("tamsel.packages"_s);
        keyword.setPackageProvider(nullptr);
        QVERIFY(log.lines().isEmpty());
        keyword.setPackageProvider(this);
        const QRegularExpression line(
            "^critical: Object tst_PackageRepository\\(0x[0-9a-f]+\\) does not implement "
            "the IPackageProvider interface$"_s);
        QCOMPARE(log.lines().filter(line).size(), 1);
        QCOMPARE(keyword.displayString(), QString());
    }
};

QTEST_GUILESS_MAIN(tst_PackageRepository)
#include "tst_packagerepository.moc"
