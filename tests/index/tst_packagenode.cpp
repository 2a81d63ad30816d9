#include "index/packagesnapshot.h"
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
    void listsKeepTheirIndex()
    {
        MemoryCatalogue catalogue = graph("p is_a k"_s);
        catalogue.manifests["p"_s] = {{"title"_s, "owl"_s}};
        catalogue.packages.first().revision = "7-abc"_s;
        auto shared = buildIndex({catalogue});
        const QWeakPointer<PackageIndex> index = shared;
        auto packages = PackageIndex::selectPackages(index, {}, {}, {});
        auto keywords = PackageIndex::selectKeywords(index, {});
        PackageSnapshot snapshot(index, package(index, "p"_s));
        shared.reset();
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
        const QString numbered = "{\"field\": %1, \"other\": 1}"_s;
        MemoryCatalogue catalogue = graph("p"_s);
        for (const Row &row : rows(R"(
            "id:owl"                                | "owl -1 in %1"
            "id:Käuze"                              | "Käuze -1 in %1"
            [1.5, true, null, "owl"]                | [1.5,true,null,"owl"]
            ["id:a", ["id:b"], {"c": "id:c"}]       | ["a -1 in %1",["b -1 in %1"],{"c":"c -1 in %1"}]
            {"id:k": "id:a", "o": {"b": ["id:b"]}}  | {"id:k":"a -1 in %1","o":{"b":["b -1 in %1"]}})")) {
            catalogue.manifests["p"_s] = json(numbered.arg(row[0]));
            const auto index = buildIndex({catalogue});
            const PackageNode *node = package(index, "p"_s);
            for (const QString &language : {"de"_s, "en"_s}) {
                translator.language = language;
                index->invalidateManifests();
                const QJsonObject expected = json(numbered.arg(row[1].replace("%1"_s, language)));
                QCOMPARE(node->manifest(), expected);
                translator.language = "fr"_s; // which counts as soon as somebody says so
                QCOMPARE(node->readManifest("field"_s), expected.value("field"_s));
            }
            QVERIFY(node->readManifest("missing"_s).isUndefined());
        }
    }

    void manifestsAreWholeInEveryThread()
    {
        const FakeTranslator translator;
        MemoryCatalogue catalogue = graph("p"_s);
        catalogue.manifests["p"_s] = {{"bird"_s, "id:owl"_s}};
        const auto index = buildIndex({catalogue});
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
            for (ManualInstaller *job : root->findChildren<ManualInstaller *>())
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
