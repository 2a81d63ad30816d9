#include "presentation/manifestbooleanfield.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifestsizefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/packagedata.h"
#include "stage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <memory>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** A text field that counts how often it is read. */
class CountingField : public ManifestStringField
{
public:
    QVariant convert(const QJsonValue &value, const PackageNode *node) const override
    {
        ++reads;
        return ManifestStringField::convert(value, node);
    }

    mutable int reads = 0;
};

} // namespace

class tst_PackageData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsConvert_data();
    void fieldsConvert();
    void fieldsWithoutPackage();
    void plays_data();
    void plays();
};

void tst_PackageData::fieldsConvert_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("json"); // empty for undefined
    QTest::addColumn<QVariant>("expected");
    const auto rows = [](const char *field, const QByteArrayList &values, const QVariant &expected) {
        for (const QByteArray &json : values)
            QTest::addRow("%s from %s", field, json.constData()) << QByteArray(field) << json << expected;
    };
    rows("boolean", {"false"}, false);
    rows("boolean", {"", "null", "0", R"("false")"}, true);
    rows("string", {R"("text")"}, "text"_s);
    rows("string", {R"("")"}, ""_s);
    rows("string", {"", "null", "5", "true", R"(["text"])"}, "default"_s);
    rows("size", {"[1.5, 2]"}, QSizeF(1.5, 2));
    rows("size", {"[-5, 3]"}, QSizeF(0, 3));
    rows("size", {"[3, -5, 9]"}, QSizeF(3, 0));
    rows("size", {"", "null", "[]", "[1]", R"([1, "2"])", R"(["1", 2])", "{}", "5"}, QSizeF(7, 8));
    rows("file", {R"("oak.png")"}, QUrl("memory:/p/oak.png"_s));
    rows("file", {"", "null", "5"}, QUrl());
    rows("plain", {"[1]"}, QJsonValue(QJsonArray{1}));
    rows("plain", {""}, QJsonValue(QJsonValue::Undefined));
}

void tst_PackageData::fieldsConvert()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, json);
    QFETCH(QVariant, expected);
    Stage stage;
    stage.catalogue.addPackage("p"_s);
    stage.publish();
    ManifestField plain;
    ManifestFileField file;
    ManifestBooleanField boolean;
    boolean.setDefaultValue(true);
    ManifestStringField string;
    string.setDefaultValue("default"_s);
    ManifestSizeField size;
    size.setDefaultValue(QSizeF(7, 8));
    const QHash<QByteArray, const ManifestField *> fields{
        {"plain", &plain}, {"file", &file}, {"boolean", &boolean}, {"string", &string}, {"size", &size}};
    const QJsonValue value = QJsonDocument::fromJson("[" + json + "]").array().at(0);
    const QVariant actual = fields.value(field)->convert(value, stage.node("p"_s));
    QCOMPARE(actual.userType(), expected.userType());
    QCOMPARE(actual, expected);
    QCOMPARE(fields.value(field)->isStatusDependent(), field == "file");
}

void tst_PackageData::fieldsWithoutPackage()
{
    QCOMPARE(ManifestField().read(nullptr), QVariant(QJsonValue(QJsonValue::Undefined)));
    QCOMPARE(ManifestBooleanField().read(nullptr), QVariant(false));
    QCOMPARE(ManifestStringField().read(nullptr), QVariant(QString()));
    QCOMPARE(ManifestSizeField().read(nullptr), QVariant(QSizeF(0, 0)));
    QCOMPARE(ManifestFileField().read(nullptr), QVariant(QUrl()));
    QCOMPARE(ManifestFileField().convert("oak.png"_s, nullptr), QVariant(QUrl()));
    ManifestSizeField size;
    size.setDefaultValue(QSizeF(0.3, 1));
    SignalLog log(&size);
    size.setDefaultValue(QSizeF(0.1 + 0.2, 1)); // not equal by a hair
    QCOMPARE(log.take(), QString());
    size.setDefaultValue(QSizeF(2, 1));
    QCOMPARE(log.take(), "defaultValueChanged, updateRequested"_s);
    QCOMPARE(size.defaultValue(), QSizeF(2, 1));
}

