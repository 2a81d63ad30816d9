#include "index/keywordreach_p.h"

#include "graph.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

const QStringList linkNames{"is_a"_s, "contains"_s, "relates_to"_s, "is_not_a"_s,
                            "is"_s,   "uses"_s,     "requires"_s};

// The search as it is described, step by step and without any guard: for graphs without cycles.

using Types = QSet<int>;

bool isAllowed(const QVector<LinkType> &stack)
{
    static const QHash<int, Types> following{
        {Contains, {Contains, RelatesTo}}, {RelatesTo, {RelatesTo}}, {Is, {Contains}}};
    Types allowed{IsA, Is, RelatesTo, Contains};
    for (int i = stack.size() - 1; i >= 0; --i) {
        if (!allowed.contains(stack.at(i)))
            return false;
        allowed = following.value(stack.at(i), allowed);
    }
    return true;
}

bool hasPathToType(const PackageIndexLink &link, const QStringRef &type, QVector<LinkType> &stack)
{
    stack.append(link.type);
    if (link.node->isPackage() && link.node->toPackage()->hasType(type))
        return isAllowed(stack);
    for (const PackageIndexLink &next : link.node->incomingLinks()) {
        if (hasPathToType(next, type, stack))
            return true;
    }
    stack.removeLast();
    return false;
}

bool plainLinksToPackageType(const KeywordNode *keyword, const QStringRef &type)
{
    for (const PackageIndexLink &link : keyword->incomingLinks()) {
        QVector<LinkType> stack;
        if (hasPathToType(link, type, stack))
            return true;
    }
    return false;
}

// Many small graphs side by side in one catalogue. A link leads to a later node, unless cycles are wanted.
MemoryCatalogue randomGraphs(QRandomGenerator &random, bool cycles)
{
    QStringList links;
    const QStringList types = linkNames + linkNames.mid(0, 3);
    for (int i = 0; i < 2000; ++i) {
        QStringList nodes;
        for (const QString &node : {"a"_s, "b"_s, "c"_s, "d"_s, "e"_s, "f"_s, "g"_s, "h"_s}) {
            const QString kind = QStringList{"p%1%2/a"_s, "p%1%2/a:b"_s, "k%1%2"_s}.at(random.bounded(3));
            nodes.append(kind.arg(i).arg(node));
        }
        links += nodes; // fixes their types
        for (int link = 0; link < 14; ++link) {
            const int from = random.bounded(7);
            const int to = cycles ? random.bounded(8) : random.bounded(from + 1, 8);
            links.append(
                "%1 %2 %3"_s.arg(nodes.at(from), types.at(random.bounded(types.size())), nodes.at(to)));
        }
    }
    return graph(links.join(", "_s));
}

bool leadsTo(const QSharedPointer<PackageIndex> &index, const QString &id, const QString &type)
{
    return keyword(index, id)->linksToPackageType(QStringRef(&type));
}

} // namespace

class tst_Walks : public QObject
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
                const QSet<KeywordNode *> keywords = package(index, "p"_s)->keywords();
                down += QLatin1Char(keywords.contains(keyword(index, "m"_s)) ? '+' : '-');
                up += QLatin1Char(leadsTo(index, "m"_s, "t"_s) ? '+' : '-');
                QCOMPARE(keywords.contains(keyword(index, "k"_s)), row[0] != "is_not_a"_s);
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
            p is_a k, k is_not_a m, k is_a m                  | k m
            p is_a k, k is_a m, m is_a k, m contains m        | k m
            p contains k, p is_a k, k is_a m                  | k m
            p is k, k relates_to m, m contains n, m is_a o    | k m
            p requires p2, p2 is_a k, p is_a m, m is_a p2     | m)")) {
            QStringList words =
                ids(package(buildIndex({graph(row[0])}), "p"_s)->keywords()).split(QLatin1Char(' '));
            words.sort();
            QCOMPARE(row.with(words.join(QLatin1Char(' '))), row.text());
        }
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
            p1 uses m, m is_a k, p2 is_a k                    | t | yes)")) {
            const bool found = leadsTo(buildIndex({graph(row[0])}), "k"_s, row[1]);
            QCOMPARE(row.with(found ? "yes"_s : "no"_s), row.text());
        }
    }

    void agreesWithThePlainSearch()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        const auto index = buildIndex({randomGraphs(random, false)});
        int answers[] = {0, 0};
        for (const KeywordNode *node : PackageIndex::selectKeywords(index, {})) {
            for (const QString &type : {"a"_s, "a:b"_s, "b"_s}) {
                const bool expected = plainLinksToPackageType(node, QStringRef(&type));
                QVERIFY2(node->linksToPackageType(QStringRef(&type)) == expected,
                         qPrintable(node->id().toString()));
                ++answers[expected];
            }
        }
        QVERIFY(answers[false] > 1000 && answers[true] > 1000);

        const KeywordReach::Test test = [](const KeywordNode *node) { return node->id().right(1) > "e"_s; };
        const auto plain = [&](PackageNode *node) {
            const QSet<KeywordNode *> keywords = node->keywords();
            return std::any_of(keywords.begin(), keywords.end(), test);
        };
        const KeywordPredicate predicate(test);
        const KeywordPredicate copy = predicate;
        for (const auto &next : {index, buildIndex({randomGraphs(random, true)})}) { // with cycles
            const QString expected = ids(PackageIndex::selectPackages(next, {}, plain, {}));
            QVERIFY(expected.size() > 1000);
            QCOMPARE(ids(PackageIndex::selectPackages(next, {}, predicate, {})), expected);
            QCOMPARE(ids(PackageIndex::selectPackages(next, {}, copy, {})), expected);
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
        for (const Row &row : qAsConst(cases))
            QCOMPARE(row.with(package(buildIndex({graph(row[0])}), "p"_s)->sortString()), row.text());
    }
};

QTEST_GUILESS_MAIN(tst_Walks)
#include "tst_walks.moc"
