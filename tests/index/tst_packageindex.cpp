#include "index/foldedorder_p.h"

#include "graph.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// Packages of the types named, each of which has its type as its id too, and "-" stands for the empty one.
QSharedPointer<PackageIndex> indexOfTypes(const QStringList &types)
{
    MemoryCatalogue catalogue;
    for (const QString &type : types)
        catalogue.addPackage(type, type == "-"_s ? QString() : type);
    return buildIndex({catalogue});
}

// An index with a keyword "k" of texts such as "de=Vogel/Vögel, en=bird/birds".
QSharedPointer<PackageIndex> indexOfKeyword(Keyword::Type type, const QString &texts)
{
    MemoryCatalogue catalogue;
    catalogue.keywords.append({"k"_s, type, {}});
    for (const QString &text : texts.split(", "_s, Qt::SkipEmptyParts)) {
        const QStringList parts = text.split(QRegularExpression("[=/]"_s)) + QStringList(QString());
        catalogue.keywords.first().strings.append({parts.at(0), parts.at(1), parts.at(2)});
    }
    return buildIndex({catalogue});
}

// All types with those letters: n noun, t those with one text for each language, l literal.
QVector<Keyword::Type> typesOf(const QString &letters)
{
    QVector<Keyword::Type> types;
    for (const auto type :
         {Keyword::Noun, Keyword::Name, Keyword::Adjective, Keyword::Literal, Keyword::Category}) {
        if (letters.contains(QLatin1Char("nttlt"[type])))
            types += type;
    }
    return types;
}

// What a source has for one id, as in "p:type", a package, "k:text", a keyword, and "x:", one without a type.
MemoryCatalogue recordsOf(const QString &records, int source)
{
    MemoryCatalogue catalogue;
    for (const QString &record : records.split(QLatin1Char(' '))) {
        const QString text = record.mid(2);
        if (record.startsWith("p:"_s))
            catalogue.addPackage("id"_s, text, {{"source"_s, source}});
        else
            catalogue.addKeyword("id"_s, record.startsWith("k:"_s) ? Keyword::Name : Keyword::Invalid, text,
                                 text);
    }
    return catalogue;
}

QString textOf(const QVector<PackageIndexLink> &links)
{
    QStringList texts;
    for (const PackageIndexLink &link : links)
        texts.append("%1 %2"_s.arg(link.type).arg(link.node->id()));
    return texts.join(", "_s);
}

// Few characters, so that long common beginnings come up; cased ones within and beyond the basic plane, and
// halves of surrogate pairs on their own.
QString randomText(QRandomGenerator &random)
{
    static const QString characters = "aAbBéÉßſKkİıΣσς𐐀𐐨😀~ＡａxX"_s + QChar(0xD801) + QChar(0xDC28);
    QString text(int(random.bounded(3)) * 4, QLatin1Char('x'));
    for (quint32 i = random.bounded(6U); i > 0; --i)
        text += characters.at(random.bounded(characters.size()));
    return text;
}

} // namespace

