#include "presentation/categorylistmodel.h"
#include "presentation/keyword.h"
#include "presentation/keywordsuggestionmodel.h"
#include "stage.h"

#include <QThreadPool>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** A list model on a stage, whose plays tell the signals and, if they have changed, the rows. */
template<typename Model>
struct ModelStage : Stage
{
    void play(const QString &play)
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
        QString rowsBefore = log.rows();
        const auto effects = [&] {
            settle();
            const QString told = log.take();
            const bool isNew = log.rows() != std::exchange(rowsBefore, log.rows());
            return isNew ? told + "; "_s + (rowsBefore.isEmpty() ? "none"_s : rowsBefore) : told;
        };
        QCOMPARE(perform(play, verbs, effects), play);
    }

    // The names of the roles, if nothing else has a value.
    QByteArrayList roles() const
    {
        const QModelIndex first = model.index(0);
        const bool clean = first.isValid() && model.data(first, 0).isValid()
                           && !model.data(first, 2).isValid() && !model.data(first, -1).isValid()
                           && !model.data(QModelIndex(), 0).isValid() && model.rowCount(first) == 0
                           && model.roleNames().size() == 2;
        return clean ? QByteArrayList{model.roleNames().value(0), model.roleNames().value(1)}
                     : QByteArrayList();
    }

    Model model;
    ModelLog log{&model};
};

} // namespace

class tst_KeywordModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void categories();
    void suggestions_data();
    void suggestions();
    void suggestionsChange();
    void keywordTypes_data();
    void keywordTypes();
    void keywordFollowsItsId();
};

void tst_KeywordModels::categories()
{
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
    stage.play("provide[packageProviderChanged, reset; a|air, l|Land, w|water] provide publish[reset]"_s);
    QCOMPARE(stage.roles(), (QByteArrayList{"id", "name"}));
    stage.play(
        "type:plant[packageTypeChanged, reset; l|Land, w|water] type:animal[packageTypeChanged, reset; none] "
        "remove[packageProviderChanged, reset] publish both:plant[packageTypeChanged, "
        "packageProviderChanged, reset; l|Land, w|water] misprovide[packageProviderChanged, reset; none] "
        "publish"_s);
}

void tst_KeywordModels::suggestions_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("rows");
    QTest::newRow("each once, by code units, in its own case")
        << "AN"
        << "Banana|B<b>an</b><b>an</b>a, Man|M<b>an</b>, anAN|<b>an</b><b>AN</b>, man|m<b>an</b>";
    QTest::newRow("escaped") << "&"
                             << "<salt> & salt|&lt;salt&gt; <b>&amp;</b> salt";
    QTest::newRow("several words") << "> & s"
                                   << "<salt> & salt|&lt;salt<b>&gt; &amp; s</b>alt";
    QTest::newRow("no expression") << "C++ (o."
                                   << "c++ (o.k.)|<b>c++ (o.</b>k.)";
    QTest::newRow("no wildcard") << "b.n"
                                 << "";
    QTest::newRow("plural") << "mic"
                            << "Mice|<b>Mic</b>e";
    QTest::newRow("other language") << "Banane"
                                    << "";
}

void tst_KeywordModels::suggestions()
{
    QFETCH(QString, search);
    ModelStage<KeywordSuggestionModel> stage;
    stage.catalogue.addKeyword("1"_s, Keyword::Name, "Banane"_s, "Banana"_s);
    stage.catalogue.addKeyword("2"_s, Keyword::Literal, "anAN"_s, {});
    int id = 3;
    for (const QString &word : {"man"_s, "man"_s, "Man"_s, "<salt> & salt"_s, "c++ (o.k.)"_s})
        stage.catalogue.addKeyword(QString::number(id++), Keyword::Name, {}, word);
    stage.catalogue.keywords.append({"8"_s, Keyword::Noun, {{"en"_s, "Mouse"_s, "Mice"_s}}});
    stage.publish();
    stage.model.setPackageProvider(&stage.provider);
    stage.model.setSearchString(search);
    stage.settle();
    QTEST(stage.log.rows(), "rows");
}

