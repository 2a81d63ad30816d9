#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/categorylistmodel.h"
#include "presentation/packagereference.h"
#include "server/packageledger.h"
#include "server/packageserver.h"
#include "server/packageserveraccessor.h"
#include "storage/localpackageinstaller.h"

#include "support/fakeclock.h"
#include "support/logcapture.h"
#include "support/signedledger.h"
#include "support/stage.h"

#include <TamselAccount/Service>

#include <QtTest>

using namespace std::chrono_literals;
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

// A repository with a package whose title is to be translated, and with a translation package.
struct TranslationStage : Stage
{
    TranslationStage(const QString &manifest, const QString &type)
    {
        catalogue.addPackage("p"_s, "birds"_s, {{"title"_s, "id:greeting"_s}});
        catalogue.addPackage("words"_s, type, json(manifest));
        succeedAtOnce = {"p"_s, "words"_s};
        source.installers = [make = source.installers](const QString &id, const InstallLocation &location) {
            for (const QString &name : {"Hallo.qm"_s, "Servus.qm"_s})
                location.installFile(QStringLiteral(GREETINGS "/") + name, name);
            return make(id, location);
        };
    }

    // By Qt, and in the manifest if that has another.
    QString greeting() const
    {
        const QString id = "p"_s;
        const PackageNode *node = repository()->packageIndex()->getPackage(QStringRef(&id));
        const QString title = node->readManifest("title"_s).toString();
        return qtTrId("greeting") == title ? title : qtTrId("greeting") + "/"_s + title;
    }
};

/** Asks the repository for "p" whenever the language of the application changes, also while both go. */
struct LanguageListener : QObject
{
    LanguageListener() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange)
            heard = repository->packageReference("p"_s)->id();
        return false;
    }

    PackageRepository *repository = nullptr;
    QString heard;
};

/** Does something of its own whenever the repository calls. */
struct BusySource : MemorySource
{
    using MemorySource::MemorySource;

    PackageAccessor *getAccessor() const override
    {
        act();
        return MemorySource::getAccessor();
    }
    void persist() override { act(); }
    void update() override { act(); }

    std::function<void()> act = [] {};
};

} // namespace

class tst_PackageRepository : public QObject
{
    Q_OBJECT

public:
    std::unique_ptr<QCoreApplication> application;

private Q_SLOTS:
    void initTestCase() { QThreadPool::globalInstance()->setMaxThreadCount(8); } // some wait at a gate
    void cleanup() { QCOMPARE(qtTrId("greeting"), "greeting"_s); } // translators go with their repository

    void buildsOnceForAllNotifications()
    {
        const LogCapture log("tamsel.package.repository"_s);
        Stage stage; // has added its source
        stage.catalogue.addPackage("p"_s, "first"_s);
        PackageRepository &repository = *stage.repository();
        QSignalSpy changed(&repository, &PackageRepository::packageIndexChanged);
        Q_EMIT stage.source.updateRequired();
        repository.scheduleUpdate();
        QVERIFY(stage.source.accessors == 0 && !repository.packageIndex());
        QVERIFY(changed.wait());
        QCOMPARE(log.lines(), QStringList{"info: Scheduling package index update"_s});
        QCOMPARE(stage.source.accessors, 1);
        QCOMPARE(contentOf(repository), "first"_s);
        // One more for each time that listeners ask, and not before the next pass.
        connect(&repository, &PackageRepository::packageIndexChanged, this, [&] {
            if (changed.count() < 4)
                repository.scheduleUpdate();
            QCOMPARE(stage.source.accessors, changed.count());
        });
        Q_EMIT stage.source.updateRequired();
        QTRY_COMPARE(changed.count(), 4);
        QCOMPARE(log.lines().size(), 4);
    }

