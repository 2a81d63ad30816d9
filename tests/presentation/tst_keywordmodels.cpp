#include "presentation/categorylistmodel.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/keyword.h"
#include "presentation/keywordsuggestionmodel.h"
#include "presentation/manifestbooleanfield.h"
#include "presentation/manifestsizefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagedata.h"
#include "presentation/packagelistmodel.h"
#include "support/logcapture.h"
#include "support/stage.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** A list model on a stage, whose plays tell the signals and, if they have changed, the rows. */
template<typename Model>
struct ModelStage : Stage
{
    ModelStage()
    {
        catalogue.addPackage("oak"_s, "plant:tree"_s);
        catalogue.addKeyword("w"_s, Keyword::Category, "A"_s, "water"_s);
        catalogue.addKeyword("l"_s, Keyword::Category, "B"_s, "Land"_s);
        catalogue.addKeyword("a"_s, Keyword::Category, "D"_s, "air"_s);
        catalogue.addKeyword("n"_s, Keyword::Name, "Banane"_s, "Banana"_s);
        catalogue.addKeyword("i"_s, Keyword::Literal, "anAN"_s, {});
        for (const QString &word : {"man"_s, "Man"_s, "wood"_s, "<salt> & salt"_s, "c++ (o.k.)"_s})
            catalogue.addKeyword(word, Keyword::Name, {}, word);
        catalogue.addKeyword("other man"_s, Keyword::Name, {}, "man"_s);
        catalogue.keywords.append({"m"_s, Keyword::Noun, {{"en"_s, "Mouse"_s, "Mice"_s}}});
        catalogue.links = {{IsA, "oak"_s, "n"_s}, {IsA, "oak"_s, "l"_s}, {IsA, "l"_s, "w"_s}};
        publish();
    }

    QString play(const QString &play)
    {
        QObject unusable;
        QString line;
        QDebug(&line) << "critical: Object" << &unusable
                      << "does not implement the IPackageProvider interface";
        const LogCapture criticals("tamsel.packages"_s);
        const auto misprovide = [&](auto) {
            model.setPackageProvider(&unusable);
            QCOMPARE(model.packageProvider(), &unusable); // kept, though of no use
        };
        const Verbs verbs{
            {"publish"_s, [&](auto) { publish(); }},
            {"provide"_s, [&](auto) { model.setPackageProvider(&provider); }},
            {"remove"_s, [&](auto) { model.setPackageProvider(nullptr); }},
            {"misprovide"_s, misprovide},
            {"type"_s, [&](auto type) { model.setPackageType(type); }},
            {"both"_s, [&](auto type) { model.setPackageType(type), model.setPackageProvider(&provider); }},
            {"search"_s, [&](auto text) { model.setProperty("searchString", text); }},
        };
        log.takeWithRows();
        const QString performed = perform(play, verbs, [&] { return settle(), log.takeWithRows(); });
        return criticals.lines() == QStringList{line.trimmed()} ? performed : criticals.lines().join("; "_s);
    }

    Model model;
    ModelLog log{&model};
};

struct HesitantProvider : TestProvider
{
    PackageRepository *packageRepository() const override
    {
        return onAsked(), TestProvider::packageRepository();
    }
    std::function<void()> onAsked;
};

QPointer<QObject> victim; // of the parts of an application that destroy whoever asks them

struct FatalProvider : TestProvider
{
    PackageRepository *packageRepository() const override
    {
        return delete victim, TestProvider::packageRepository();
    }
};

struct FatalMatcher : PackageMatcher
{
    std::function<bool(PackageNode *)> matchFunction() const override { return delete victim, nullptr; }
};

struct FatalField : ManifestField
{
    QVariant convert(const QJsonValue &, const PackageNode *) const override { return delete victim, 7; }
};

template<typename... Objects>
QVector<std::function<QObject *()>> makersOf()
{
    return {[] { return new Objects; }...};
}

} // namespace

