#include "graph.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

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

// What a source has for one id, as in "p:type", a package, "k:text", a keyword, "x:", one without a type, and
// "-", records without any id.
MemoryCatalogue recordsOf(const QString &records)
{
    MemoryCatalogue catalogue;
    for (const QString &record : records.split(QLatin1Char(' '))) {
        const QString text = record.mid(2);
        const auto type = record.startsWith("k:"_s) ? Keyword::Name : Keyword::Invalid;
        if (record.startsWith("p:"_s)) {
            catalogue.addPackage("id"_s, text, {{"type"_s, text}});
        } else if (record == "-"_s) {
            catalogue.addPackage(QString(), "t"_s);
            catalogue.addKeyword(QString(), Keyword::Name, "k"_s, "k"_s);
            catalogue.addLink("id"_s, IsA, QString());
        } else {
            catalogue.addKeyword("id"_s, type, text, text);
        }
    }
    return catalogue;
}

// 128 texts of one qHash(), whatever its seed. It goes through a text from front to back, so that two pieces
// of one hash can stand for each other wherever pieces of their length follow each other.
QStringList collidingTexts()
{
    QRandomGenerator random(1);
    QHash<uint, QString> pieces;
    QString piece;
    do {
        pieces.insert(qHash(piece, 1), piece);
        piece = "%1"_s.arg(random.generate64(), 16, 16, QLatin1Char('0'));
    } while (!pieces.contains(qHash(piece, 1)));
    const QString twin = pieces.value(qHash(piece, 1));
    QStringList texts{QString()};
    while (texts.size() < 128) {
        for (const QString &text : std::exchange(texts, {}))
            texts += {text + piece, text + twin};
    }
    return texts;
}

// Outlives the application, and what Qt keeps its threads in if that is made later.
QSharedPointer<PackageIndex> &staticIndex()
{
    static QSharedPointer<PackageIndex> index;
    return index;
}

} // namespace

