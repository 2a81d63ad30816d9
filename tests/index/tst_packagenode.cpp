#include "index/packagesnapshot.h"
#include "repository/packagerepository.h"
#include "storage/packageinstaller.h"

#include "graph.h"
#include "support/manualinstaller.h"
#include "support/table.h"

#include <QTranslator>
#include <QtTest>

#include <thread>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// Translates every id to a text that shows the id, the number and the language.
class FakeTranslator : public QTranslator
{
public:
    FakeTranslator() { QCoreApplication::installTranslator(this); }

    QString translate(const char *, const char *id, const char *, int number) const override
    {
        return "%1 %2 in %3"_s.arg(QString::fromLatin1(id)).arg(number).arg(language);
    }

    QString language = "de"_s;
};

QJsonObject json(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

QSharedPointer<PackageIndex> indexOfPackage(const QJsonObject &manifest)
{
    MemoryCatalogue catalogue;
    catalogue.addPackage("p"_s, "t"_s, manifest);
    return buildIndex({catalogue});
}

// Packages that install by jobs named after them.
QSharedPointer<PackageIndex> installable(const QString &links, QStringList &started)
{
    MemorySource source;
    source.catalogue = graph(links);
    source.installers = [&started](const QString &id, const InstallLocation &location) {
        auto *installer = new ManualInstaller(location);
        installer->setObjectName(id);
        started.append(id);
        return installer;
    };
    const auto index = QSharedPointer<PackageIndex>::create();
    index->addSource(&source);
    index->build();
    return index;
}

// A job and those that it depends on, as in "p(p2 p3(p4))".
QString treeOf(const PackageInstaller *installer)
{
    QStringList dependencies;
    for (const PackageInstaller *dependency : installer->dependencies()) {
        if (dependency->parent() == installer)
            dependencies.append(treeOf(dependency));
    }
    const QString name = installer->objectName();
    return dependencies.isEmpty() ? name : "%1(%2)"_s.arg(name, dependencies.join(QLatin1Char(' ')));
}

QString pathOf(const InstallLocation &location)
{
    return QDir::cleanPath(location.directory(false).absolutePath());
}

} // namespace

