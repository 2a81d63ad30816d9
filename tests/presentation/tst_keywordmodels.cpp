#include "presentation/categorylistmodel.h"
#include "presentation/keyword.h"
#include "presentation/keywordsuggestionmodel.h"
#include "stage.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** A list model on a stage, whose plays tell the signals and, if they have changed, the rows. */
template<typename Model>
struct ModelStage : Stage
{
    QString play(const QString &play)
    {
        QObject unusable;
        const Verbs verbs{
            {"publish"_s, [&](auto) { publish(); }},
            {"provide"_s, [&](auto) { model.setPackageProvider(&provider); }},
            {"remove"_s, [&](auto) { model.setPackageProvider(nullptr); }},
            {"misprovide"_s, [&](auto) { model.setPackageProvider(&unusable); }},
            {"type"_s, [&](auto type) { model.setPackageType(type); }},
            {"both"_s, [&](auto type) { model.setPackageType(type), model.setPackageProvider(&provider); }},
            {"search"_s, [&](auto text) { model.setProperty("searchString", text); }},
        };
        log.takeWithRows();
        return perform(play, verbs, [&] { return settle(), log.takeWithRows(); });
    }

    Model model;
    ModelLog log{&model};
};

} // namespace

class tst_KeywordModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void categories()
    {
        const QString play =
            "provide[packageProviderChanged, reset; a/air, l/Land, w/water] provide publish[reset] "
            "type:plant[packageTypeChanged, reset; l/Land, w/water] type:animal[packageTypeChanged, reset; "
            "none] "
            "remove[packageProviderChanged, reset] publish both:plant[packageTypeChanged, "
            "packageProviderChanged, reset; l/Land, w/water] misprovide[packageProviderChanged, reset; none] "
            "publish provide[packageProviderChanged, reset; l/Land, w/water]"_s;
        ModelStage<CategoryListModel> stage;
        stage.catalogue.addPackage("oak"_s, "plant:tree"_s);
        stage.catalogue.addKeyword("w"_s, Keyword::Category, "A"_s, "water"_s);
        stage.catalogue.addKeyword("l"_s, Keyword::Category, "B"_s, "Land"_s);
        stage.catalogue.addKeyword("n"_s, Keyword::Noun, "C"_s, "Noun"_s);
        stage.catalogue.addKeyword("a"_s, Keyword::Category, "D"_s, "air"_s);
        stage.catalogue.addLink("oak"_s, IsA, "n"_s);
        stage.catalogue.addLink("oak"_s, IsA, "l"_s);
        stage.catalogue.addLink("l"_s, IsA, "w"_s);
        stage.publish();
        QCOMPARE(stage.play(play), play);
        QCOMPARE(stage.model.roleNames(), (QHash<int, QByteArray>{{0, "id"}, {1, "name"}}));
        QVERIFY(!stage.model.index(0).data(2).isValid() && !stage.model.index(0).data(-1).isValid());
    }

    void suggestions()
    {
        ModelStage<KeywordSuggestionModel> stage;
        stage.catalogue.addKeyword("1"_s, Keyword::Name, "Banane"_s, "Banana"_s);
        stage.catalogue.addKeyword("2"_s, Keyword::Literal, "anAN"_s, {});
        for (const QString &word : {"man"_s, "Man"_s, "<salt> & salt"_s, "c++ (o.k.)"_s})
            stage.catalogue.addKeyword(word, Keyword::Name, {}, word);
        stage.catalogue.addKeyword("other man"_s, Keyword::Name, {}, "man"_s);
        stage.catalogue.keywords.append({"8"_s, Keyword::Noun, {{"en"_s, "Mouse"_s, "Mice"_s}}});
        stage.publish();
        stage.model.setPackageProvider(&stage.provider);
        // Each text comes once, in the order of code units and in its own case; the search is no expression.
        for (const Row &row : rows(R"(
            AN      | Banana/B<b>an</b><b>an</b>a, Man/M<b>an</b>, anAN/<b>an</b><b>AN</b>, man/m<b>an</b>
            &       | <salt> & salt/&lt;salt&gt; <b>&amp;</b> salt
            > & s   | <salt> & salt/&lt;salt<b>&gt; &amp; s</b>alt
            C++ (o. | c++ (o.k.)/<b>c++ (o.</b>k.)
            b.n     |
            mic     | Mice/<b>Mic</b>e
            Banane  | )")) {
            stage.model.setSearchString(row[0]);
            stage.settle();
            QCOMPARE(row.with(stage.log.rows()), row.text());
        }
    }

    void suggestionsChange()
    {
        const QString play =
            "provide[packageProviderChanged] "
            "search:on[searchStringChanged, reset, countChanged; once/<b>on</b>ce, one/<b>on</b>e] "
            "publish[reset] type:plant[packageTypeChanged, reset, countChanged; one/<b>on</b>e] "
            "search:[searchStringChanged, reset, countChanged; none] search:on[searchStringChanged, reset, "
            "countChanged; one/<b>on</b>e] remove[packageProviderChanged, reset, countChanged; none] publish "
            "both:[packageTypeChanged, packageProviderChanged, reset, countChanged; once/<b>on</b>ce, "
            "one/<b>on</b>e] misprovide[packageProviderChanged, reset, countChanged; none] "
            "provide[packageProviderChanged, reset, countChanged; once/<b>on</b>ce, one/<b>on</b>e]"_s;
        ModelStage<KeywordSuggestionModel> stage;
        stage.catalogue.addPackage("oak"_s, "plant:tree"_s);
        for (const QString &word : {"one"_s, "once"_s, "two"_s})
            stage.catalogue.addKeyword(word, Keyword::Name, {}, word);
        stage.catalogue.addLink("oak"_s, IsA, "one"_s);
        stage.publish();
        QCOMPARE(stage.play(play), play);
        QCOMPARE(stage.model.count(), 2);
        QCOMPARE(stage.model.suggestionAt(1), "one"_s);
        QVERIFY(stage.model.suggestionAt(-1).isNull() && stage.model.suggestionAt(2).isNull());
        QCOMPARE(stage.model.roleNames(), (QHash<int, QByteArray>{{0, "suggestion"}, {1, "displayString"}}));
        QVERIFY(!stage.model.index(0).data(2).isValid() && !stage.model.index(0).data(-1).isValid());
    }

    // With each signal, the type and the text at that moment.
    void keywordFollowsItsId()
    {
        const QString play =
            "provide id:p[keywordIdChanged -1 -] id:k[keywordIdChanged -1 -] publish " // a package is none
            "add:k add:l publish[keywordChanged 4 K] publish[keywordChanged 4 K] id:l[keywordIdChanged 4 K, "
            "keywordChanged 4 L] id:[keywordIdChanged 4 L, keywordChanged -1 -] id:l[keywordIdChanged -1 -, "
            "keywordChanged 4 L] remove[keywordChanged -1 -] publish"_s;
        Stage stage;
        stage.catalogue.addPackage("p"_s);
        stage.publish();
        Keyword keyword;
        const Verbs verbs{
            {"publish"_s, [&](auto) { stage.publish(); }},
            {"provide"_s, [&](auto) { keyword.setPackageProvider(&stage.provider); }},
            {"remove"_s, [&](auto) { keyword.setPackageProvider(nullptr); }},
            {"id"_s, [&](auto id) { keyword.setKeywordId(id); }},
            {"add"_s, [&](auto id) { stage.catalogue.addKeyword(id, Keyword::Category, {}, id.toUpper()); }},
        };
        SignalLog log(&keyword);
        log.detail = [&] {
            const QString text = keyword.displayString();
            return "%1 %2"_s.arg(keyword.type()).arg(text.isNull() ? "-"_s : text);
        };
        QCOMPARE(perform(play, verbs, [&] { return log.take(); }), play);
    }
};

QTEST_GUILESS_MAIN(tst_KeywordModels)
#include "tst_keywordmodels.moc"
