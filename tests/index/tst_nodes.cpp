#include "index/keywordreach_p.h"
#include "index/packagesnapshot.h"
#include "storage/packageinstaller.h"

#include "graph.h"
#include "support/table.h"

#include <QtTest>

#include <future>
#include <thread>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

const QStringList linkNames{"is_a"_s, "contains"_s, "relates_to"_s, "is_not_a"_s,
                            "is"_s,   "uses"_s,     "requires"_s};

// The keywords of p: as the package tells them, and as filters for one of them find it, which take another
// way.
QString keywordsOfP(const QSharedPointer<PackageIndex> &index)
{
    PackageNode *const p = package(index, "p"_s);
    QStringList told;
    QStringList found;
    for (const KeywordNode *node : PackageIndex::selectKeywords(index, {})) {
        if (p->keywords().contains(keyword(index, node->id().toString())))
            told.append(node->id().toString());
        if (KeywordPredicate([node](const KeywordNode *other) { return other == node; })(p))
            found.append(node->id().toString());
    }
    const bool findsAny = KeywordPredicate([](const KeywordNode *) { return true; })(p);
    return told == found && findsAny != told.isEmpty() ? told.join(QLatin1Char(' ')) : "contradiction"_s;
}

bool leadsTo(const QSharedPointer<PackageIndex> &index, const QString &id, const QString &type)
{
    return keyword(index, id)->linksToPackageType(QStringRef(&type));
}

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

