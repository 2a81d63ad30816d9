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

using Maker = QObject *(*)();
Q_DECLARE_METATYPE(Maker)

namespace {

template<typename Type>
const Maker make = [] { return static_cast<QObject *>(new Type); };

// What the class adds to its base, in the order of declaration: properties, signals, private slots with a
// minus, invokables with their type, enumerations.
QString describe(const QMetaObject &type)
{
    QByteArrayList parts{type.className() + QByteArray(" | ") + type.superClass()->className()};
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
    void settersTellOnce_data();
    void settersTellOnce();
    void providers_data();
    void providers();
};

void tst_QmlClasses::surface()
{
    const QMetaObject *const types[] = {&PackageReference::staticMetaObject,
                                        &ManifestField::staticMetaObject,
                                        &ManifestBooleanField::staticMetaObject,
                                        &ManifestStringField::staticMetaObject,
                                        &ManifestSizeField::staticMetaObject,
                                        &ManifestFileField::staticMetaObject,
                                        &PackageData::staticMetaObject,
                                        &PackageMatcher::staticMetaObject,
                                        &HasKeyword::staticMetaObject,
                                        &HasManifestField::staticMetaObject,
                                        &MatchesKeywordSearch::staticMetaObject,
                                        &PackageMatcherGroup::staticMetaObject,
                                        &PackageSorter::staticMetaObject,
                                        &SortByField::staticMetaObject,
                                        &SortByIntegerField::staticMetaObject,
                                        &SortByStringField::staticMetaObject,
                                        &PackageListModel::staticMetaObject,
                                        &CategoryListModel::staticMetaObject,
                                        &KeywordSuggestionModel::staticMetaObject,
                                        &Keyword::staticMetaObject};
    const auto rows = tableRows(R"(
PackageReference |
    QObject, QString id const, QString type typeChanged, PackageReference::Status status statusChanged,
    typeChanged(), statusChanged(), updated(), translationsChanged(), -init(), -update(), -computeStatus(),
    QJsonObject manifest(), QJsonValue manifestField(QString), QUrl fileUrl(QString), Status Unavailable=-3
    Incomplete=-2 Unknown=-1 Installing=0 Installed=1
ManifestField | QObject, QString name write nameChanged, nameChanged(), updateRequested()
ManifestBooleanField | ManifestField, bool defaultValue write defaultValueChanged, defaultValueChanged()
ManifestStringField | ManifestField, QString defaultValue write defaultValueChanged, defaultValueChanged()
ManifestSizeField | ManifestField, QSizeF defaultValue write defaultValueChanged, defaultValueChanged()
ManifestFileField | ManifestField
PackageData |
    QObject, default manifestFields, PackageReference* packageReference write packageReferenceChanged,
    QQmlListProperty<ManifestField> manifestFields manifestFieldsChanged, QQmlPropertyMap* $ const,
    QQmlPropertyMap* manifest const, packageReferenceChanged(), manifestFieldsChanged(), -processFieldChange(),
    -update()
PackageMatcher | QObject, updateRequested()
HasKeyword | PackageMatcher, QString keywordId write keywordIdChanged, keywordIdChanged()
HasManifestField | PackageMatcher, QString name write nameChanged, nameChanged()
MatchesKeywordSearch |
    PackageMatcher, QString searchString write searchStringChanged, MatchesKeywordSearch::MatchMode matchMode
    write matchModeChanged, searchStringChanged(), matchModeChanged(), MatchMode PartialMatch=0 FullMatch=1
PackageMatcherGroup |
    PackageMatcher, default matchers, PackageMatcherGroup::MatchRequirement matchRequirement write,
    QQmlListProperty<PackageMatcher> matchers matchersChanged, matchRequirementChanged(), matchersChanged(),
    -notifyMatcherChange(), void addMatcher(PackageMatcher*), void removeMatcher(PackageMatcher*),
    MatchRequirement MatchAll=0 MatchAny=1
PackageSorter | QObject, updateRequested()
SortByField | PackageSorter, QString name write nameChanged, nameChanged()
SortByIntegerField | SortByField
SortByStringField | SortByField
PackageListModel |
    QAbstractListModel, default manifestFields, QObject* packageProvider write packageProviderChanged, QString
    packageType write packageTypeChanged, QQmlListProperty<ManifestField> manifestFields manifestFieldsChanged,
    PackageMatcher* matcher write matcherChanged, PackageSorter* sorter write sorterChanged, int count
    countChanged, packageProviderChanged(), packageTypeChanged(), manifestFieldsChanged(), matcherChanged(),
    sorterChanged(), countChanged(), -scheduleUpdate(), -finishListUpdate(), -processFieldChange(), QString
    packageAt(int), int indexOf(QString), QJsonValue manifestField(int,QString)
CategoryListModel |
    QAbstractListModel, QString packageType write packageTypeChanged, QObject* packageProvider write
    packageProviderChanged, packageTypeChanged(), packageProviderChanged(), -updateList(), -finishUpdate()
KeywordSuggestionModel |
    QAbstractListModel, QString packageType write packageTypeChanged, QObject* packageProvider write
    packageProviderChanged, QString searchString write searchStringChanged, int count countChanged,
    packageTypeChanged(), packageProviderChanged(), searchStringChanged(), countChanged(), -updateList(),
    -finishUpdate(), QString suggestionAt(int)
Keyword |
    QObject, Keyword::Type type keywordChanged, QString displayString keywordChanged, QObject* packageProvider
    write packageProviderChanged, QString keywordId write keywordIdChanged, keywordChanged(),
    packageProviderChanged(), keywordIdChanged(), -update(), Type Invalid=-1 Noun=0 Name=1 Adjective=2 Literal=3
    Category=4
)");
    QCOMPARE(int(std::size(types)), rows.size());
    for (int i = 0; i < rows.size(); ++i)
        QCOMPARE(describe(*types[i]), rows.at(i).first + " | "_s + rows.at(i).second);
}

void tst_QmlClasses::settersTellOnce_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QVariant>("initial");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *name, Maker maker, const char *property, const char *told,
                        const QVariant &initial = QString(), const QVariant &value = "x"_s) {
        QTest::addRow("%s.%s", name, property)
            << maker << QByteArray(property) << QString::fromLatin1(told) << initial << value;
    };
    const char defaultTold[] = "defaultValueChanged, updateRequested";
    row("ManifestField", make<ManifestField>, "name", "nameChanged, updateRequested");
    row("ManifestBooleanField", make<ManifestBooleanField>, "defaultValue", defaultTold, false, true);
    row("ManifestStringField", make<ManifestStringField>, "defaultValue", defaultTold);
    row("ManifestSizeField", make<ManifestSizeField>, "defaultValue", defaultTold, QSizeF(0, 0),
        QSizeF(1, 2));
    row("HasKeyword", make<HasKeyword>, "keywordId", "keywordIdChanged, updateRequested");
    row("HasManifestField", make<HasManifestField>, "name", "nameChanged, updateRequested");
    const Maker search = make<MatchesKeywordSearch>;
    row("MatchesKeywordSearch", search, "searchString", "searchStringChanged, updateRequested");
    row("MatchesKeywordSearch", search, "matchMode", "matchModeChanged, updateRequested", 0, 1);
    row("PackageMatcherGroup", make<PackageMatcherGroup>, "matchRequirement",
        "matchRequirementChanged, updateRequested", 0, 1);
    row("SortByIntegerField", make<SortByIntegerField>, "name", "nameChanged"); // shows with the next update
    row("PackageListModel", make<PackageListModel>, "packageType", "packageTypeChanged");
    row("CategoryListModel", make<CategoryListModel>, "packageType", "packageTypeChanged");
    row("KeywordSuggestionModel", make<KeywordSuggestionModel>, "packageType", "packageTypeChanged");
    row("KeywordSuggestionModel", make<KeywordSuggestionModel>, "searchString", "searchStringChanged");
    row("Keyword", make<Keyword>, "keywordId", "keywordIdChanged");
}

