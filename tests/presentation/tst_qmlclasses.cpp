#include "presentation/categorylistmodel.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/keywordsuggestionmodel.h"
#include "presentation/manifestbooleanfield.h"
#include "presentation/manifestsizefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagedata.h"
#include "presentation/packagelistmodel.h"
#include "presentation/packagematchergroup.h"
#include "presentation/sortbyintegerfield.h"
#include "stage.h"
#include "support/logcapture.h"

#include <QMetaEnum>
#include <QMetaProperty>
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

// The properties that a class adds to its base, with the signal of each, and its enumerations.
QString describe(const QMetaObject &type)
{
    QByteArrayList parts;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        parts += property.name() + QByteArray(property.isWritable() ? " write " : " ")
                 + (property.isConstant() ? "const" : property.notifySignal().name());
    }
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        parts += enumeration.name();
        for (int j = 0; j < enumeration.keyCount(); ++j)
            parts.last() += QByteArray(j ? " " : ": ") + enumeration.key(j) + '='
                            + QByteArray::number(enumeration.value(j));
    }
    return QString::fromLatin1(parts.join(", ")).replace(" ,"_s, ","_s);
}

} // namespace

class tst_QmlClasses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void surface();
    void settersTellOnce();
    void providers();

private:
    std::unique_ptr<QObject> make(const QString &type) const
    {
        return std::unique_ptr<QObject>(known.value(type)());
    }

    const QHash<QString, QObject *(*)()> known =
        makers<ManifestField, ManifestBooleanField, ManifestStringField, ManifestSizeField, PackageData,
               HasKeyword, HasManifestField, MatchesKeywordSearch, PackageMatcherGroup, SortByIntegerField,
               PackageListModel, CategoryListModel, KeywordSuggestionModel, Keyword>();
};

void tst_QmlClasses::surface()
{
    QCOMPARE(describe(PackageReference::staticMetaObject),
             "id const, type typeChanged, status statusChanged, "
             "Status: Unavailable=-3 Incomplete=-2 Unknown=-1 Installing=0 Installed=1"_s);
    for (const Row &row : rows(R"(
ManifestSizeField | defaultValue write defaultValueChanged
PackageData | packageReference write packageReferenceChanged, manifestFields manifestFieldsChanged, $ const,
    manifest const
MatchesKeywordSearch | searchString write searchStringChanged, matchMode write matchModeChanged,
    MatchMode: PartialMatch=0 FullMatch=1
PackageMatcherGroup | matchRequirement write, matchers matchersChanged, MatchRequirement: MatchAll=0 MatchAny=1
PackageListModel | packageProvider write packageProviderChanged, packageType write packageTypeChanged,
    manifestFields manifestFieldsChanged, matcher write matcherChanged, sorter write sorterChanged, count countChanged
CategoryListModel | packageType write packageTypeChanged, packageProvider write packageProviderChanged
KeywordSuggestionModel | packageType write packageTypeChanged, packageProvider write packageProviderChanged,
    searchString write searchStringChanged, count countChanged
Keyword | type keywordChanged, displayString keywordChanged, packageProvider write packageProviderChanged,
    keywordId write keywordIdChanged, Type: Invalid=-1 Noun=0 Name=1 Adjective=2 Literal=3 Category=4)"))
        QCOMPARE(row.with(describe(*make(row[0])->metaObject())), row.text());
}

// The value at first, a new one, and what comes of setting that twice.
void tst_QmlClasses::settersTellOnce()
{
    for (const Row &row : rows(R"(
        ManifestField.name                   | null x nameChanged, updateRequested
        ManifestBooleanField.defaultValue    | false true defaultValueChanged, updateRequested
        ManifestStringField.defaultValue     | null x defaultValueChanged, updateRequested
        HasKeyword.keywordId                 | null x keywordIdChanged, updateRequested
        HasManifestField.name                | null x nameChanged, updateRequested
        MatchesKeywordSearch.searchString    | null x searchStringChanged, updateRequested
        MatchesKeywordSearch.matchMode       | 0 1 matchModeChanged, updateRequested
        PackageMatcherGroup.matchRequirement | 0 1 matchRequirementChanged, updateRequested
        SortByIntegerField.name              | null x nameChanged
        PackageListModel.packageType         | null x packageTypeChanged
        CategoryListModel.packageType        | null x packageTypeChanged
        KeywordSuggestionModel.packageType   | null x packageTypeChanged
        KeywordSuggestionModel.searchString  | null x searchStringChanged
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