void tst_KeywordModels::suggestionsChange()
{
    ModelStage<KeywordSuggestionModel> stage;
    stage.catalogue.addPackage("oak"_s, "plant:tree"_s);
    for (const QString &word : {"one"_s, "once"_s, "two"_s})
        stage.catalogue.addKeyword(word, Keyword::Name, {}, word);
    stage.catalogue.addLink("oak"_s, IsA, "one"_s);
    stage.publish();
    stage.play("provide[packageProviderChanged] "
               "search:on[searchStringChanged, reset, countChanged; once|<b>on</b>ce, one|<b>on</b>e]"_s);
    QCOMPARE(stage.model.count(), 2);
    QCOMPARE(stage.model.suggestionAt(1), "one"_s);
    QVERIFY(stage.model.suggestionAt(-1).isNull() && stage.model.suggestionAt(2).isNull());
    QCOMPARE(stage.roles(), (QByteArrayList{"suggestion", "displayString"}));
    stage.play(
        "publish[reset] type:plant[packageTypeChanged, reset, countChanged; one|<b>on</b>e] "
        "search:[searchStringChanged, reset, countChanged; none] search:on[searchStringChanged, reset, "
        "countChanged; one|<b>on</b>e] remove[packageProviderChanged, reset, countChanged; none] publish "
        "both:[packageTypeChanged, packageProviderChanged, reset, countChanged; once|<b>on</b>ce, "
        "one|<b>on</b>e] misprovide[packageProviderChanged, reset, countChanged; none]"_s);
}

void tst_KeywordModels::keywordTypes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Keyword::Type>("type");
    QTest::newRow("noun") << "noun" << Keyword::Noun;
    QTest::newRow("name") << "name" << Keyword::Name;
    QTest::newRow("adjective") << "adjective" << Keyword::Adjective;
    QTest::newRow("literal") << "literal" << Keyword::Literal;
    QTest::newRow("category") << "category" << Keyword::Category;
    QTest::newRow("capitals") << "NOUN" << Keyword::Invalid;
    QTest::newRow("space") << "noun " << Keyword::Invalid;
    QTest::newRow("empty") << "" << Keyword::Invalid;
}

void tst_KeywordModels::keywordTypes()
{
    QFETCH(QString, name);
    QFETCH(Keyword::Type, type);
    QCOMPARE(Keyword::typeFromString(name), type);
    Stage stage;
    stage.catalogue.addKeyword("k"_s, type, "text"_s, "text"_s);
    stage.publish();
    Keyword keyword;
    keyword.setKeywordId("k"_s);
    keyword.setPackageProvider(&stage.provider);
    QCOMPARE(keyword.type(), type);
    QCOMPARE(keyword.displayString(), type == Keyword::Invalid ? QString() : "text"_s);
}

void tst_KeywordModels::keywordFollowsItsId()
{
    const QString play =
        "provide id:p[keywordIdChanged -] id:k[keywordIdChanged -] publish " // a package is none
        "add:k add:l publish[keywordChanged K] publish[keywordChanged K] id:l[keywordIdChanged K, "
        "keywordChanged L] id:[keywordIdChanged L, keywordChanged -] id:l[keywordIdChanged -, keywordChanged "
        "L] remove[keywordChanged -] publish"_s;
    Stage stage;
    stage.catalogue.addPackage("p"_s);
    stage.publish();
    Keyword keyword;
    const Verbs verbs{
        {"publish"_s, [&](auto) { stage.publish(); }},
        {"provide"_s, [&](auto) { keyword.setPackageProvider(&stage.provider); }},
        {"remove"_s, [&](auto) { keyword.setPackageProvider(nullptr); }},
        {"id"_s, [&](auto id) { keyword.setKeywordId(id); }},
        {"add"_s, [&](auto id) { stage.catalogue.addKeyword(id, Keyword::Name, {}, id.toUpper()); }},
    };
    SignalLog log(&keyword);
    log.detail = [&] { return keyword.displayString().isNull() ? "-"_s : keyword.displayString(); };
    QCOMPARE(perform(play, verbs, [&] { return log.take(); }), play);
}

QTEST_GUILESS_MAIN(tst_KeywordModels)
#include "tst_keywordmodels.moc"