// Packages that install by jobs named after them.
QSharedPointer<PackageIndex> installable(const QString &links, QStringList &started)
{
    return buildIndex({graph(links)}, [&started](const QString &id, const InstallLocation &location) {
        auto *installer = new ManualInstaller(location);
        installer->setObjectName(id);
        started.append(id);
        return installer;
    });
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

class tst_Nodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale("de_DE"_s)); }

    void pairsOfLinks()
    {
        // The link nearest the package, and which links may come next: downward, and upward to a package.
        // Their order is that of the rows.
        for (const Row &row : rows(R"(
            is_a        | +++++++ +++-+--
            contains    | -++---- -++----
            relates_to  | --+---- --+----
            is_not_a    | ------- -------
            is          | --+---- -+-----
            uses        | ------- -------
            requires    | ------- -------)")) {
            QString down;
            QString up;
            for (const QString &next : linkNames) {
                const auto index = buildIndex({graph("p %1 k, k %2 m"_s.arg(row[0], next))});
                const QString keywords = keywordsOfP(index);
                down += QLatin1Char(keywords.endsWith(QLatin1Char('m')) ? '+' : '-');
                up += QLatin1Char(leadsTo(index, "m"_s, "t"_s) ? '+' : '-');
                QCOMPARE(keywords.startsWith(QLatin1Char('k')), row[0] != "is_not_a"_s);
                QCOMPARE(leadsTo(index, "k"_s, "t"_s), row[1].mid(8).contains(QLatin1Char('+')));
            }
            QCOMPARE(row.with(down + QLatin1Char(' ') + up), row.text());
        }
    }

    void collectsKeywords()
    {
        // links | keywords of p
        for (const Row &row : rows(R"(
            p is_a k, p is_not_a k, k is_a m                  | m
            p is_a k, p is_not_a k                            |
            p is_a k, k is_not_a m, k is_a m                  | k m
            p is_a k, k is_a m, m is_a k, m contains m        | k m
            p contains k, p is_a k, k is_a m                  | k m
            p contains k, p is_a k, p is_not_a k, k is_a m    | m
            p is k, k relates_to m, m contains n, m is_a o    | k m
            p requires p2, p2 is_a k, p is_a m, m is_a p2     | m)"))
            QCOMPARE(row.with(keywordsOfP(buildIndex({graph(row[0])}))), row.text());
        PackageIndex index; // never built
        const std::unique_ptr<KeywordNode> k(KeywordNode::create({"k"_s, Keyword::Name, {}}, &index));
        PackageNode byHand({"p"_s, "t"_s, QString()}, &index, 0, 0);
        byHand.linkTo(k.get(), IsA);
        QVERIFY(KeywordPredicate([](const KeywordNode *) { return true; })(&byHand));
        QVERIFY(k->linksToPackageType(byHand.type()));
    }

    // A link that was refused stays on the path and counts against the links that are tried after it, but not
    // beyond the keyword where the walk began.
    void findsPackagesOfType()
    {
        // links | type | whether k is reached from a package of it
        for (const Row &row : rows(R"(
            p/t:u is_a k                                      | t | yes
            p1/:t is_a k                                      |   | yes
            p is_a p2/u, p2 is_a k                            | t | yes
            k is_a m, m is_a k, k is_a k, p                   | t | no
            k is_a m, m is_a k, p is_a m                      | t | yes
            p1 relates_to m, p2 is_a m, m contains k          | t | no
            p2 is_a m, p1 relates_to m, m contains k          | t | yes
            x is_a n, n uses m, p1 is_not_a o, o contains m, p2 is_a m, m contains k | t | yes
            p1 uses m, m is_a k, p2 is_a k                    | t | yes
            p1 is_not_a k, p2 is_a k                          | t | yes
            p contains m, m contains n, n contains k          | t | yes
            p contains m, m relates_to n, n contains k        | t | no
            p is m, m contains n, n relates_to k              | t | yes
            p is m, m contains n, n is_a k                    | t | no)")) {
            const bool found = leadsTo(buildIndex({graph(row[0])}), "k"_s, row[1]);
            QCOMPARE(row.with(found ? "yes"_s : "no"_s), row.text());
        }
    }

    // 2^60 paths lead down, and 2^layers up.
    void diamondsEnd()
    {
        const auto index = buildIndex({graph("p is_a a1, "_s + diamonds(60, "%1%2 is_a %3%4"_s))});
        QCOMPARE(package(index, "p"_s)->keywords().size(), 119);
        const auto findsPackageBehind = [](int layers) {
            const QString links = "a1 is_a k, "_s + diamonds(layers, "%3%4 is_a %1%2"_s) + ", p is_a k"_s;
            return leadsTo(buildIndex({graph(links)}), "k"_s, "t"_s);
        };
        QVERIFY(findsPackageBehind(19)); // somewhat more than half a million links
        QVERIFY(!findsPackageBehind(20) && !findsPackageBehind(60));
    }

    void sortString()
    {
        const QString word(5000, QLatin1Char('x'));
        QStringList chain{"p is_a 0"_s};
        QStringList cut; // after 256 keywords
        for (int i = 0; i < 300; ++i)
            chain.append("%1 is_a %2"_s.arg(i).arg(i + 1));
        for (int i = 255; i >= 0; --i)
            cut.append(QString::number(i));
        const QString manyLinks = "k is_a m, k is_a n, k is_a k, "_s.repeated(20);
        // links | text of p
        auto cases = rows(R"(
            p uses k, p relates_to k, p is_not_a k, p requires k  | #p
            p is_a k, p is_a l, k is_a m, l is_a m                | m>m>l>k#p
            p is b, p is a, p contains z, p contains y            | y&z&a&b#p
            p is a, p is_a k, k contains x                        | k:a#p
            p is_a p2, p contains p2, p2 is_a k                   | #p
            p is_a k, k is_a m, m is_a k                          | m>k#p
            p is Zoo, p is Äpfel, p is apfel, p is Birne          | apfel&Äpfel&Birne&Zoo#p)");
        cases.append(Row("p is a, p is %1 | a&%1#p"_s.arg(word)));
        cases.append(Row(chain.join(", "_s) + " | "_s + cut.join(QLatin1Char('>')) + "#p"_s));
        cases.append(Row("%1k uses x, m is_a k, n is_a m, p is_a k | %2%3k#p"_s.arg(
            manyLinks, "m>"_s.repeated(20), "n>m>"_s.repeated(20))));
        for (const Row &row : qAsConst(cases))
            QCOMPARE(row.with(package(buildIndex({graph(row[0])}), "p"_s)->sortString()), row.text());
    }

    // Takes minutes if each link that leads back is compared with the whole way, again for each package.
    void chainsTakeNoTimeForLinksThatLeadBack()
    {
        MemoryCatalogue catalogue;
        QString chain = "#0"_s;
        for (int i = 0; i < 200; ++i) {
            catalogue.addKeyword("k%1"_s.arg(i), Keyword::Name, "x"_s, {});
            catalogue.addLink("k%1"_s.arg(i), IsA, "k%1"_s.arg(i + 1));
            chain.prepend(i > 0 ? "x>"_s : "x"_s);
        }
        for (int i = 0; i < 150000; ++i)
            catalogue.addLink("k199"_s, IsA, "k%1"_s.arg(i % 200));
        for (int i = 0; i < 5000; ++i) {
            catalogue.addPackage(QString::number(i));
            catalogue.addLink(QString::number(i), IsA, "k0"_s);
        }
        QCOMPARE(package(buildIndex({catalogue}), "0"_s)->sortString(), chain);
    }

    // One source could have each of its packages take as much memory as a thousand others.
    void longSortStringsShareTheirRoom()
    {
        MemoryCatalogue catalogue;
        catalogue.addKeyword("k"_s, Keyword::Name, QString(100000, QLatin1Char('x')), {});
        catalogue.links.fill({Contains, "0"_s, "k"_s}, 25000); // more characters than an int can count
        for (int i = 0; i < 2050; ++i) {
            catalogue.addPackage(QString::number(i));
            catalogue.addLink(QString::number(i), IsA, "k"_s);
        }
        const auto index = buildIndex({catalogue});
        QCOMPARE(package(index, "0"_s)->sortString(), QString(65536, QLatin1Char('x')) + "#0"_s);
        QCOMPARE(package(index, "2049"_s)->sortString(), QString(256, QLatin1Char('x')) + "#2049"_s);
    }

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

    // One reader begins before the language changes and ends after another one, who asks later, has begun.
    void manifestsAreOfTheGenerationAskedFor()
    {
        FakeTranslator translator;
        QSemaphore begun;
        QSemaphore late;
        std::future<QJsonValue> early;
        MemorySource source;
        source.catalogue = graph("p"_s);
        source.catalogue.manifests["p"_s] = {{"bird"_s, "id:owl"_s}};
        source.listener = [&, main = QThread::currentThread()](const char *call) {
            if (qstrcmp(call, "manifest") != 0)
                return;
            if (QThread::currentThread() != main) {
                begun.release();
                late.acquire();
                return;
            }
            late.release();
            early.wait();
            translator.language = "en"_s;
        };
        const auto index = QSharedPointer<PackageIndex>::create();
        index->addSource(&source);
        index->build();
        const auto read = [node = package(index, "p"_s)] { return node->readManifest("bird"_s); };
        early = std::async(std::launch::async, read);
        begun.acquire();
        index->invalidateManifests();
        QCOMPARE(read(), "owl -1 in en"_s);
        QCOMPARE(early.get(), "owl -1 in de"_s);
        QCOMPARE(read(), "owl -1 in en"_s);
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
        QVERIFY(pathOf(installable("p"_s, started)->installLocation()) != pathOf(index->installLocation()));
        const PackageNode *node = package(index, "p"_s);
        QCOMPARE(node->getFileUrl("picture"_s), QUrl("memory:/p/picture"_s));
        QVERIFY(node->installLocation().installFile("/dev/null"_s, "picture"_s));
        const QString installed = pathOf(index->installLocation()) + "/a/b/p/picture"_s;
        QCOMPARE(node->getFileUrl("picture"_s), QUrl::fromLocalFile(installed));
        QCOMPARE(node->getFileUrl("sound"_s), QUrl("memory:/p/sound"_s));
    }
};

QTEST_GUILESS_MAIN(tst_Nodes)
#include "tst_nodes.moc"