class tst_KeywordModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void categories()
    {
        const QString play =
            "provide[packageProviderChanged, reset; a/air, l/Land, w/water] provide publish[reset] "
            "type:plant[packageTypeChanged, reset; l/Land, w/water] type:plant "
            "type:animal[packageTypeChanged, reset; none] "
            "remove[packageProviderChanged, reset] publish both:plant[packageTypeChanged, "
            "packageProviderChanged, reset; l/Land, w/water] misprovide[packageProviderChanged, reset; none] "
            "publish provide[packageProviderChanged, reset; l/Land, w/water]"_s;
        ModelStage<CategoryListModel> stage;
        QCOMPARE(stage.play(play), play);
        QCOMPARE(stage.model.roleNames(), (QHash<int, QByteArray>{{0, "id"}, {1, "name"}}));
        QVERIFY(!stage.model.index(0).data(2).isValid() && !stage.model.index(0).data(-1).isValid());
        QVERIFY(!stage.model.data({}, 0).isValid());
    }

    void suggestions()
    {
        const QString play =
            "provide[packageProviderChanged] provide "
            "search:w[searchStringChanged, reset, countChanged; water/<b>w</b>ater, wood/<b>w</b>ood] "
            "publish[reset] type:plant[packageTypeChanged, reset, countChanged; water/<b>w</b>ater] "
            "type:plant "
            "search:[searchStringChanged, reset, countChanged; none] search:w[searchStringChanged, reset, "
            "countChanged; water/<b>w</b>ater] remove[packageProviderChanged, reset, countChanged; none] "
            "publish both:[packageTypeChanged, packageProviderChanged, reset, countChanged; "
            "water/<b>w</b>ater, wood/<b>w</b>ood] misprovide[packageProviderChanged, reset, countChanged; "
            "none] provide[packageProviderChanged, reset, countChanged; water/<b>w</b>ater, "
            "wood/<b>w</b>ood]"_s;
        ModelStage<KeywordSuggestionModel> stage;
        QCOMPARE(stage.play(play), play);
        QCOMPARE(stage.model.count(), 2);
        QCOMPARE(stage.model.suggestionAt(1), "wood"_s);
        QVERIFY(stage.model.suggestionAt(-1).isNull() && stage.model.suggestionAt(2).isNull());
        QCOMPARE(stage.model.roleNames(), (QHash<int, QByteArray>{{0, "suggestion"}, {1, "displayString"}}));
        QVERIFY(!stage.model.index(0).data(2).isValid() && !stage.model.index(0).data(-1).isValid());
        QVERIFY(!stage.model.data({}, 0).isValid());
        // Each text comes once, in the order of code units and in its own case; the search is no expression.
        for (const Row &row : rows(R"(
            AN      | Banana/B<b>an</b><b>an</b>a, Land/L<b>an</b>d, Man/M<b>an</b>, anAN/<b>an</b><b>AN</b>,
                      man/m<b>an</b>
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

    // With each signal, the type and the text at that moment.
    void keywordFollowsItsId()
    {
        const QString play =
            "provide id:oak[keywordIdChanged -1 -] id:k[keywordIdChanged -1 -] publish " // a package is none
            "add:k publish[keywordChanged 4 K] publish[keywordChanged 4 K] id:w[keywordIdChanged 4 K, "
            "keywordChanged 4 water] id:[keywordIdChanged 4 water, keywordChanged -1 -] "
            "id:w[keywordIdChanged "
            "-1 -, keywordChanged 4 water] remove[keywordChanged -1 -] publish provide[keywordChanged 4 "
            "water] "
            "lose[keywordChanged -1 -] provide[keywordChanged 4 water] misprovide[keywordChanged -1 -]"_s;
        ModelStage<CategoryListModel> stage;
        Keyword keyword;
        const Verbs verbs{
            {"publish"_s, [&](auto) { stage.publish(); }},
            {"provide"_s, [&](auto) { keyword.setPackageProvider(&stage.provider); }},
            {"remove"_s, [&](auto) { keyword.setPackageProvider(nullptr); }},
            {"misprovide"_s, [&](auto) { keyword.setPackageProvider(&keyword); }},
            {"lose"_s, [&](auto) { keyword.setPackageProvider(std::make_unique<TestProvider>().get()); }},
            {"id"_s, [&](auto id) { keyword.setKeywordId(id); }},
            {"add"_s, [&](auto id) { stage.catalogue.addKeyword(id, Keyword::Category, {}, id.toUpper()); }},
        };
        SignalLog log(&keyword);
        log.detail = [&] {
            const QString text = keyword.displayString();
            return "%1 %2"_s.arg(keyword.type()).arg(text.isNull() ? "-"_s : text);
        };
        const LogCapture criticals("tamsel.packages"_s);
        QCOMPARE(perform(play, verbs, [&] { return log.take(); }), play);
        QVERIFY(!keyword.packageProvider() && criticals.lines().size() == 1);
    }

    // A provider that is asked for its repository has another one take its place.
    void lastProviderCounts()
    {
        ModelStage<CategoryListModel> stage;
        Keyword keyword;
        keyword.setKeywordId("w"_s);
        HesitantProvider hesitant;
        hesitant.onAsked = [&] { keyword.setPackageProvider(&stage.provider); };
        keyword.setPackageProvider(&hesitant);
        stage.publish();
        QCOMPARE(keyword.packageProvider(), &stage.provider);
        QCOMPARE(keyword.displayString(), "water"_s);
    }

    // Of each kind one object goes at each signal that it has.
    void listenersMayDelete()
    {
        ModelStage<CategoryListModel> stage;
        stage.catalogue.addPackage("stone"_s);
        stage.publish();
        const QVector<std::pair<const char *, QVariant>> changes{
            {"name", "title"_s},
            {"keywordId", "w"_s},
            {"matchMode", 1},
            {"defaultValue", true},
            {"defaultValue", QSizeF(1, 2)},
            {"searchString", "w"_s},
            {"packageReference", QVariant::fromValue(stage.provider.packageReference("oak"_s))},
            {"packageProvider", QVariant::fromValue<QObject *>(&stage.provider)},
            {"packageType", "plant"_s},
            {"packageType", QString()},
            {"packageProvider", QVariant::fromValue<QObject *>(nullptr)},
        };
        ManifestStringField field;
        QStringList fatal;
        for (const auto &make : makersOf<PackageListModel, CategoryListModel, KeywordSuggestionModel, Keyword,
                                         PackageData, HasKeyword, HasManifestField, MatchesKeywordSearch,
                                         ManifestStringField, ManifestBooleanField, ManifestSizeField>()) {
            const QMetaObject &type = *std::unique_ptr<QObject>(make())->metaObject();
            for (int i = QObject::staticMetaObject.methodCount(); i < type.methodCount(); ++i) {
                const QString signal = QString::fromLatin1(type.method(i).name());
                const QPointer<QObject> object = make();
                if (auto *model = qobject_cast<PackageListModel *>(object.data())) {
                    QQmlListProperty<ManifestField> fields = model->manifestFields();
                    fields.append(&fields, &field);
                    model->findChild<QTimer *>()->setInterval(0);
                }
                SignalLog log(object);
                if (!signal.contains(
                        "About"_s)) // Qt itself goes on with a model after it has announced a change
                    log.deeds[signal] = [object] { delete object; };
                for (const auto &change : changes) {
                    if (object && object->setProperty(change.first, change.second))
                        stage.settle(), stage.settle();
                }
                if (!object)
                    fatal.append(signal);
                delete object;
            }
        }
        QCOMPARE(fatal.size(), 34);
    }

    void partsMayDelete()
    {
        FatalProvider provider;
        QVERIFY(provider.rebuild());
        FatalMatcher matcher;
        FatalField field;
        auto *model = new PackageListModel;
        model->setPackageProvider(&provider);
        model->setMatcher(&matcher);
        victim = model;
        QTRY_VERIFY(!victim);
        auto *data = new PackageData;
        QQmlListProperty<ManifestField> fields = data->manifestFields();
        fields.append(&fields, &field);
        fields.append(&fields, &field);
        victim = data;
        data->setPackageReference(provider.packageReference("p"_s));
        QVERIFY(!victim);
        for (const auto &make :
             makersOf<PackageListModel, CategoryListModel, KeywordSuggestionModel, Keyword>()) {
            victim = make();
            victim->setProperty("packageProvider", QVariant::fromValue<QObject *>(&provider));
            QVERIFY(!victim);
        }
    }
};

QTEST_GUILESS_MAIN(tst_KeywordModels)
#include "tst_keywordmodels.moc"
