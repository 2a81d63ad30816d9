#include "index/graph.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagematchergroup.h"
#include "presentation/sortbyintegerfield.h"
#include "presentation/sortbystringfield.h"
#include "support/stage.h"

#include <QtTest>

#include <future>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** Restricts nothing, and does something of its own when it is asked. */
struct BusyMatcher : PackageMatcher
{
    std::function<bool(PackageNode *)> matchFunction() const override
    {
        act();
        return {};
    }

    std::function<void()> act = [] {};
};

/** Some plants, and matchers for them. */
class Garden : public Stage
{
public:
    Garden()
    {
        catalogue =
            graph("palm is_a treetop, pine is_a treetop, treetop contains shade, poppy relates_to shade, "
                  "treetop is_a tree, tree is_a treetop, pine requires poppy, "
                  "pine is_not_a shade"_s); // which it has by way of the treetop
        catalogue.manifests["palm"_s] = json(R"({"picture": null})"_s);
        catalogue.manifests["poppy"_s] = json(R"({"picture": ""})"_s);
        catalogue.manifests["pine"_s] = json(R"({"title": "Pine"})"_s);
        publish();
    }

    /** That of a group, of words such as "any has:treetop part:tree full:shade field:picture". */
    PackageIndex::PackageFilter filter(const QString &text)
    {
        auto *group = new PackageMatcherGroup(owner.get());
        QSignalSpy updates(group, &PackageMatcher::updateRequested);
        for (const QString &word : text.split(" "_s)) {
            const QString verb = word.section(":"_s, 0, 0);
            PackageMatcher *matcher = new MatchesKeywordSearch(owner.get());
            if (verb == "has"_s)
                matcher = new HasKeyword(owner.get());
            else if (verb == "field"_s)
                matcher = new HasManifestField(owner.get());
            group->addMatcher(matcher);
            for (int i = 0; i < 2; ++i) { // the second time changes nothing
                for (const char *property : {"keywordId", "name", "searchString"})
                    matcher->setProperty(property, word.section(":"_s, 1));
                matcher->setProperty("matchMode", verb == "odd"_s ? 7 : int(verb == "full"_s));
                if (verb == "any"_s || verb == "odd"_s)
                    group->setProperty("matchRequirement", verb == "any"_s ? 1 : 7);
            }
        }
        updateCount = updates.count();
        return group->matchFunction();
    }

    QString select(const PackageIndex::PackageFilter &filter, const PackageIndex::PackageOrder &less) const
    {
        return ids(PackageIndex::selectPackages(repository()->packageIndex(), {}, filter, less));
    }

    // By the function itself, and by the index, which may have a quicker way for it.
    QString sorted(const PackageSorter &sorter) const
    {
        const auto less = sorter.sortFunction();
        const QString ids = select({}, less);
        const QString byCalls = select({}, [less](auto *a, auto *b) { return less(a, b); });
        return ids == byCalls ? ids : ids + " or "_s + byCalls;
    }

    int updateCount = 0; // that the last filter has asked for while it was made
    std::unique_ptr<QObject> owner = std::make_unique<QObject>();
};

} // namespace

class tst_Matchers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void matchers();
    void membershipChangesAreTold();
    void groupsOutliveTheirMembers();
    void functionsOutliveMatchersOnAnyThread();
    void sorters();
};

void tst_Matchers::matchers()
{
    Garden garden;
    for (const Row &row : rows(R"(
        has:                     | unrestricted, 0 updates
        has:treetop              | palm pine, 1 updates
        has:shade                | poppy palm, 1 updates
        has:Treetop              | , 1 updates
        field:picture            | poppy palm, 1 updates
        full:TreeTop             | palm pine, 2 updates
        part:HAD                 | poppy palm, 1 updates
        full:had                 | , 2 updates
        part:treetops            | , 1 updates
        any                      | unrestricted, 1 updates
        has:treetop has:shade    | palm, 2 updates
        any has:treetop has:shade| poppy palm pine, 3 updates
        any has: has:shade       | poppy palm, 2 updates
        odd:had has:treetop      | poppy palm pine, 4 updates
        has: has:treetop         | palm pine, 1 updates)")) {
        const auto filter = garden.filter(row[0]);
        const QString taken = filter ? garden.select(filter, {}) : "unrestricted"_s;
        QCOMPARE(row.with("%1, %2 updates"_s.arg(taken).arg(garden.updateCount)), row.text());
    }
}