// What comes of a word: signals, with the values at that moment; how often the fields were read; the values,
// if they have changed. One that QML sees as undefined reads "-".
void tst_PackageData::plays_data()
{
    addPlays(R"(
follows the status | loop[1; picture= title=none] publish refer[packageReferenceChanged picture= title=none; 1;
    picture= title=Oak] refer succeed[1; picture=memory:/p/oak.png title=Oak] gone publish[1; picture= title=none]
updates for each cause | start[1; picture= title=Oak]
    tell:statusChanged[1] tell:updated[1] tell:translationsChanged[1] tell:typeChanged default:x[1]
    unrefer[packageReferenceChanged picture= title=Oak; 1; picture= title=x] tell:updated
reads its fields once completed and once later | complete[1; picture= title=none] loop[1] loop
keys go with their fields | start[1; picture= title=Oak]
    rename:name[1; name=Quercus picture= title=-] rename:title[1; name=- picture= title=Oak]
    clear loop[name=- picture=- title=-] mark[mark=x name=- picture=- title=-] clear loop rename:name
    append loop[1; mark=- name=Quercus picture=- title=-]
changes of one pass are one | loop[1; picture= title=none] clear append loop[1; picture=- title=none]
written values go until the next update |
    start[1; picture= title=Oak] write[picture= title=-] default:x[1; picture= title=Oak]
survives its reference and its fields | start[1; picture= title=Oak] destroy default:x[1; picture=- title=x]
)");
}

void tst_PackageData::plays()
{
    QFETCH(QString, play);
    auto stage = std::make_unique<Stage>();
    stage->catalogue.addPackage("p"_s, {},
                                R"({"title": "Oak", "name": "Quercus", "picture": "oak.png"})"_json);
    PackageReference *const p = stage->repository()->packageReference("p"_s);
    CountingField title;
    title.setName("title"_s);
    title.setDefaultValue("none"_s);
    auto picture = std::make_unique<ManifestFileField>();
    picture->setName("picture"_s);
    PackageData data;
    QQmlListProperty<ManifestField> fields = data.manifestFields();
    fields.append(&fields, &title);
    fields.append(&fields, picture.get());
    QCOMPARE(fields.count(&fields), 2);
    QCOMPARE(fields.at(&fields, 1), picture.get());
    QCOMPARE(data.property("$").value<QQmlPropertyMap *>(), data.manifest());
    QCOMPARE(data.property("manifest").value<QQmlPropertyMap *>(), data.manifest());

    const auto shown = [&data] {
        QStringList keys = data.manifest()->keys();
        keys.sort();
        for (QString &key : keys) {
            const QVariant value = data.manifest()->value(key);
            key += "="_s + (value.isValid() ? value.toString() : "-"_s);
        }
        return keys.join(" "_s);
    };
    SignalLog log(&data);
    log.detail = shown;
    const auto destroy = [&] {
        stage.reset();
        picture.reset();
        QCOMPARE(data.packageReference(), nullptr);
    };
    const auto start = [&] {
        QCoreApplication::processEvents();
        stage->publish();
        data.setPackageReference(p);
        title.reads = 1;
        log.take();
    };
    const Verbs verbs{
        {"start"_s, [&](auto) { start(); }},
        {"loop"_s, [](auto) { QCoreApplication::processEvents(); }},
        {"complete"_s, [&](auto) { data.componentComplete(); }},
        {"publish"_s, [&](auto) { stage->publish(); }},
        {"gone"_s, [&](auto) { stage->catalogue.packages.clear(); }},
        {"succeed"_s, [&](auto) { stage->started.last()->succeed(); }},
        {"refer"_s, [&](auto) { data.setPackageReference(p); }},
        {"unrefer"_s, [&](auto) { data.setPackageReference(nullptr); }},
        {"destroy"_s, [&](auto) { destroy(); }},
        {"tell"_s, [&](auto signal) { QMetaObject::invokeMethod(p, qPrintable(signal)); }},
        {"default"_s, [&](auto value) { title.setDefaultValue(value); }},
        {"rename"_s, [&](auto name) { title.setName(name); }},
        {"write"_s, [&](auto) { data.manifest()->setProperty("title", "written"_s); }},
        {"mark"_s, [&](auto) { data.manifest()->insert("mark"_s, "x"_s); }}, // an update would empty it
        {"clear"_s, [&](auto) { fields.clear(&fields); }},
        {"append"_s, [&](auto) { fields.append(&fields, &title); }},
    };
    QString shownBefore;
    const auto effects = [&] {
        const int reads = std::exchange(title.reads, 0);
        QStringList parts{log.take(), reads > 0 ? QString::number(reads) : QString(),
                          shown() != std::exchange(shownBefore, shown()) ? shown() : QString()};
        parts.removeAll(QString());
        return parts.join("; "_s);
    };
    QCOMPARE(perform(play, verbs, effects), play);
}

QTEST_GUILESS_MAIN(tst_PackageData)
#include "tst_packagedata.moc"
