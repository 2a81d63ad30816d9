#include "presentation/categorylistmodel.h"
#include "presentation/haskeyword.h"
#include "presentation/hasmanifestfield.h"
#include "presentation/keywordsuggestionmodel.h"
#include "presentation/manifestbooleanfield.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifestsizefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/matcheskeywordsearch.h"
#include "presentation/packagedata.h"
#include "presentation/packagelistmodel.h"
#include "presentation/packagematchergroup.h"
#include "presentation/sortbyintegerfield.h"
#include "presentation/sortbystringfield.h"
#include "stage.h"
#include "support/logcapture.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QtTest>

#include <memory>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

QString nameOf(const QMetaObject &type)
{
    return QString::fromLatin1(type.className()).remove("ts::pm::"_s);
}

template<typename... Types>
QVector<const QMetaObject *> metaObjects()
{
    return {&Types::staticMetaObject...};
}

template<typename... Types>
QHash<QString, QObject *(*)()> makers()
{
    return {{nameOf(Types::staticMetaObject), []() -> QObject * { return new Types; }}...};
}

// What the class adds to its base, in the order of declaration: properties, signals, private slots with a
// minus, invokables with their type, enumerations.
QString describe(const QMetaObject &type)
{
    QByteArrayList parts{type.superClass()->className()};
    for (int i = type.classInfoOffset(); i < type.classInfoCount(); ++i)
        parts += QByteArray("default ") + type.classInfo(i).value();
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        parts += property.typeName() + QByteArray(" ") + property.name()
                 + (property.isWritable() ? " write" : "") + (property.isConstant() ? " const" : "")
                 + (property.hasNotifySignal() ? ' ' + property.notifySignal().name() : QByteArray());
    }
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        const char *const access[] = {"-", "protected ", ""};
        const bool isInvokable = method.methodType() == QMetaMethod::Method;
        const QByteArray kind = method.methodType() == QMetaMethod::Slot ? "slot " : "";
        parts += access[method.access()] + kind + (isInvokable ? method.typeName() + QByteArray(" ") : "")
                 + method.methodSignature();
    }
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        parts += enumeration.name();
        for (int j = 0; j < enumeration.keyCount(); ++j)
            parts.last() +=
                ' ' + QByteArray(enumeration.key(j)) + '=' + QByteArray::number(enumeration.value(j));
    }
    return QString::fromLatin1(parts.join(", ").replace("ts::pm::", "").replace("-slot ", "-"));
}

} // namespace

class tst_QmlClasses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void surface();
    void settersTellOnce();
    void providers_data();
    void providers();
};

void tst_QmlClasses::surface()
{
    const auto types = metaObjects<PackageReference, ManifestField, ManifestBooleanField, ManifestStringField,
                                   ManifestSizeField, ManifestFileField, PackageData, PackageMatcher,
                                   HasKeyword, HasManifestField, MatchesKeywordSearch, PackageMatcherGroup,
                                   PackageSorter, SortByField, SortByIntegerField, SortByStringField,
                                   PackageListModel, CategoryListModel, KeywordSuggestionModel, Keyword>();
    const auto rows = tableRows(R"(
PackageReference | QObject, QString id const, QString type typeChanged, PackageReference::Status status
    statusChanged, typeChanged(), statusChanged(), updated(), translationsChanged(), -init(), -update(),
    -computeStatus(), QJsonObject manifest(), QJsonValue manifestField(QString), QUrl fileUrl(QString), Status
    Unavailable=-3 Incomplete=-2 Unknown=-1 Installing=0 Installed=1
ManifestField | QObject, QString name write nameChanged, nameChanged(), updateRequested()
ManifestBooleanField | ManifestField, bool defaultValue write defaultValueChanged, defaultValueChanged()
ManifestStringField | ManifestField, QString defaultValue write defaultValueChanged, defaultValueChanged()
ManifestSizeField | ManifestField, QSizeF defaultValue write defaultValueChanged, defaultValueChanged()
ManifestFileField | ManifestField
PackageData | QObject, default manifestFields, PackageReference* packageReference write
    packageReferenceChanged, QQmlListProperty<ManifestField> manifestFields manifestFieldsChanged,
    QQmlPropertyMap* $ const, QQmlPropertyMap* manifest const, packageReferenceChanged(),
    manifestFieldsChanged(), -processFieldChange(), -update()
PackageMatcher | QObject, updateRequested()
HasKeyword | PackageMatcher, QString keywordId write keywordIdChanged, keywordIdChanged()
HasManifestField | PackageMatcher, QString name write nameChanged, nameChanged()
MatchesKeywordSearch | PackageMatcher, QString searchString write searchStringChanged,
    MatchesKeywordSearch::MatchMode matchMode write matchModeChanged, searchStringChanged(),
    matchModeChanged(), MatchMode PartialMatch=0 FullMatch=1
PackageMatcherGroup | PackageMatcher, default matchers, PackageMatcherGroup::MatchRequirement matchRequirement
    write, QQmlListProperty<PackageMatcher> matchers matchersChanged, matchRequirementChanged(),
    matchersChanged(), -notifyMatcherChange(), void addMatcher(PackageMatcher*), void
    removeMatcher(PackageMatcher*), MatchRequirement MatchAll=0 MatchAny=1
PackageSorter | QObject, updateRequested()
SortByField | PackageSorter, QString name write nameChanged, nameChanged()
SortByIntegerField | SortByField
SortByStringField | SortByField
PackageListModel | QAbstractListModel, default manifestFields, QObject* packageProvider write
    packageProviderChanged, QString packageType write packageTypeChanged, QQmlListProperty<ManifestField>
    manifestFields manifestFieldsChanged, PackageMatcher* matcher write matcherChanged, PackageSorter* sorter
    write sorterChanged, int count countChanged, packageProviderChanged(), packageTypeChanged(),
    manifestFieldsChanged(), matcherChanged(), sorterChanged(), countChanged(), -scheduleUpdate(),
    -finishListUpdate(), -processFieldChange(), QString packageAt(int), int indexOf(QString), QJsonValue
    manifestField(int,QString)
CategoryListModel | QAbstractListModel, QString packageType write packageTypeChanged, QObject* packageProvider
    write packageProviderChanged, packageTypeChanged(), packageProviderChanged(), -updateList(),
    -finishUpdate()
KeywordSuggestionModel | QAbstractListModel, QString packageType write packageTypeChanged, QObject*
    packageProvider write packageProviderChanged, QString searchString write searchStringChanged, int count
    countChanged, packageTypeChanged(), packageProviderChanged(), searchStringChanged(), countChanged(),
    -updateList(), -finishUpdate(), QString suggestionAt(int)
Keyword | QObject, Keyword::Type type keywordChanged, QString displayString keywordChanged, QObject*
    packageProvider write packageProviderChanged, QString keywordId write keywordIdChanged, keywordChanged(),
    packageProviderChanged(), keywordIdChanged(), -update(), Type Invalid=-1 Noun=0 Name=1 Adjective=2
    Literal=3 Category=4
)");
    QCOMPARE(types.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i)
        QCOMPARE(nameOf(*types[i]) + " | "_s + describe(*types[i]), rows[i].first + " | "_s + rows[i].second);
}