class tst_PackageIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { staticIndex(); }
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
        a.listener = [&](const char *call) { calls += "a "_s + QLatin1String(call); };
        b.listener = [&](const char *call) { calls += "b "_s + QLatin1String(call); };
        b.catalogue = graph("p"_s);
        auto index = QSharedPointer<PackageIndex>::create();
        index->addSource(&a);
        index->addSource(nullptr);
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
        // each source in ascending priority | what becomes of its records; a package also by its manifest
        for (const Row &row : rows(R"(
            -                   |
            p:low -, -          | p:low low
            p:low, p:high       | p:high high
            k:low, k:high       | k:high
            p:low, k:high       | k:high
            k:low, p:high       | p:high high
            k:one k:two         | k:two
            p:low, x:           | p:low low
            p:one k:two x:      | k:two
            k:low, p:high, x:   | p:high high)")) {
            QVector<MemoryCatalogue> catalogues;
            for (const QString &records : row[0].split(", "_s))
                catalogues.append(recordsOf(records));
            const auto index = buildIndex(catalogues);
            QStringList found;
            for (const PackageNode *node : PackageIndex::selectPackages(index, {}, {}, {}))
                found.append("p:%1 %2"_s.arg(node->type(), node->readManifest("type"_s).toString()));
            for (const KeywordNode *node : PackageIndex::selectKeywords(index, {}))
                found.append("k:%1"_s.arg(node->displayString()));
            QCOMPARE(row.with(found.join(", "_s)), row.text());
        }
    }

    void linksNodesOfAllSources()
    {
        MemoryCatalogue low = graph("p is_a k, k is_a k"_s);
        low.links += {{Uses, "p"_s, "x"_s},    {Uses, "x"_s, "m"_s},    {InvalidLink, "p"_s, "k"_s},
                      {IsA, QString(), "k"_s}, {IsA, "k"_s, QString()}, {Contains, "k"_s, "m"_s}};
        LogCapture log("tamsel.package.index"_s);
        buildIndex({low, graph("m requires p, m requires p"_s)});
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

    void ordersAndSelectsTypes()
    {
        MemoryCatalogue catalogue;
        for (const QString &type : "～ b:c a::d é aB a:b:c a-b A :x - 😀 a a:b a:bc"_s.split(QLatin1Char(' ')))
            catalogue.addPackage(type, type == "-"_s ? QString() : type);
        catalogue.addPackage("z"_s, "a:bc"_s);
        const auto index = buildIndex({catalogue});
        QVERIFY(PackageIndex::selectPackages({}, {}, {}, {}).isEmpty());
        // type | packages from the first to the last that have it, by code unit; those that have it
        for (const Row &row : rows(R"(
                  | - :x A a a-b a::d a:b a:b:c a:bc z aB b:c é 😀 ～; - :x
            a     | a a-b a::d a:b a:b:c a:bc z; a a::d a:b a:b:c a:bc z
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
        MemoryCatalogue deep;
        deep.addPackage("p"_s, QString(300, QLatin1Char(':')));
        const auto deepIndex = buildIndex({deep});
        for (const int colons :
             {1, 255, 256, 299, 300}) { // those of 256 to 299 are types that nobody asks for
            const QString type(colons, QLatin1Char(':'));
            const int found = PackageIndex::selectPackages(deepIndex, type, {}, {}).size();
            QCOMPARE(found, colons < 256 || colons == 300 ? 1 : 0);
        }
    }

    void ordersPackagesBySortStrings()
    {
        MemoryCatalogue catalogue = graph("p1 is_a k1, p2 is_a k2, p, pB, pa, p3/T"_s);
        catalogue.addPackage("P"_s, "t"_s);
        catalogue.addKeyword("k1"_s, Keyword::Name, "Zaunkönig"_s, "a"_s); // German texts count for packages
        catalogue.addKeyword("k2"_s, Keyword::Noun, "amsel"_s, "Z"_s);
        const auto index = buildIndex({catalogue});
        const QString order = ids(PackageIndex::selectPackages(index, {}, {}, {}));
        QVERIFY2(order == "p3 p P pa pB p2 p1"_s || order == "p3 P p pa pB p2 p1"_s, qPrintable(order));
        const auto filter = [](KeywordNode *node) { return node->type() == Keyword::Noun; };
        QCOMPARE(ids(PackageIndex::selectKeywords(index, filter)), "k2"_s);
    }

    void keywordsShowSortAndMatch()
    {
        // types (n noun, t those with one text for each language, l literal) | texts | search
        // | shown, sorted by; match: suggestions; complaint
        for (const Row &row : rows(R"(
            t     | de=Eule, en=owl, en=hooter, de=Kauz              | O          | owl, Eule; 1: owl, hooter
            t     | en=owl, de=, de=Kauz, de=Eule                    |            | owl, Kauz; 1: owl
            n t   | en=owl, en_GB=hooter, =bird                      | HOOTER     | owl, ; 0:
            n t   |                                                  | owl        | , ; 0: ; "k" has empty string list
            n t   | en=, en=owl                                      | owl        | , ; 2: owl
            n     | en=owl/owls, en=hooter/, de=Eule/Eulen, de=Kauz/ | eule       | owl, Eule; 0:
            n     | en=/Alps, de=/, de=/Alpen                        |            | Alps, Alpen; 2:
            n     | en=songbird/songbirds, en=bird/birds             | bird       | songbird, ; 1: songbird, bird
            n     | en=songbird/songbirds, en=bird/birds             | BIRDS      | songbird, ; 1: songbirds, birds
            n     | en=owl/owls, en=goose/geese                      | Geese      | owl, ; 2: geese
            n     | en=owls/owl                                      | owl        | owls, ; 2: owls
            l     | de=42, en=43                                     | 43         | 42, 42; 0:
            l     |                                                  | owl        | , ; 0: ; "k" has empty string
            n t   | en=Äsop                                          | äSOP       | Äsop, ; 2: Äsop
            n t   | en=Äsop                                          | äs         | Äsop, ; 1: Äsop
            l     | en=Äsop                                          | äSOP       | Äsop, Äsop; 2: Äsop
            l     | en=Äsop                                          | OP         | Äsop, Äsop; 1: Äsop
            n t   | de=Eule, en=barn owl, en=OWL                     | owl        | barn owl, Eule; 1: barn owl, OWL
            n t   | de=Eule, en=owl, en=night bird                   | NIGHT BIRD | owl, Eule; 2: night bird)")) {
            for (const auto type :
                 {Keyword::Noun, Keyword::Name, Keyword::Adjective, Keyword::Literal, Keyword::Category}) {
                if (!row[0].contains(QLatin1Char("nttlt"[type])))
                    continue;
                const LogCapture log("tamsel.package.index"_s);
                const auto index = indexOfKeyword(type, row[1]);
                const KeywordNode *node = keyword(index, "k"_s);
                const QString search = row[2];
                QStringList suggestions;
                for (const QStringRef &suggestion : node->suggestions(QStringRef(&search)))
                    suggestions.append(suggestion.toString());
                QString outcome = "%1, %2; %3: %4"_s.arg(node->displayString(), node->sortString())
                                      .arg(node->match(QStringRef(&search)))
                                      .arg(suggestions.join(", "_s));
                for (QString &warning : log.lines().filter("warning: "_s))
                    outcome += "; "_s + warning.remove("warning: Keyword "_s);
                QCOMPARE(row.with(outcome.trimmed()), row.text());
                QCOMPARE(node->type(), type);
            }
        }
    }

    // As QString compares without regard to case, whatever shortcuts the index takes: with long common
    // beginnings, cased characters within and beyond the basic plane, and halves of surrogate pairs.
    void ordersKeywordsByTheirTexts()
    {
        const QString units = "aAbBéÉßſKkİıΣσς𐐀𐐨😀~ＡａxX"_s;
        MemoryCatalogue catalogue;
        const auto add = [&catalogue](const QString &text) {
            catalogue.addKeyword(QString::number(catalogue.keywords.size()), Keyword::Name, {}, text);
        };
        for (const QString &start :
             {QString(), "xx"_s, "xxx"_s, "xxxxXXXX"_s, QString(76, QLatin1Char('x'))}) {
            for (const QChar unit : units) {
                add(start + unit);
                for (const QChar next : units)
                    add(start + unit + next);
            }
        }
        const KeywordList keywords = PackageIndex::selectKeywords(buildIndex({catalogue}), {});
        QCOMPARE(keywords.size(), catalogue.keywords.size());
        for (int i = 1; i < keywords.size(); ++i) {
            const QStringRef before = keywords.at(i - 1)->displayString();
            const QStringRef text = keywords.at(i)->displayString();
            QVERIFY2(before.compare(text, Qt::CaseInsensitive) <= 0,
                     qPrintable("%1 before %2"_s.arg(before, text)));
        }
    }

    // Whoever fills a catalogue could choose ids that keep those of other sources out.
    void takesIdsOfOneHash()
    {
        MemoryCatalogue catalogue;
        for (const QString &text : collidingTexts())
            catalogue.addPackage(text);
        QCOMPARE(buildIndex({catalogue})->packageCount(), 128);
        // Of ids of any length each letter counts.
        catalogue = {};
        for (int length = 1; length <= 20; ++length) {
            for (int letter = 0; letter < 100 * length; ++letter) {
                QString id(length, QLatin1Char(' '));
                id[letter / 100] = QChar('a' + letter % 100);
                catalogue.addPackage(id);
            }
        }
        QCOMPARE(buildIndex({catalogue})->packageCount(), 21000);
    }

    void goesAfterTheApplication()
    {
        staticIndex() = buildIndex({graph("p1 is_a k"_s)});
        QCOMPARE(staticIndex()->packageCount(), 1); // and the program ends well
    }
};

QTEST_GUILESS_MAIN(tst_PackageIndex)
#include "tst_packageindex.moc"
