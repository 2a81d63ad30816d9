#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagematchergroup.h"
#include "presentation/sortbyintegerfield.h"
#include "presentation/sortbystringfield.h"
#include "stage.h"

#include <QJsonDocument>
#include <QtTest>

#include <future>
#include <memory>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** Some plants, and matchers for them. */
class Garden : public Stage
{
public:
    Garden()
    {
        catalogue.addPackage("elm"_s, {}, R"({"picture": null})"_json);
        catalogue.addPackage("fern"_s, {}, R"({"picture": ""})"_json);
        catalogue.addPackage("oak"_s, {}, R"({"title": "Oak"})"_json);
        catalogue.addKeyword("tree"_s, Keyword::Category, {}, "Tall Tree"_s);
        catalogue.addKeyword("shade"_s, Keyword::Noun, "Schatten"_s, "Shade"_s);
        catalogue.addLink("elm"_s, IsA, "tree"_s);
        catalogue.addLink("oak"_s, IsA, "tree"_s);
        catalogue.addLink("tree"_s, Contains, "shade"_s);
        catalogue.addLink("fern"_s, RelatesTo, "shade"_s);
        catalogue.addLink("oak"_s, IsNotA, "shade"_s);
    }

    PackageMatcher *keyword(const QString &id)
    {
        auto *matcher = new HasKeyword(&owner);
        matcher->setKeywordId(id);
        return matcher;
    }

    PackageMatcher *search(const QString &text, MatchesKeywordSearch::MatchMode mode)
    {
        auto *matcher = new MatchesKeywordSearch(&owner);
        matcher->setSearchString(text);
        matcher->setMatchMode(mode);
        return matcher;
    }

    PackageMatcher *group(PackageMatcherGroup::MatchRequirement requirement,
                          const QList<PackageMatcher *> &members)
    {
        auto *matcher = new PackageMatcherGroup(&owner);
        matcher->setMatchRequirement(requirement);
        for (PackageMatcher *member : members)
            matcher->addMatcher(member);
        return matcher;
    }

    QString select(const PackageIndex::PackageFilter &filter, const PackageIndex::PackageOrder &less) const
    {
        QStringList ids;
        for (const PackageNode *package :
             PackageIndex::selectPackages(repository()->packageIndex(), {}, filter, less))
            ids.append(package->id().toString());
        return ids.join(" "_s);
    }

    QString taken(const PackageMatcher *matcher) const
    {
        const auto filter = matcher->matchFunction();
        return filter ? select(filter, {}) : "unrestricted"_s;
    }

    // By the function itself, and by the index, which may have a quicker way for it.
    QString sorted(const PackageSorter &sorter) const
    {
        const auto less = sorter.sortFunction();
        const QString ids = select({}, less);
        const QString byCalls = select({}, [less](auto *a, auto *b) { return less(a, b); });
        return ids == byCalls ? ids : ids + " or "_s + byCalls;
    }

private:
    QObject owner;
};

constexpr auto all = PackageMatcherGroup::MatchAll;
constexpr auto any = PackageMatcherGroup::MatchAny;
constexpr auto partial = MatchesKeywordSearch::PartialMatch;
constexpr auto full = MatchesKeywordSearch::FullMatch;

} // namespace

class tst_Matchers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchers();
    void membershipChangesAreTold();
    void functionsOutliveMatchersOnAnyThread();
    void sorters_data();
    void sorters();
};

void tst_Matchers::matchers()
{
    Garden g;
    g.publish();
    PackageMatcher *const none = g.keyword(QString());
    PackageMatcher *const tree = g.keyword("tree"_s);
    PackageMatcher *const shade = g.keyword("shade"_s);
    QCOMPARE(g.taken(none), "unrestricted"_s);
    QCOMPARE(g.taken(tree), "elm oak"_s);
    QCOMPARE(g.taken(shade), "elm fern"_s); // elm by way of tree; oak excludes it
    QCOMPARE(g.taken(g.keyword("Tree"_s)), QString());
    QCOMPARE(g.taken(g.keyword("tre"_s)), QString());
    HasManifestField picture;
    QCOMPARE(g.taken(&picture), "unrestricted"_s);
    picture.setName("picture"_s);
    QCOMPARE(g.taken(&picture), "elm fern"_s);
    QCOMPARE(g.taken(g.search(QString(), full)), "unrestricted"_s);
    QCOMPARE(g.taken(g.search("tall TREE"_s, full)), "elm oak"_s);
    QCOMPARE(g.taken(g.search("had"_s, partial)), "elm fern"_s);
    QCOMPARE(g.taken(g.search("had"_s, full)), QString());
    QCOMPARE(g.taken(g.search("tree tall"_s, partial)), QString());
    QCOMPARE(g.taken(g.search("shade "_s, partial)), QString());

    QCOMPARE(g.taken(g.group(all, {})), "unrestricted"_s);
    QCOMPARE(g.taken(g.group(any, {none, g.group(all, {none})})), "unrestricted"_s);
    QCOMPARE(g.taken(g.group(all, {tree, shade})), "elm"_s);
    QCOMPARE(g.taken(g.group(any, {tree, shade})), "elm fern oak"_s);
    QCOMPARE(g.taken(g.group(any, {none, shade})), "elm fern"_s);
    QCOMPARE(g.taken(g.group(all, {none, tree})), "elm oak"_s);
    QCOMPARE(g.taken(g.group(any, {g.group(all, {tree, shade}), g.keyword("unknown"_s)})), "elm"_s);
    PackageMatcher *const nested = g.group(all, {g.group(any, {tree, shade}), shade});
    QCOMPARE(g.taken(nested), "elm fern"_s);
    delete shade;
    QCOMPARE(g.taken(nested), "elm oak"_s);
}