class tst_PackageNode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filtersAndOrders()
    {
        QVERIFY(PackageIndex::selectPackages({}, {}, {}, {}).isEmpty());
        const auto index = buildIndex({graph("p1/a, p2/b, p3/a, p4/b:c, p5/a"_s)});
        const auto odd = [](PackageNode *node) { return node->id() != "p4"_s && node->id() != "p2"_s; };
        const auto byType = [](const PackageNode *a, const PackageNode *b) { return b->type() < a->type(); };
        QCOMPARE(ids(PackageIndex::selectPackages(index, {}, odd, byType)), "p1 p3 p5"_s);
        QCOMPARE(ids(PackageIndex::selectPackages(index, "b"_s, odd, {})), QString());

        // A stable sort keeps the order of the index among equals, however many there are.
        QStringList many;
        for (int i = 1000; i < 1100; ++i)
            many.append("p%1"_s.arg(i));
        const auto never = [](const PackageNode *, const PackageNode *) { return false; };
        const auto large = buildIndex({graph(many.join(", "_s))});
        QCOMPARE(ids(PackageIndex::selectPackages(large, {}, {}, never)), many.join(QLatin1Char(' ')));
    }

    void listsKeepTheirIndex()
    {
        PackageRepository repository(PackageRepository::PersistOnRequest);
        auto source = std::make_unique<MemorySource>();
        source->catalogue = graph("p is_a k"_s);
        source->catalogue.manifests.insert("p"_s, {{"title"_s, "owl"_s}});
        source->catalogue.packages.first().revision = "7-abc"_s;
        QSignalSpy changed(&repository, &PackageRepository::packageIndexChanged);
        repository.addSource(source.get());
        QVERIFY(changed.wait());
        const QWeakPointer<PackageIndex> index = repository.packageIndex();
        auto packages = PackageIndex::selectPackages(index, {}, {}, {});
        auto keywords = PackageIndex::selectKeywords(index, {});
        PackageSnapshot snapshot(index, package(index, "p"_s));
        source.reset();
        QVERIFY(changed.wait() && index.toStrongRef() != repository.packageIndex());
        packages = PackageList(packages);
        QCOMPARE(packages.at(0)->revision().toString(), "7-abc"_s);
        packages = PackageList();
        QCOMPARE(snapshot.manifestField("title"_s).toString(), "owl"_s);
        QCOMPARE(snapshot.fileUrl("picture"_s), QUrl("memory:/p/picture"_s));
        snapshot = PackageSnapshot();
        QVERIFY(snapshot.manifestField("title"_s).isUndefined() && snapshot.fileUrl("picture"_s).isEmpty());
        QCOMPARE(keywords.at(0)->displayString().toString(), "k"_s);
        keywords = KeywordList();
        QVERIFY(!index.toStrongRef());
    }

    void translatesManifests()
    {
        FakeTranslator translator;
        for (const Row &row : rows(R"(
            "id:owl"                                | "owl -1 in de"
            "id:Käuze"                              | "Käuze -1 in de"
            [1.5, true, null, "owl"]                | [1.5,true,null,"owl"]
            ["id:a", ["id:b"], {"c": "id:c"}]       | ["a -1 in de",["b -1 in de"],{"c":"c -1 in de"}]
            {"id:k": "id:a", "o": {"b": ["id:b"]}}  | {"id:k":"a -1 in de","o":{"b":["b -1 in de"]}})")) {
            const auto index = indexOfPackage(json("{\"field\": %1, \"other\": 1}"_s.arg(row[0])));
            const PackageNode *node = package(index, "p"_s);
            QJsonObject expected = json("{\"field\": %1, \"other\": 1}"_s.arg(row[1]));
            QCOMPARE(node->manifest(), expected);
            QCOMPARE(node->readManifest("field"_s), expected.value("field"_s));
            QVERIFY(node->readManifest("missing"_s).isUndefined());
            translator.language = "en"_s;
            QCOMPARE(node->manifest(), expected); // as long as nobody says otherwise
            index->invalidateManifests();
            expected = json("{\"field\": %1, \"other\": 1}"_s.arg(row[1].replace(" in de"_s, " in en"_s)));
            QCOMPARE(node->manifest(), expected);
            QCOMPARE(node->readManifest("field"_s), expected.value("field"_s));
            translator.language = "de"_s;
        }
    }

    void manifestsAreWholeInEveryThread()
    {
        const FakeTranslator translator;
        const auto index = indexOfPackage({{"bird"_s, "id:owl"_s}});
        const PackageNode *node = package(index, "p"_s);
        std::atomic<int> done{0};
        std::atomic<int> wrong{0};
        const auto read = [&] {
            for (int i = 0; i < 2000; ++i)
                wrong += int(node->readManifest("bird"_s) != "owl -1 in de"_s);
            ++done;
        };
        std::thread readers[] = {std::thread(read), std::thread(read), std::thread(read), std::thread(read)};
        while (done < 4)
            index->invalidateManifests();
        for (std::thread &reader : readers)
            reader.join();
        QCOMPARE(wrong.load(), 0);
    }

    // Each link makes one job; a package that has one already is not walked into again.
    void installsWhatIsRequired()
    {
        for (const Row &row : rows(R"(
            p requires p2, p requires p3, p2 requires p4, p3 requires p5                  | p(p2(p4) p3(p5))
            p requires p2, p requires p2, p2 requires p3                                  | p(p2(p3) p2)
            p requires p2, p requires p3, p2 requires p4, p3 requires p4, p4 requires p5  | p(p2(p4(p5)) p3(p4))
            p requires p2, p2 requires p3, p3 requires p                                  | p(p2(p3(p)))
            p requires k, k requires p2                                                   | p
            p uses p2, p is_a p3, p4 requires p                                           | p)")) {
            QStringList started;
            const auto index = installable(row[0], started);
            const std::unique_ptr<PackageInstaller> root(package(index, "p"_s)->install(InstallLocation()));
            QCOMPARE(row.with(treeOf(root.get())), row.text());
            QString depthFirst = row[1].remove(QLatin1Char(')'));
            QCOMPARE(started.join(QLatin1Char(' ')), depthFirst.replace(QLatin1Char('('), QLatin1Char(' ')));
            const auto jobs = root->findChildren<ManualInstaller *>();
            QCOMPARE(jobs.size(), started.size() - 1);
            for (ManualInstaller *job : jobs)
                job->succeed();
            QCOMPARE(root->status(), PackageInstaller::Running);
            static_cast<ManualInstaller *>(root.get())->succeed();
            QCOMPARE(root->status(), PackageInstaller::Succeeded);
        }
    }

    void installsBelowALocation()
    {
        QStringList started;
        const auto index = installable("p2/, p/a:b requires p2, p2 requires p3/d"_s, started);
        const InstallLocation given = InstallLocation::createRoot().subLocation("given"_s);
        for (const InstallLocation &location : {InstallLocation(), given}) {
            const std::unique_ptr<PackageInstaller> root(package(index, "p"_s)->install(location));
            const QString base = pathOf(location.isValid() ? given : index->installLocation());
            const PackageInstaller *required = root->dependencies().constFirst();
            QCOMPARE(pathOf(root->location()), base + "/a/b/p"_s);
            QCOMPARE(pathOf(required->location()), base + "/p2"_s);
            QCOMPARE(pathOf(required->dependencies().constFirst()->location()), base + "/d/p3"_s);
        }
        const PackageNode *node = package(index, "p"_s);
        QCOMPARE(node->getFileUrl("picture"_s), QUrl("memory:/p/picture"_s));
        QVERIFY(node->installLocation().installFile("/dev/null"_s, "picture"_s));
        const QString installed = pathOf(index->installLocation()) + "/a/b/p/picture"_s;
        QCOMPARE(node->getFileUrl("picture"_s), QUrl::fromLocalFile(installed));
        QCOMPARE(node->getFileUrl("sound"_s), QUrl("memory:/p/sound"_s));
    }
};

QTEST_GUILESS_MAIN(tst_PackageNode)
#include "tst_packagenode.moc"