    void dropsABuildThatIsOvertaken()
    {
        auto stage = std::make_unique<Stage>();
        QSemaphore gate;
        const auto wait = [&gate](const char *call) {
            if (qstrcmp(call, "initialize") == 0)
                gate.acquire();
        };
        QSignalSpy changed(stage->repository(), &PackageRepository::packageIndexChanged);
        stage->source.listener = wait;
        stage->repository()->update();
        QCoreApplication::processEvents(); // starts the scheduled one as well
        QCOMPARE(stage->source.accessors, 2);
        stage->source.listener = [](const char *) {};
        stage->catalogue.addPackage("p"_s, "second"_s);
        stage->repository()->update();
        QVERIFY(changed.wait());
        gate.release(2);
        Stage::settle();
        QCOMPARE(contentOf(*stage->repository()), "second"_s);

        stage->source.listener = wait;
        stage->repository()->update();
        stage.reset(); // during a build
        gate.release();
        Stage::settle();
        QCOMPARE(changed.count(), 1);
    }

    void addsAndRemovesSources()
    {
        const LogCapture log("tamsel.package.repository"_s);
        PackageRepository repository(PackageRepository::PersistOnRequest);
        QSignalSpy changed(&repository, &PackageRepository::packageIndexChanged);
        MemorySource low(-1);
        MemorySource middle(1);
        auto high = std::make_unique<MemorySource>(3);
        repository.addSource(nullptr);
        repository.removeSource(nullptr);
        repository.removeSource(&low);
        QVERIFY(log.lines().isEmpty() && repository.sources().isEmpty());
        low.catalogue.addPackage("p"_s, "low"_s);
        low.catalogue.addPackage("q"_s, "only"_s);
        middle.catalogue.addPackage("p"_s, "middle"_s);
        high->catalogue.addPackage("p"_s, "high"_s);
        for (MemorySource *source : {high.get(), &low, &middle, &low})
            repository.addSource(source);
        QCOMPARE(repository.sources(), QList<PackageSource *>({&low, &middle, high.get()}));
        QVERIFY(changed.wait());
        QCOMPARE(contentOf(repository), "high only"_s);
        high.reset();
        QCOMPARE(repository.sources(), QList<PackageSource *>({&low, &middle}));
        QVERIFY(changed.wait());
        QCOMPARE(contentOf(repository), "middle only"_s);
        repository.removeSource(&low);
        repository.removeSource(&middle);
        QCOMPARE(contentOf(repository), "middle only"_s); // until the next index is there
        QVERIFY(changed.wait() && repository.sources().isEmpty() && contentOf(repository).isEmpty());
        Q_EMIT middle.updateRequired();
        QCOMPARE(log.lines().size(), 3);
    }

    void persistsBeforeListenersHear()
    {
        const auto callsBy = [this](PackageRepository::SourcePersistencePolicy policy) {
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
            QSignalSpy(&repository, &PackageRepository::packageIndexChanged).wait();
            repository.persistSources();
            return calls.join(" "_s);
        };
        QCOMPARE(callsBy(PackageRepository::PersistAfterUpdate), "low high heard low high"_s);
        QCOMPARE(callsBy(PackageRepository::PersistOnRequest), "heard low high"_s);
    }