// The value at first, a new one, and what comes of setting that twice.
void tst_QmlClasses::settersTellOnce()
{
    const auto makers =
        ::makers<ManifestField, ManifestBooleanField, ManifestStringField, HasKeyword, HasManifestField,
                 MatchesKeywordSearch, PackageMatcherGroup, SortByIntegerField, PackageListModel,
                 CategoryListModel, KeywordSuggestionModel, Keyword>();
    const auto rows = tableRows(R"(
ManifestField.name | null x nameChanged, updateRequested
ManifestBooleanField.defaultValue | false true defaultValueChanged, updateRequested
ManifestStringField.defaultValue | null x defaultValueChanged, updateRequested
HasKeyword.keywordId | null x keywordIdChanged, updateRequested
HasManifestField.name | null x nameChanged, updateRequested
MatchesKeywordSearch.searchString | null x searchStringChanged, updateRequested
MatchesKeywordSearch.matchMode | 0 1 matchModeChanged, updateRequested
PackageMatcherGroup.matchRequirement | 0 1 matchRequirementChanged, updateRequested
SortByIntegerField.name | null x nameChanged
PackageListModel.packageType | null x packageTypeChanged
CategoryListModel.packageType | null x packageTypeChanged
KeywordSuggestionModel.packageType | null x packageTypeChanged
KeywordSuggestionModel.searchString | null x searchStringChanged
Keyword.keywordId | null x keywordIdChanged
)");
    for (const auto &[name, expected] : rows) {
        const std::unique_ptr<QObject> object(makers.value(name.section("."_s, 0, 0))());
        const QByteArray propertyName = name.section("."_s, 1).toLatin1();
        const char *const property = propertyName.constData();
        SignalLog log(object.get());
        QStringList actual{object->property(property).toString()};
        if (object->property(property).isNull())
            actual.first() = "null"_s;
        const QString value = expected.section(" "_s, 1, 1);
        for (int i = 0; i < 2; ++i)
            object->setProperty(property, value == "1"_s ? QVariant(1) : QVariant(value));
        actual += {object->property(property).toString(), log.take()};
        QCOMPARE(name + " | "_s + actual.join(" "_s), name + " | "_s + expected);
    }
}

void tst_QmlClasses::providers_data()
{
    addPlays(R"(
PackageListModel | drops packageProviderChanged
CategoryListModel | keeps packageProviderChanged
KeywordSuggestionModel | keeps packageProviderChanged
Keyword | drops
)");
}

void tst_QmlClasses::providers()
{
    QFETCH(QString, play);
    const auto makers = ::makers<PackageListModel, CategoryListModel, KeywordSuggestionModel, Keyword>();
    const bool keepsUnusable = play.section(" "_s, 0, 0) == "keeps"_s;
    const QString told = play.section(" "_s, 1);
    const std::unique_ptr<QObject> user(makers.value(QString::fromLatin1(QTest::currentDataTag()))());
    SignalLog log(user.get());
    const auto provider = [&user] { return user->property("packageProvider").value<QObject *>(); };
    const auto assign = [&](QObject *object) {
        user->setProperty("packageProvider", QVariant::fromValue(object));
        return provider();
    };
    {
        QObject thing;
        QString line;
        QDebug(&line) << "critical: Object" << &thing << "does not implement the IPackageProvider interface";
        const LogCapture criticals("tamsel.packages"_s);
        QCOMPARE(assign(&thing), keepsUnusable ? &thing : nullptr);
        QCOMPARE(log.take(), told);
        QCOMPARE(assign(nullptr), nullptr);
        QCOMPARE(log.take(), keepsUnusable ? told : QString());
        QCOMPARE(criticals.lines(), QStringList{line.trimmed()});
    }
    auto stage = std::make_unique<Stage>();
    QCOMPARE(assign(&stage->provider), &stage->provider);
    QCOMPARE(log.take(), told);
    QCOMPARE(assign(&stage->provider), &stage->provider);
    QCOMPARE(log.take(), QString());
    stage.reset();
    QCOMPARE(provider(), nullptr);
}

QTEST_GUILESS_MAIN(tst_QmlClasses)
#include "tst_qmlclasses.moc"