void tst_QmlClasses::settersTellOnce()
{
    QFETCH(Maker, maker);
    QFETCH(QByteArray, name);
    QFETCH(QVariant, initial);
    QFETCH(QVariant, value);
    const char *const property = name.constData();
    const std::unique_ptr<QObject> object(maker());
    SignalLog log(object.get());
    QCOMPARE(object->property(property), initial);
    QCOMPARE(object->property(property).isNull(), initial.isNull());
    QVERIFY(object->setProperty(property, value));
    QCOMPARE(object->property(property), value);
    QTEST(log.take(), "told");
    QVERIFY(object->setProperty(property, value));
    QCOMPARE(log.take(), QString());
}

void tst_QmlClasses::providers_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<bool>("keepsUnusable");
    QTest::addColumn<QString>("told");
    const QString changed = "packageProviderChanged"_s;
    QTest::newRow("PackageListModel") << make<PackageListModel> << false << changed;
    QTest::newRow("CategoryListModel") << make<CategoryListModel> << true << changed;
    QTest::newRow("KeywordSuggestionModel") << make<KeywordSuggestionModel> << true << changed;
    QTest::newRow("Keyword") << make<Keyword> << false << QString(); // silent by choice
}

void tst_QmlClasses::providers()
{
    QFETCH(Maker, maker);
    QFETCH(bool, keepsUnusable);
    QFETCH(QString, told);
    const std::unique_ptr<QObject> user(maker());
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