    void asksForNewsOnceInAWhile()
    {
        Stage stage;
        const auto askedAfter = [&stage](std::chrono::seconds time) {
            FakeClock::advance(time);
            stage.repository()->scheduleSourceUpdate();
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
        const PackageReference *reference = provider.packageReference("p"_s);
        QVERIFY(provider.packageReference("q"_s) != reference && !provider.packageReference(QString()));
        QVERIFY(provider.rebuild() && provider.packageReference("p"_s) == reference);
    }

    void choosesTheTranslationFile()
    {
        // locale | manifest | text
        for (const Row &row : rows(R"(
            de_AT | {"de": "Hallo.qm", "en": "Servus.qm"}    | Hallo
            de_AT | {"de": "Hallo.qm", "de_AT": "Servus.qm"} | Servus
            fr_FR | {"de": "Hallo.qm", "en": "Servus.qm"}    | Servus
            de_AT | {"de": "missing.qm", "en": "Servus.qm"}  | greeting
            de_AT | {"de": 1, "en": "Servus.qm"}             | greeting
            de_AT | {"fr": "Servus.qm"}                      | greeting)")) {
            QLocale::setDefault(QLocale(row[0]));
            TranslationStage stage(row[1], "translation"_s);
            QSignalSpy translated(stage.repository(), &PackageRepository::translationsChanged);
            stage.publish();
            QCOMPARE(row.with(stage.greeting()), row.text());
            QCOMPARE(stage.repository()->findChild<QTranslator *>()->filePath().isEmpty(),
                     row[2] == "greeting"_s);
            QCOMPARE(translated.count(), 1); // whether or not a file was loaded
        }
    }

    // What comes of a word: what listeners of two references, of the repository and of its index hear, with
    // the greeting at that moment.
    void tellsOfTranslations()
    {
        QLocale::setDefault(QLocale("de_AT"_s));
        for (const QString &play : QStringList{
                 "notify publish[reference Hallo, reference Hallo, all Hallo, index Hallo]"_s,
                 "slow publish[index greeting] succeed[reference Hallo, reference Hallo, all Hallo] "
                 "notify[reference Hallo, reference Hallo, all Hallo]"_s,
                 "publish[reference Hallo, reference Hallo, all Hallo, index Hallo] "
                 "version:Servus.qm publish[index Hallo, reference Servus, reference Servus, all Servus] "
                 "gone publish[index Servus]"_s,                                                // stays
                 "publish[reference Hallo, reference Hallo, all Hallo, index Hallo] version:. " // no file
                 "publish[index Hallo, reference Hallo, reference Hallo, all Hallo] load version:Servus.qm "
                 "publish[index Hallo, reference Hallo, reference Hallo, all Hallo]"_s, // stays in front
                 "other publish[index greeting] load notify[reference Hallo, reference Hallo, all Hallo]"_s,
             }) {
            LanguageListener language;
            TranslationStage stage(R"({"de": "Hallo.qm"})"_s, "translation"_s);
            QStringList heard;
            const auto listener = [&](const QString &name) {
                return [&, name] { heard.append(name + " "_s + stage.greeting()); };
            };
            PackageRepository *const repository = language.repository = stage.repository();
            connect(repository, &PackageRepository::packageIndexChanged, this, listener("index"_s));
            connect(repository, &PackageRepository::translationsChanged, this, listener("all"_s));
            for (const QString &id : {"p"_s, "missing"_s})
                connect(repository->packageReference(id), &PackageReference::translationsChanged, this,
                        listener("reference"_s));
            QTranslator translator;
            const auto load = [&translator](auto) {
                QVERIFY(translator.load(QStringLiteral(GREETINGS "/Hallo.qm")));
                QCoreApplication::installTranslator(&translator);
            };
            const Verbs verbs{
                {"publish"_s, [&](auto) { stage.publish(); }},
                {"notify"_s, [&](auto) { repository->notifyTranslationUpdate(); }},
                {"slow"_s, [&](auto) { stage.succeedAtOnce.remove("words"_s); }},
                {"succeed"_s, [&](auto) { stage.started.first()->succeed(); }},
                {"version"_s, [&](auto file) { stage.catalogue.manifests["words"_s]["de"_s] = file; }},
                {"gone"_s, [&](auto) { stage.catalogue.packages.removeLast(); }},
                {"other"_s, [&](auto) { stage.catalogue.packages.last().type = "translations"_s; }},
                {"load"_s, load},
            };
            QCOMPARE(perform(play, verbs, [&] { return std::exchange(heard, {}).join(", "_s); }), play);
            QCoreApplication::processEvents();
            QCOMPARE(language.heard, "p"_s);
            QCOMPARE(repository->findChildren<QTranslator *>().size(), play.startsWith("other"_s) ? 0 : 1);
        }
    }

    // The first source that is called destroys the next one and asks for a package that is not there, which
    // asks all sources for news. Or it destroys the repository.
    void outlivesWhatSourcesDo()
    {
        const auto refer = [](PackageRepository *repository) { repository->packageReference("p"_s); };
        const std::pair<std::function<void(PackageRepository *)>, int> calls[] = {
            {&PackageRepository::persistSources, 2},
            {&PackageRepository::update, 2},
            {&PackageRepository::scheduleSourceUpdate, 1},
            {refer, 1}};
        for (int i = 0; i < 8; ++i) {
            auto repository = std::make_unique<PackageRepository>(PackageRepository::PersistOnRequest);
            auto second = std::make_unique<BusySource>(1);
            BusySource first(0);
            BusySource last(2);
            for (BusySource *source : {&first, second.get(), &last})
                repository->addSource(source);
            PackageReference *reference = nullptr;
            first.act = [&] {
                second.reset();
                if (i < 4)
                    reference = repository->packageReference("p"_s);
                else
                    repository.reset();
            };
            int reached = 0;
            last.act = [&reached] { ++reached; };
            calls[i % 4].first(repository.get());
            QCOMPARE(reached, i < 4 ? calls[i].second : 0);
            if (!repository)
                continue;
            QCOMPARE(repository->findChildren<PackageReference *>(), {reference});
            QCOMPARE(repository->packageReference("p"_s), reference);
        }
    }

    void outlivesWhatListenersDestroy()
    {
        for (const bool all : {false, true}) {
            auto provider = std::make_unique<TestProvider>();
            QVERIFY(provider->rebuild());
            PackageRepository *const repository = provider->packageRepository();
            QSignalSpy translated(repository, &PackageRepository::translationsChanged);
            for (const auto &[id, other] : {std::pair("p"_s, "q"_s), std::pair("q"_s, "p"_s)})
                connect(provider->packageReference(id), &PackageReference::translationsChanged, this,
                        [&provider, all, neighbour = other] {
                            if (all)
                                provider.reset();
                            else
                                delete provider->packageReference(neighbour);
                        });
            repository->notifyTranslationUpdate();
            QCOMPARE(translated.count(), all ? 0 : 1);
            for (const QString &id : {"p"_s, "q"_s})
                QVERIFY(all || provider->packageReference(id)->id() == id);
        }
    }

    // A job holds the last share of an index when the application goes, and waits for it.
    void outlivesTheApplication()
    {
        BusySource source;
        int gone = 0;
        source.listener = [&gone](const char *call) { gone += int(qstrcmp(call, "gone") == 0); };
        const auto makeIndex = [&source] {
            const auto index = QSharedPointer<PackageIndex>::create();
            index->addSource(&source);
            return index;
        };
        PackageRepository repository(PackageRepository::PersistOnRequest);
        SignedLedger ledger;
        ledger.addPackage("p", "t", "{}", {{"f", {}}});
        const QByteArray document = ledger.toByteArray();
        const auto parsed = QSharedPointer<PackageLedger>::create(document, QByteArray());
        const bool isBelieved = parsed->valid; // unless the build has another root key
        const PackageServerAccessor accessor(nullptr, parsed);
        QSemaphore asking;
        std::atomic<int> unanswered(0);
        auto own = makeIndex();
        QThreadPool::globalInstance()->start([index = makeIndex()] {
            while (!QCoreApplication::closingDown())
                QThread::yieldCurrentThread();
        });
        QThreadPool::globalInstance()->start([&] {
            asking.release();
            for (int i = 0; isBelieved && i < 2; ++i) // nobody is left to answer
                unanswered += accessor.packageFileUrl(0, "f"_s).isEmpty() ? 1 : 0;
        });
        asking.acquire();
        application.reset();
        QCOMPARE(int(unanswered), isBelieved ? 2 : 0);
        QCOMPARE(gone, 0); // the job is not on the thread of the source
        own.reset();
        QCOMPARE(gone, 1);
        // There is no thread pool, so that nothing comes of jobs.
        repository.addSource(&source);
        repository.update();
        QVERIFY(!repository.packageIndex());
        CategoryListModel model;
        QVERIFY(QMetaObject::invokeMethod(&model, "updateList"));
        QCOMPARE(LocalPackageInstaller(QDir(), InstallLocation::createRoot()).status(),
                 PackageInstaller::Running);
        ts::account::Service service(QUrl("http://localhost/"_s));
        QVERIFY(PackageServer(&service).isValid());
        QCOMPARE(PackageLedger(document, {}).valid, isBelieved); // verified on this thread alone
    }
};

int main(int argc, char **argv)
{
    tst_PackageRepository test;
    test.application = std::make_unique<QCoreApplication>(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_packagerepository.moc"
