#include "graph.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

// A keyword "k" with texts such as "de=Vogel/Vögel, en=bird/birds".
KeywordInfo keywordOf(Keyword::Type type, const QString &texts)
{
    KeywordInfo info{"k"_s, type, {}};
    for (const QString &text : texts.split(", "_s, Qt::SkipEmptyParts)) {
        const QString forms = text.section(QLatin1Char('='), 1);
        info.strings.append({text.section(QLatin1Char('='), 0, 0), forms.section(QLatin1Char('/'), 0, 0),
                             forms.section(QLatin1Char('/'), 1)});
    }
    return info;
}

QSharedPointer<PackageIndex> indexOf(const KeywordInfo &info)
{
    MemoryCatalogue catalogue;
    catalogue.keywords.append(info);
    return buildIndex({catalogue});
}

// All types with those letters: n noun, t those with one text for each language, l literal.
QVector<Keyword::Type> typesOf(const QString &letters)
{
    QVector<Keyword::Type> types;
    if (letters.contains(QLatin1Char('n')))
        types += Keyword::Noun;
    if (letters.contains(QLatin1Char('t')))
        types += {Keyword::Name, Keyword::Adjective, Keyword::Category};
    if (letters.contains(QLatin1Char('l')))
        types += Keyword::Literal;
    return types;
}

} // namespace

class tst_KeywordNode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsAndSorts()
    {
        // types | texts | shown, sorted by, complaint
        for (const Row &row : rows(R"(
            t   | de=Eule, en=owl, en=hooter, de=Kauz              | owl, Eule,
            t   | en=owl, de=, de=Kauz, de=Eule                    | owl, Kauz,
            n t | en=owl, en_GB=hooter, =bird                      | owl, ,
            n t | de=Eule                                          | , Eule, "k" has empty string list
            n t |                                                  | , , "k" has empty string list
            n t | en=, en=owl                                      | , ,
            n   | en=owl/owls, en=hooter/, de=Eule/Eulen, de=Kauz/ | owl, Eule,
            n   | en=/Alps, de=/Alpen                              | Alps, Alpen,
            n   | en=owl/, de=/, de=/Eulen                         | owl, Eulen,
            l   | de=42, en=43                                     | 42, 42,
            l   | =42                                              | 42, 42,
            l   | =                                                | , ,
            l   |                                                  | , , "k" has empty string)")) {
            for (const Keyword::Type type : typesOf(row[0])) {
                LogCapture log("tamsel.package.index"_s);
                const auto index = indexOf(keywordOf(type, row[1]));
                const QString warning = log.lines().filter("warning: "_s).join(QLatin1Char('\n'));
                const KeywordNode *node = keyword(index, "k"_s);
                QCOMPARE(row.with("%1, %2, %3"_s
                                      .arg(node->displayString(), node->sortString(),
                                           QString(warning).remove("warning: Keyword "_s))
                                      .trimmed()),
                         row.text());
                QCOMPARE(node->type(), type);
                QCOMPARE(node->isCategory(), type == Keyword::Category);
                QCOMPARE(node->packageIndex(), index.data());
            }
        }
    }

    void findsTexts()
    {
        // types | texts | search | match: suggestions
        for (const Row &row : rows(R"(
            n t l | en=Äsop                               | äSOP       | 2: Äsop
            n t l | en=Äsop                               | äs         | 1: Äsop
            n t l | en=Äsop                               | OP         | 1: Äsop
            n t l | en=Äsop                               | Äsops      | 0:
            t l   | en=owl                                |            | 1: owl
            n t l | en=                                   | owl        | 0:
            n t l | en=                                   |            | 2:
            n t   | de=Eule, en=barn owl, en=OWL          | owl        | 1: barn owl, OWL
            n t   | de=Eule, en=owl, en=night bird        | night      | 1: night bird
            n t   | de=Eule, en=owl, en=night bird        | NIGHT BIRD | 2: night bird
            n t   | de=Eule, en=owl                       | eule       | 0:
            n     | en=songbird/songbirds, en=bird/birds  | bird       | 1: songbird, bird
            n     | en=songbird/songbirds, en=bird/birds  | BIRDS      | 1: songbirds, birds
            n     | en=owl/owls, en=goose/geese           | Geese      | 2: geese
            n     | en=owl/owls, en=goose/geese           | gee        | 1: geese
            n     | en=owls/owl                           | owl        | 2: owls
            n     | en=owl/owls                           |            | 1: owl
            n     | en=owl/                               |            | 2: owl
            n     | en=/owls                              |            | 2:)")) {
            for (const Keyword::Type type : typesOf(row[0])) {
                const auto index = indexOf(keywordOf(type, row[1]));
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

    void refusesInvalidTypes()
    {
        PackageIndex index;
        QVERIFY(!KeywordNode::create(keywordOf(Keyword::Invalid, "en=owl"_s), &index));
        QVERIFY(!KeywordNode::create(keywordOf(Keyword::Type(5), "en=owl"_s), &index));
    }
};

QTEST_GUILESS_MAIN(tst_KeywordNode)
#include "tst_keywordnode.moc"