class tst_PackageIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void choosesTheLanguage()
    {
        // locale | languages of each source | of the index
        for (const Row &row : rows(R"(
            de_AT | de en         | de
            pt_BR | en pt pt_BR   | pt_BR
            pt_BR | en pt_PT pt   | pt
            fr_FR | de en         | en
            de_DE | fr en, de, en | de
            de_DE |               | en)")) {
            QLocale::setDefault(QLocale(row[0]));
            QVector<MemoryCatalogue> catalogues;
            for (const QString &languages : row[1].split(", "_s)) {
                catalogues.append(MemoryCatalogue());
                catalogues.last().languages = languages.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            }
            QCOMPARE(row.with(buildIndex(catalogues)->activeLanguage().toString()), row.text());
        }
    }

    void callsAccessorsInOrder()
    {
        QStringList calls;
        MemorySource a;
        MemorySource b;
        a.listener = [&](const char *call) { calls.append("a %1"_s.arg(QLatin1String(call))); };
        b.listener = [&](const char *call) { calls.append("b %1"_s.arg(QLatin1String(call))); };
        b.catalogue = graph("p"_s);
        auto index = QSharedPointer<PackageIndex>::create();
        index->addSource(&a);
        index->addSource(&b);
        QVERIFY(calls.isEmpty());
        index->build();
        QVERIFY(index->addString("late"_s).isNull());
        package(index, "p"_s)->manifest();
        package(index, "p"_s)->readManifest("title"_s);
        index.reset();
        QCOMPARE(calls.join(", "_s),
                 "a languages, b languages, a initialize, b initialize, a links, b links, "
                 "b manifest, b gone, a gone"_s);
    }

    void lastRecordOfAnIdWins()
    {
        // each source in ascending priority | what becomes of its records
        for (const Row &row : rows(R"(
            p:low, p:high       | package high of source 1
            k:low, k:high       | keyword high
            p:low, k:high       | keyword high
            k:low, p:high       | package high of source 1
            k:one k:two         | keyword two
            p:low, x:           | package low of source 0
            p:one k:two x:      | keyword two
            k:low, p:high, x:   | package high of source 1)")) {
            QVector<MemoryCatalogue> catalogues;
            for (const QString &records : row[0].split(", "_s))
                catalogues.append(recordsOf(records, catalogues.size()));
            const auto index = buildIndex(catalogues);
            QStringList found;
            for (const PackageNode *node : PackageIndex::selectPackages(index, {}, {}, {}))
                found.append("package %1 of source %2"_s.arg(node->type())
                                 .arg(node->readManifest("source"_s).toInt()));
            for (const KeywordNode *node : PackageIndex::selectKeywords(index, {}))
                found.append("keyword %1"_s.arg(node->displayString()));
            QCOMPARE(row.with(found.join(", "_s)), row.text());
        }
    }

    void linksNodesOfAllSources()
    {
        MemoryCatalogue low = graph("p is_a k, k is_a k"_s);
        low.links += {{Uses, "p"_s, "x"_s},    {Uses, "x"_s, "m"_s},    {InvalidLink, "p"_s, "k"_s},
                      {IsA, QString(), "k"_s}, {IsA, "k"_s, QString()}, {Contains, "k"_s, "m"_s}};
        LogCapture log("tamsel.package.index"_s);
        const auto index = buildIndex({low, graph("m requires p, m requires p"_s)});

        QCOMPARE(textOf(package(index, "p"_s)->outgoingLinks()), "0 k"_s);
        QCOMPARE(textOf(package(index, "p"_s)->incomingLinks()), "6 m, 6 m"_s);
        QCOMPARE(textOf(keyword(index, "k"_s)->outgoingLinks()), "0 k, 1 m"_s);
        QCOMPARE(textOf(keyword(index, "k"_s)->incomingLinks()), "0 p, 0 k"_s);
        QCOMPARE(textOf(keyword(index, "m"_s)->incomingLinks()), "1 k"_s);
        QStringList lines = log.lines();
        const QRegularExpression took("^debug: Package index build took [0-9.e-]+ msecs$"_s);
        QVERIFY2(took.match(lines.takeLast()).hasMatch(), qPrintable(log.lines().last()));
        QCOMPARE(lines.replaceInStrings("debug: "_s, QString()).join(QLatin1Char('\n')),
                 QStringLiteral(R"(Creating link between "p" and "k" with type 0
Creating link between "k" and "k" with type 0
Cannot link between "p" and "x"
Cannot link between "x" and "m"
Creating link between "k" and "m" with type 1
Creating link between "m" and "p" with type 6
Creating link between "m" and "p" with type 6)"));
    }

    void ordersPackagesByType()
    {
        for (const QString &ordered : {"- :x A a a-b a:b a:c aB ab"_s, "Z é 😀 ～"_s}) { // by code unit
            QStringList types = ordered.split(QLatin1Char(' '));
            for (int i = 0; i < types.size(); ++i) {
                types.append(types.takeFirst());
                QCOMPARE(ids(PackageIndex::selectPackages(indexOfTypes(types), {}, {}, {})), ordered);
            }
        }
    }

    void selectsTypes()
    {
        const auto index =
            indexOfTypes({"b:c"_s, "a::d"_s, "a:b:c"_s, "a-b"_s, ":x"_s, "-"_s, "a"_s, "a:b"_s, "a:bc"_s});
        // type | packages from the first to the last that have it; those that have it
        for (const Row &row : rows(R"(
                  | - :x a a-b a::d a:b a:b:c a:bc b:c; - :x
            a     | a a-b a::d a:b a:b:c a:bc; a a::d a:b a:b:c a:bc
            a-b   | a-b; a-b
            a:b   | a:b a:b:c; a:b a:b:c
            a:    | a::d; a::d
            :x    | :x; :x
            b:c:d | ;)")) {
            for (const QString &type : {row[0], row[0].isEmpty() ? QString() : row[0]}) { // null, too
                const auto hasType = [&](PackageNode *node) { return node->hasType(QStringRef(&type)); };
                const QString range = ids(PackageIndex::selectPackages(index, type, {}, {}));
                const QString one = ids(PackageIndex::selectPackages(index, {}, hasType, {}));
                QCOMPARE(row.with("%1; %2"_s.arg(range, one).trimmed()), row.text());
            }
        }
    }

    void ordersBySortAndDisplayStrings()
    {
        MemoryCatalogue catalogue = graph("p1 is_a k1, p2 is_a k2, p, pB, pa, p3/T"_s);
        catalogue.addPackage("P"_s, "t"_s);
        catalogue.addKeyword("k1"_s, Keyword::Name, "Zaunkönig"_s, "a"_s); // German texts count for packages
        catalogue.addKeyword("k2"_s, Keyword::Noun, "amsel"_s, "Z"_s);
        catalogue.addKeyword("k3"_s, Keyword::Literal, "Jay"_s, "ignored"_s);
        catalogue.addKeyword("k4"_s, Keyword::Adjective, "e"_s, "finch"_s);
        const auto index = buildIndex({catalogue});
        const QString order = ids(PackageIndex::selectPackages(index, {}, {}, {}));
        QVERIFY2(order == "p3 p P pa pB p2 p1"_s || order == "p3 P p pa pB p2 p1"_s, qPrintable(order));
        QCOMPARE(ids(PackageIndex::selectKeywords(index, {})), "k1 k4 k3 k2"_s);
        const auto filter = [](KeywordNode *node) { return node->type() != Keyword::Literal; };
        QCOMPARE(ids(PackageIndex::selectKeywords(index, filter)), "k1 k4 k2"_s);
    }

    void keywordsShowAndSort()
    {
        // types | texts | shown, sorted by, complaint
        for (const Row &row : rows(R"(
            t   | de=Eule, en=owl, en=hooter, de=Kauz              | owl, Eule,
            t   | en=owl, de=, de=Kauz, de=Eule                    | owl, Kauz,
            n t | en=owl, en_GB=hooter, =bird                      | owl, ,
            n t |                                                  | , , "k" has empty string list
            n t | en=, en=owl                                      | , ,
            n   | en=owl/owls, en=hooter/, de=Eule/Eulen, de=Kauz/ | owl, Eule,
            n   | en=/Alps, de=/, de=/Alpen                        | Alps, Alpen,
            l   | de=42, en=43                                     | 42, 42,
            l   |                                                  | , , "k" has empty string)")) {
            for (const Keyword::Type type : typesOf(row[0])) {
                LogCapture log("tamsel.package.index"_s);
                const auto index = indexOfKeyword(type, row[1]);
                const QString warning = log.lines().filter("warning: "_s).join(QLatin1Char('\n'));
                const KeywordNode *node = keyword(index, "k"_s);
                QCOMPARE(row.with("%1, %2, %3"_s
                                      .arg(node->displayString(), node->sortString(),
                                           QString(warning).remove("warning: Keyword "_s))
                                      .trimmed()),
                         row.text());
                QCOMPARE(node->type(), type);
            }
        }
    }

    void keywordsFindTexts()
    {
        // types | texts | search | match: suggestions
        for (const Row &row : rows(R"(
            n t l | en=Äsop                               | äSOP       | 2: Äsop
            n t l | en=Äsop                               | äs         | 1: Äsop
            n t l | en=Äsop                               | OP         | 1: Äsop
            t l   | en=owl                                |            | 1: owl
            n t l | en=                                   | owl        | 0:
            n t   | de=Eule, en=barn owl, en=OWL          | owl        | 1: barn owl, OWL
            n t   | de=Eule, en=owl, en=night bird        | NIGHT BIRD | 2: night bird
            n t   | de=Eule, en=owl                       | eule       | 0:
            n     | en=songbird/songbirds, en=bird/birds  | bird       | 1: songbird, bird
            n     | en=songbird/songbirds, en=bird/birds  | BIRDS      | 1: songbirds, birds
            n     | en=owl/owls, en=goose/geese           | Geese      | 2: geese
            n     | en=owls/owl                           | owl        | 2: owls
            n     | en=/owls                              |            | 2:)")) {
            for (const Keyword::Type type : typesOf(row[0])) {
                const auto index = indexOfKeyword(type, row[1]);
                const KeywordNode *node = keyword(index, "k"_s);
                const QString search = row[2];
                QStringList suggestions;
                for (const QStringRef &suggestion : node->suggestions(QStringRef(&search)))
                    suggestions.append(suggestion.toString());
                const QString found =
                    "%1: %2"_s.arg(node->match(QStringRef(&search))).arg(suggestions.join(", "_s));
                QCOMPARE(row.with(found.trimmed()), row.text());
            }
        }
    }

    void foldedOrderIsThatOfQString()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        QVector<QPair<int, QString>> texts;
        FoldedOrder order;
        for (int i = 0; i < 5000; ++i) {
            texts.append({int(random.bounded(3)), randomText(random)});
            order.add(texts.constLast().first, QStringRef(&texts.constLast().second));
        }
        const QVector<int> sorted = order.sorted();
        QCOMPARE(QSet<int>(sorted.begin(), sorted.end()).size(), texts.size());
        for (int i = 1; i < sorted.size(); ++i) {
            const auto &[groupA, a] = texts.at(sorted.at(i - 1));
            const auto &[groupB, b] = texts.at(sorted.at(i));
            const bool ordered =
                groupA < groupB || (groupA == groupB && a.compare(b, Qt::CaseInsensitive) <= 0);
            QVERIFY2(ordered, qPrintable("%1 before %2"_s.arg(a, b)));
        }
    }
};

QTEST_GUILESS_MAIN(tst_PackageIndex)
#include "tst_packageindex.moc"
