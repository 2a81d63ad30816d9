#include "index/packageindex.h"
#include "index/packagenode.h"
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

    /** Lets the jobs of accessors from now on wait for \a gate. */
    void holdAt(QSemaphore *gate)
    {
        source.listener = [gate](const char *call) {
            if (qstrcmp(call, "initialize") == 0)
                gate->acquire();
        };
    }

    static void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }

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
    void initTestCase() { QThreadPool::globalInstance()->setMaxThreadCount(8); } // some wait at a gate

    void buildsOnceForAllNotifications()
    {
        Stage stage;
        QVERIFY(!stage.repository.packageIndex());
        stage.repository.addSource(&stage.source);
        Q_EMIT stage.source.updateRequired();
        stage.repository.scheduleUpdate();
        QCOMPARE(stage.source.accessors, 0);
        QVERIFY(stage.changed.wait());
        QCOMPARE(stage.log.lines(), QStringList{"info: Scheduling package index update"_s});
        QCOMPARE(stage.source.accessors, 1);
        QCOMPARE(contentOf(stage.repository), "first"_s);
        // One more for each time that listeners ask, and not before the next pass.
        connect(&stage.repository, &PackageRepository::packageIndexChanged, this, [&stage] {
            if (stage.changed.count() < 4)
                stage.repository.scheduleUpdate();
            QCOMPARE(stage.source.accessors, stage.changed.count());
        });
        Q_EMIT stage.source.updateRequired();
        QTRY_COMPARE(stage.changed.count(), 4);
        QCOMPARE(stage.log.lines().size(), 4);
    }

    void dropsABuildThatIsOvertaken()
    {
        Stage stage;
        QSemaphore gate;
        stage.holdAt(&gate);
        stage.repository.addSource(&stage.source);
        stage.repository.update();
        QCoreApplication::processEvents(); // starts the scheduled one as well
        QCOMPARE(stage.source.accessors, 2);
        stage.source.listener = {};
        stage.source.catalogue.packages.first().type = "second"_s;
        stage.repository.update();
        QVERIFY(stage.changed.wait());
        gate.release(2);
        Stage::settle();
        QCOMPARE(stage.changed.count(), 1);
        QCOMPARE(contentOf(stage.repository), "second"_s);

        stage.holdAt(&gate);
        stage.repository.update();
        stage.owner.reset(); // during a build
        gate.release();
        Stage::settle();
        QCOMPARE(stage.changed.count(), 1);
    }

    void addsAndRemovesSources()
    {
        Stage stage;
        stage.repository.addSource(nullptr);
        stage.repository.removeSource(nullptr);
        stage.repository.removeSource(&stage.source);
        QVERIFY(stage.log.lines().isEmpty() && stage.repository.sources().isEmpty());
        MemorySource low(-1);
        auto high = std::make_unique<MemorySource>(3);
        low.catalogue.addPackage("p"_s, "low"_s);
        low.catalogue.addPackage("q"_s, "only"_s);
        high->catalogue.addPackage("p"_s, "high"_s);
        for (MemorySource *source : {high.get(), &low, &stage.source, &low})
            stage.repository.addSource(source);
        QCOMPARE(stage.repository.sources(), QList<PackageSource *>({&low, &stage.source, high.get()}));
        QVERIFY(stage.changed.wait());
        QCOMPARE(contentOf(stage.repository), "high only"_s);
        high.reset();
        QCOMPARE(stage.repository.sources(), QList<PackageSource *>({&low, &stage.source}));
        stage.repository.persistSources();
        QVERIFY(stage.changed.wait());
        QCOMPARE(contentOf(stage.repository), "first only"_s);
        stage.repository.removeSource(&low);
        stage.repository.removeSource(&stage.source);
        QCOMPARE(contentOf(stage.repository), "first only"_s); // until the next index is there
        QVERIFY(stage.changed.wait());
        QVERIFY(stage.repository.sources().isEmpty() && contentOf(stage.repository).isEmpty());
        const int lines = stage.log.lines().size();
        Q_EMIT stage.source.updateRequired();
        QCOMPARE(stage.log.lines().size(), lines);
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
            repository.persistSources();
            QCOMPARE(calls.join(QLatin1Char(' ')), policy == PackageRepository::PersistAfterUpdate
                                                       ? "low high heard low high"_s
                                                       : "heard low high"_s);
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
        QCOMPARE(askedAfter(110s), 1);
        QCOMPARE(askedAfter(10s), 2); // not put off by the attempt in between
        QCOMPARE(askedAfter(110s), 2);
        FakeClock::advance(10s);
        QCOMPARE(stage.source.updateCalls, 2); // what was asked too early is lost
    }

    void handsOutOneReferenceForEachId()
    {
        TestProvider provider;
        QCOMPARE(provider.qt_metacast("tamsel.IPackageProvider/1.0"),
                 static_cast<IPackageProvider *>(&provider));
        PackageReference *reference = provider.packageReference("p"_s);
        QCOMPARE(reference->id(), "p"_s);
        QCOMPARE(reference->parent(), provider.packageRepository());
        QVERIFY(provider.packageReference("q"_s) != reference);
        QVERIFY(provider.rebuild());
        QCOMPARE(provider.packageReference("p"_s), reference);
        QVERIFY(!provider.packageReference(QString()));
        QCOMPARE(provider.packageRepository()->findChildren<PackageReference *>().size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_PackageRepository)
#include "tst_packagerepository.moc"
