#include "presentation/categorylistmodel.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/keywordsuggestionmodel.h"
#include "presentation/manifestbooleanfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagelistmodel.h"
#include "presentation/packagematchergroup.h"
#include "presentation/sortbyintegerfield.h"
#include "stage.h"
#include "support/logcapture.h"

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

template<typename... Types>
QHash<QString, QObject *(*)()> makers()
{
    return {{QString::fromLatin1(Types::staticMetaObject.className()).remove("ts::pm::"_s),
             []() -> QObject * { return new Types; }}...};
}

} // namespace

class tst_QmlClasses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settersTellOnce();
    void providers();

private:
    std::unique_ptr<QObject> make(const QString &type) const
    {
        return std::unique_ptr<QObject>(known.value(type)());
    }

    const QHash<QString, QObject *(*)()> known =
        makers<ManifestField, ManifestBooleanField, HasKeyword, HasManifestField, MatchesKeywordSearch,
               PackageMatcherGroup, SortByIntegerField, PackageListModel, CategoryListModel,
               KeywordSuggestionModel, Keyword>();
};

// The value at first, a new one, and what comes of setting that twice.
void tst_QmlClasses::settersTellOnce()
{
    for (const Row &row : rows(R"(
        ManifestField.name                   | null x nameChanged, updateRequested
        ManifestBooleanField.defaultValue    | false true defaultValueChanged, updateRequested
        HasKeyword.keywordId                 | null x keywordIdChanged, updateRequested
        HasManifestField.name                | null x nameChanged, updateRequested
        MatchesKeywordSearch.searchString    | null x searchStringChanged, updateRequested
        MatchesKeywordSearch.matchMode       | 0 1 matchModeChanged, updateRequested
        PackageMatcherGroup.matchRequirement | 0 1 matchRequirementChanged, updateRequested
        SortByIntegerField.name              | null x nameChanged
        Keyword.keywordId                    | null x keywordIdChanged)")) {
        const auto object = make(row[0].section("."_s, 0, 0));
        const QByteArray property = row[0].section("."_s, 1).toLatin1();
        const auto value = [&] {
            const QVariant held = object->property(property.constData());
            return held.isNull() ? "null"_s : held.toString();
        };
        SignalLog log(object.get());
        QStringList actual{value()};
        const QString next = row[1].section(" "_s, 1, 1);
        for (int i = 0; i < 2; ++i)
            object->setProperty(property.constData(), next == "1"_s ? QVariant(1) : QVariant(next));
        actual += {value(), log.take()};
        QCOMPARE(row.with(actual.join(" "_s)), row.text());
    }
}

void tst_QmlClasses::providers()
{
    // class | whether it keeps an object that is no provider, and what it tells
    for (const Row &row : rows(R"(
        PackageListModel       | drops packageProviderChanged
        CategoryListModel      | keeps packageProviderChanged
        KeywordSuggestionModel | keeps packageProviderChanged
        Keyword                | drops)")) {
        const auto user = make(row[0]);
        SignalLog log(user.get());
        // What the property holds then, and the signals.
        const auto assign = [&](QObject *object, QObject *expected) {
            user->setProperty("packageProvider", QVariant::fromValue(object));
            const bool holds = user->property("packageProvider").value<QObject *>() == expected;
            return holds ? log.take() : "holds another"_s;
        };
        const bool keeps = row[1].startsWith("keeps"_s);
        const QString told = row[1].section(" "_s, 1);
        {
            QObject thing;
            QString line;
            QDebug(&line) << "critical: Object" << &thing
                          << "does not implement the IPackageProvider interface";
            const LogCapture criticals("tamsel.packages"_s);
            QCOMPARE(assign(&thing, keeps ? &thing : nullptr), told);
            QCOMPARE(assign(nullptr, nullptr), keeps ? told : QString());
            QCOMPARE(criticals.lines(), QStringList{line.trimmed()});
        }
        auto provider = std::make_unique<TestProvider>();
        QCOMPARE(assign(provider.get(), provider.get()), told);
        QCOMPARE(assign(provider.get(), provider.get()), QString());
        provider.reset();
        QCOMPARE(user->property("packageProvider").value<QObject *>(), nullptr);
    }
}

QTEST_GUILESS_MAIN(tst_QmlClasses)
#include "tst_qmlclasses.moc"