// What comes of a word: signals at once, and after a slash those of a queued call.
void tst_Matchers::membershipChangesAreTold()
{
    const QString play =
        "add:01234[/matchersChanged, updateRequested] add:0 add: tell:0[updateRequested/] "
        "remove:0[/matchersChanged, updateRequested] remove:0 tell:0 "
        "clear[/matchersChanged, updateRequested] clear tell:1[updateRequested/] " // on purpose
        "append[/matchersChanged, updateRequested]"_s;
    PackageMatcherGroup group;
    QQmlListProperty<PackageMatcher> list = group.matchers();
    HasKeyword members[5];
    const auto add = [&](const QString &numbers) {
        for (const QChar number : numbers)
            group.addMatcher(&members[number.digitValue()]);
        if (numbers.isEmpty())
            group.addMatcher(nullptr);
        QCOMPARE(list.count(&list), 5);
        QCOMPARE(list.at(&list, 4), &members[4]);
    };
    const auto clear = [&] {
        list.clear(&list);
        QCOMPARE(list.count(&list), 0);
    };
    const Verbs verbs{{"add"_s, add},
                      {"remove"_s, [&](auto number) { group.removeMatcher(&members[number.toInt()]); }},
                      {"clear"_s, [&](auto) { clear(); }},
                      {"append"_s, [&](auto) { list.append(&list, &members[2]); }},
                      {"tell"_s, [&](auto number) { Q_EMIT members[number.toInt()].updateRequested(); }}};
    SignalLog log(&group);
    const auto effects = [&log] {
        const QString early = log.take();
        QCoreApplication::processEvents();
        const QString both = early + "/"_s + log.take();
        return both == "/"_s ? QString() : both;
    };
    QCOMPARE(perform(play, verbs, effects), play);
}

void tst_Matchers::functionsOutliveMatchersOnAnyThread()
{
    Garden garden;
    garden.publish();
    auto search = std::make_unique<MatchesKeywordSearch>();
    search->setSearchString("shade"_s);
    auto field = std::make_unique<HasManifestField>();
    field->setName("picture"_s);
    PackageMatcher *const group = garden.group(all, {garden.keyword("shade"_s), search.get(), field.get()});
    const auto filter = group->matchFunction();
    delete group;
    search.reset();
    field.reset();
    std::future<QString> threads[4];
    for (std::future<QString> &thread : threads)
        thread = std::async(std::launch::async, [&] { return garden.select(filter, {}); });
    for (std::future<QString> &thread : threads)
        QCOMPARE(thread.get(), "elm fern"_s);
    garden.catalogue.addLink("elm"_s, IsNotA, "shade"_s);
    garden.publish();
    QCOMPARE(garden.select(filter, {}), "fern"_s); // in another index than it was first used for
}

void tst_Matchers::sorters_data()
{
    QTest::addColumn<QByteArrayList>("values"); // of the packages a, b, c and so on, as JSON; empty for none
    QTest::addColumn<QString>("byInteger");
    QTest::addColumn<QString>("byString");
    QTest::newRow("numbers") << QByteArrayList{"10", "9", "", "-1"} << "d c b a"
                             << "a b c d";
    QTest::newRow("not whole, not 32 bits, no numbers")
        << QByteArrayList{"1", R"("10")", "2.5", "3000000000", "-1", "true"} << "e b c d f a"
        << "a c d e f b";
    QTest::newRow("texts") << QByteArrayList{R"("b")", R"("C")", R"("a")", ""} << "a b c d"
                           << "d b c a";
    QTest::newRow("ties") << QByteArrayList{"2", "1", "2", "1"} << "b d a c"
                          << "a b c d";
}

void tst_Matchers::sorters()
{
    QFETCH(QByteArrayList, values);
    Garden garden;
    garden.catalogue = MemoryCatalogue();
    QStringList indexOrder;
    for (int i = 0; i < values.size(); ++i) {
        indexOrder.append(QString(QLatin1Char(char('a' + i))));
        garden.catalogue.addPackage(indexOrder.last(), {},
                                    QJsonDocument::fromJson(R"({"key": )" + values.at(i) + "}").object());
    }
    garden.publish();
    SortByIntegerField byInteger;
    SortByStringField byString;
    QVERIFY(!byInteger.sortFunction() && !byString.sortFunction());
    byInteger.setName("key"_s);
    byString.setName("key"_s);
    QTEST(garden.sorted(byInteger), "byInteger");
    QTEST(garden.sorted(byString), "byString");
    byInteger.setName("Key"_s);
    QCOMPARE(garden.sorted(byInteger), indexOrder.join(" "_s));
}

QTEST_GUILESS_MAIN(tst_Matchers)
#include "tst_matchers.moc"