// What comes of a word: signals at once, and after a slash those of a queued call.
void tst_Matchers::membershipChangesAreTold()
{
    const QString play =
        "add:01234[/matchersChanged, updateRequested] add:0 add: tell:0[updateRequested/] "
        "remove:0[/matchersChanged, updateRequested] remove:0 tell:0 "
        "clear[/matchersChanged, updateRequested] clear tell:1[updateRequested/] " // on purpose
        "append[/matchersChanged, updateRequested] destroy"_s;
    PackageMatcherGroup group;
    QQmlListProperty<PackageMatcher> list = group.matchers();
    auto members = std::make_unique<std::array<HasKeyword, 5>>();
    const auto add = [&](const QString &numbers) {
        for (const QChar number : numbers)
            group.addMatcher(&members->at(uint(number.digitValue())));
        if (numbers.isEmpty())
            group.addMatcher(nullptr);
    };
    const Verbs verbs{
        {"add"_s, add},
        {"remove"_s, [&](auto number) { group.removeMatcher(&members->at(number.toUInt())); }},
        {"clear"_s, [&](auto) { list.clear(&list); }},
        {"append"_s, [&](auto) { list.append(&list, &members->at(2)); }},
        {"destroy"_s, [&](auto) { members.reset(); }},
        {"tell"_s, [&](auto number) { Q_EMIT members->at(number.toUInt()).updateRequested(); }}};
    SignalLog log(&group);
    const auto effects = [&log] {
        const QString early = log.take();
        QCoreApplication::processEvents();
        const QString both = early + "/"_s + log.take();
        return both == "/"_s ? QString() : both;
    };
    QCOMPARE(perform(play, verbs, effects), play);
    QVERIFY(!group.matchFunction()); // its one member is gone
}

void tst_Matchers::groupsOutliveTheirMembers()
{
    PackageMatcherGroup groups[3];
    groups[0].addMatcher(&groups[1]);
    groups[1].addMatcher(&groups[2]);
    for (PackageMatcherGroup &group : groups)
        groups[2].addMatcher(&group); // would close a circle
    QVERIFY(!groups[0].matchFunction());
    QQmlListProperty<PackageMatcher> list = groups[0].matchers();
    list.clear(&list);
    groups[1].addMatcher(&groups[0]); // goes on asking for updates through it
    QSignalSpy updates(&groups[0], &PackageMatcher::updateRequested);
    groups[2].setMatchRequirement(PackageMatcherGroup::MatchAny);
    QCOMPARE(updates.count(), 1);

    auto group = std::make_unique<PackageMatcherGroup>();
    BusyMatcher members[2];
    for (BusyMatcher &member : members) {
        group->addMatcher(&member);
        member.act = [&group] { group.reset(); };
    }
    group->matchFunction();
    QVERIFY(!group);
}

void tst_Matchers::functionsOutliveMatchersOnAnyThread()
{
    Garden garden;
    const auto filter = garden.filter("has:shade part:shade field:picture"_s);
    garden.owner.reset();
    std::future<QString> threads[4];
    for (std::future<QString> &thread : threads)
        thread = std::async(std::launch::async, [&] { return garden.select(filter, {}); });
    for (std::future<QString> &thread : threads)
        QCOMPARE(thread.get(), "poppy palm"_s);
    garden.catalogue.addLink("palm"_s, IsNotA, "shade"_s);
    garden.publish();
    QCOMPARE(garden.select(filter, {}), "poppy"_s); // in another index than it was first used for
}

void tst_Matchers::sorters()
{
    // values of the packages a, b, c and so on, nothing for none | by integer, by string
    for (const Row &row : rows(R"(
        1; "10"; 2.5; 3000000000; -1; true    | e b c d f a, a c d e f b
        "b"; "C"; "a";                        | a b c d, d b c a
        2; 1; 2; 1                            | b d a c, a b c d)")) {
        Garden garden;
        garden.catalogue = MemoryCatalogue();
        const QStringList values = row[0].split(";"_s);
        for (int i = 0; i < values.size(); ++i)
            garden.catalogue.addPackage(QChar('a' + i), {}, json(R"({"key": %1})"_s.arg(values.at(i))));
        garden.publish();
        SortByIntegerField byInteger;
        SortByStringField byString;
        QVERIFY(!byInteger.sortFunction() && !byString.sortFunction());
        byInteger.setName("key"_s);
        byString.setName("key"_s);
        QCOMPARE(row.with(garden.sorted(byInteger) + ", "_s + garden.sorted(byString)), row.text());
        for (int i = 0; i < 100; ++i) // whose order, as that of all equals, is that of the index
            garden.catalogue.addPackage("another %1"_s.arg(i));
        garden.publish();
        byInteger.setName("Key"_s);
        QCOMPARE(garden.sorted(byInteger), garden.select({}, {}));
    }
}

QTEST_GUILESS_MAIN(tst_Matchers)
#include "tst_matchers.moc"
