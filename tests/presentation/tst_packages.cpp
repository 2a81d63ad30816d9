#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/manifestbooleanfield.h"
#include "presentation/manifestfilefield.h"
#include "presentation/manifestsizefield.h"
#include "presentation/manifeststringfield.h"
#include "presentation/packagedata.h"
#include "presentation/packagereference.h"
#include "support/fakeclock.h"
#include "support/logcapture.h"
#include "support/stage.h"

#include <QtTest>

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
        onRead();
        return ManifestStringField::convert(value, node);
    }

    mutable int reads = 0;
    std::function<void()> onRead = [] {};
};

// What p shows has to fit its status and type.
QString contradictions(const PackageReference &p)
{
    const bool isThere = p.status() != PackageReference::Unavailable;
    const bool isInstalled = p.status() == PackageReference::Installed;
    const QString title = isThere ? "of "_s + p.type() : QString();
    const bool consistent =
        p.manifestField("title"_s).toString() == title && p.manifest().value("title"_s).toString() == title
        && p.fileUrl("f"_s).toString() == (isThere ? "memory:/p/f"_s : QString())
        && p.snapshot().manifestField("title"_s).toString() == (isInstalled ? title : QString())
        && (isThere ? p.node()->packageIndex() == p.packageIndex().data() : !p.node() && !p.packageIndex())
        && (isThere ? p.installLocation().directory(false) == p.node()->installLocation().directory(false)
                    : p.type().isNull() && !p.installLocation().isValid());
    return consistent ? QString() : "contradiction"_s;
}

QString textOf(const QVariant &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text.mid(9).chopped(1); // without "QVariant(" and ")"
}

} // namespace

class tst_Packages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsConvert();
    void references();
    void data();
};

void tst_Packages::fieldsConvert()
{
    Stage stage;
    stage.catalogue.addPackage("p"_s);
    stage.publish();
    const auto packages = PackageIndex::selectPackages(stage.repository()->packageIndex(), {}, {}, {});
    ManifestField plain;
    ManifestFileField file;
    ManifestBooleanField boolean;
    boolean.setDefaultValue(true);
    ManifestStringField string;
    string.setDefaultValue("default"_s);
    ManifestSizeField size;
    size.setDefaultValue(QSizeF(0.3, 8));
    SignalLog log(&size);
    size.setDefaultValue(QSizeF(0.1 + 0.2, 8)); // not equal by a hair
    size.setDefaultValue(QSizeF(7, 8));
    QCOMPARE(log.take(), "defaultValueChanged, updateRequested"_s);
    const QHash<QString, const ManifestField *> fields{{"plain"_s, &plain},
                                                       {"file"_s, &file},
                                                       {"boolean"_s, &boolean},
                                                       {"string"_s, &string},
                                                       {"size"_s, &size}};
    // kind | values in JSON, undefined where there is none | what a package that has one of them shows
    for (const Row &row : rows(R"(
        boolean | false                                           | bool, false
        boolean | ; null; 0; "false"                              | bool, true
        string  | "text"                                          | QString, "text"
        string  | ; null; 5; true; ["text"]                       | QString, "default"
        size    | [1.5, 2]                                        | QSizeF, QSizeF(1.5, 2)
        size    | [3, -5, 9]                                      | QSizeF, QSizeF(3, 0)
        size    | ; null; []; [1]; [1, "2"]; ["1", 2]; {}; 5      | QSizeF, QSizeF(7, 8)
        file    | "oak.png"                                       | QUrl, QUrl("memory:/p/oak.png")
        file    | ; null; 5                                       | QUrl, QUrl("")
        plain   | [1]                                             | QJsonValue, QJsonValue(array, QJsonArray([1]))
        plain   |                                                 | QJsonValue, QJsonValue(undefined))")) {
        const ManifestField *field = fields.value(row[0]);
        for (const QString &json : row[1].split("; "_s)) {
            const QJsonValue value = QJsonDocument::fromJson("[" + json.toUtf8() + "]").array().at(0);
            QCOMPARE(row.with(textOf(field->convert(value, packages.at(0)))), row.text());
        }
        QCOMPARE(field->isStatusDependent(), field == &file);
    }
    QCOMPARE(file.convert("oak.png"_s, nullptr), QUrl());
    QCOMPARE(ManifestSizeField().read(nullptr), QSizeF(0, 0));
}

// What comes of a word: installers started (+) and destroyed (-), whether the sources are asked for news, and
// the signals, each with status and type at that moment.
void tst_Packages::references()
{
    auto plays = rows(R"(
asks for news on every pass | follow[news] publish wait:121 publish[news] publish
goes when it asks for news | follow[news] goForNews wait:121 update[news]
goes when it is installed at first | version:a publish goToInstall follow[+1; -1]
goes when it is installed anew | install[+1; statusChanged Installed a] goToInstall update[+1; -2]
a newer index overtakes an installer in the making | install[+1; statusChanged Installed a]
    loseToInstall update[+1; -2; news; statusChanged Unavailable] publish
appears by its status alone |
    version:a follow[news] publish[+1; statusChanged Installing a] succeed[statusChanged Installed a]
knows its status from the start | instantly version:a publish follow[+1]
    version:b publish[+1; -1; typeChanged Installed b, updated Installed b]
swaps when the new version is done | install[+1; statusChanged Installed a]
    version:b publish[+1] succeed[-1; typeChanged Installed b, updated Installed b]
status, then type, then update | incomplete[+1; statusChanged Incomplete a]
    version:b publish[+1] succeed[-1; statusChanged Installed b, typeChanged Installed b, updated Installed b]
waits for the newest version only | install[+1; statusChanged Installed a]
    version:b publish[+1] version:a publish[+1; -1] succeed[-1; updated Installed a]
goes at once, comes back | install[+1; statusChanged Installed a] publish[+1]
    gone publish[-2; news; statusChanged Unavailable] version:b publish[+1; statusChanged Installing b]
stays installed while the new version fails | install[+1; statusChanged Installed a]
    version:b publish[+1] fail wait:20 wait:12[+1; -1] fail wait:50 wait:12[+1; -1]
    succeed[-1; typeChanged Installed b, updated Installed b]
success starts the delays anew | incomplete[+1; statusChanged Incomplete a] wait:20 wait:12[+1]
    succeed[-1; statusChanged Installed a, updated Installed a] publish[+1] fail wait:20 wait:12[+1; -1]
one retry at a time | incomplete[+1; statusChanged Incomplete a]
    publish[+1] fail wait:40[+1; -1] fail wait:50 wait:12[+1; -1]
a failure during the retry arms none | incomplete[+1; statusChanged Incomplete a]
    never wait:40[+1] wait:9999 publish[+1; -1] wait:50 wait:12[+1; -1]
folds back to done with nothing pending | install[+1; statusChanged Installed a] require:q require:r instantly
    publish[+3; -1; updated Installed a] succeed:2 succeed:3
goes with its status | incomplete[+1; statusChanged Incomplete a] version:b publish[+1]
    goAt:statusChanged succeed[-2; statusChanged Installed b]
goes with its type | install[+1; statusChanged Installed a] version:b publish[+1]
    goAt:typeChanged succeed[-2; typeChanged Installed b]
goes with its update | install[+1; statusChanged Installed a] publish[+1] goAt:updated
    succeed[-2; updated Installed a]
goes in a retry | incomplete[+1; statusChanged Incomplete a] instantly goAt:updated wait:40[+1; -2; statusChanged Installed a, updated Installed a]
a required package fails after the swap | install[+1; statusChanged Installed a] require:q require:r instantly
    publish[+3; -1; updated Installed a] fail:2 succeed:3 wait:20 wait:12[+3; -3; updated Installed a]
)");
    QString delays =
        "delays grow to the longest | incomplete[+1; statusChanged Incomplete a] wait:20 wait:12[+1]"_s;
    for (int doubling = 1; doubling < 20; ++doubling) // 16 is the last that 32 bits of milliseconds hold
        delays += " fail wait:%1 wait:12[+1; -1]"_s.arg((30 << qMin(doubling, 16)) - 10);
    plays.append(Row(delays));
    for (const Row &row : qAsConst(plays)) {
        const LogCapture logging("tamsel.packages"_s);
        Stage stage;
        QPointer<PackageReference> p;
        std::unique_ptr<SignalLog> log;
        const auto installer = [&](const QString &number) {
            return number.isEmpty() ? stage.started.last() : stage.started.at(number.toInt());
        };
        const auto setVersion = [&](const QString &type) {
            stage.catalogue.packages.clear();
            stage.catalogue.addPackage("p"_s, type, {{"title"_s, "of "_s + type}});
        };
        const auto require = [&](const QString &other) { // after p, in the order of installers
            stage.catalogue.addPackage(other);
            stage.catalogue.addLink("p"_s, Requires, other);
        };
        std::function<void()> onInstall = [] {};
        stage.source.installers = [&, install = stage.source.installers](const QString &id,
                                                                         const auto &location) {
            std::exchange(onInstall, [] {})();
            return install(id, location);
        };
        const auto follow = [&] {
            p = stage.repository()->packageReference("p"_s);
            if (!p)
                return;
            log = std::make_unique<SignalLog>(p);
            log->detail = [p] {
                return "%1 %2"_s.arg(QVariant::fromValue(p->status()).toString(), p->type()).trimmed();
            };
        };
        const auto start = [&] { setVersion("a"_s), stage.publish(), follow(); };
        const Verbs verbs{
            {"install"_s, [&](auto) { start(), installer({})->succeed(); }},
            {"incomplete"_s, [&](auto) { start(), installer({})->fail(); }},
            {"publish"_s, [&](auto) { stage.publish(); }},
            {"version"_s, setVersion},
            {"gone"_s, [&](auto) { stage.catalogue.packages.clear(); }},
            {"require"_s, require},
            {"follow"_s, [&](auto) { follow(); }},
            {"succeed"_s, [&](auto number) { installer(number)->succeed(); }},
            {"fail"_s, [&](auto number) { installer(number)->fail(); }},
            {"instantly"_s, [&](auto) { stage.succeedAtOnce.insert("p"_s); }},
            {"never"_s, [&](auto) { stage.failAtOnce.insert("p"_s); }},
            {"goAt"_s, [&](auto signal) { log->deeds[signal] = [&] { delete stage.repository(); }; }},
            {"goForNews"_s, [&](auto) { stage.source.onUpdate = [&] { delete stage.repository(); }; }},
            {"goToInstall"_s, [&](auto) { onInstall = [&] { delete stage.repository(); }; }},
            {"loseToInstall"_s,
             [&](auto) { onInstall = [&] { stage.catalogue.packages.clear(), stage.publish(); }; }},
            {"update"_s, [&](auto) { QMetaObject::invokeMethod(p, "update"); }},
            {"wait"_s, [](auto time) { FakeClock::advance(std::chrono::seconds(time.toInt())); }},
        };
        int startedBefore = 0;
        int goneBefore = 0;
        const auto effects = [&] {
            const int started = stage.started.size();
            const int gone = stage.started.count(nullptr);
            QStringList parts{"+%1"_s.arg(started - std::exchange(startedBefore, started)),
                              "-%1"_s.arg(gone - std::exchange(goneBefore, gone)),
                              std::exchange(stage.source.updateCalls, 0) > 0 ? "news"_s : QString(),
                              log ? log->take() : QString(), p ? contradictions(*p) : QString()};
            for (const QString &nothing : {"+0"_s, "-0"_s, QString()})
                parts.removeAll(nothing);
            return parts.join("; "_s);
        };
        QCOMPARE(row.with(perform(row[1], verbs, effects)), row.text());
        QCOMPARE(logging.lines().count("debug: Finished update of package \"p\""_s),
                 row[1].count(QRegularExpression("updated I|goAt:[st]"_s)));
    }
}

// What comes of a word: signals, with the values at that moment; how often the fields were read; the values,
// if they have changed. One that QML sees as undefined reads "-".
void tst_Packages::data()
{
    for (const Row &row : rows(R"(
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
cleared fields are let go at once | start[1; picture= title=Oak] clear mark[mark=x picture= title=Oak]
    default:x loop[mark=- picture=- title=-]
changes of one pass are one | loop[1; picture= title=none] clear append loop[1; picture=- title=none]
written values go until the next update |
    start[1; picture= title=Oak] write[picture= title=-] default:x[1; picture= title=Oak]
a listener takes fields and reference away | start[1; picture= title=Oak]
    succeed[1; picture=memory:/p/oak.png title=Oak] write[picture=memory:/p/oak.png title=-] takeaway
    default:x[packageReferenceChanged picture=memory:/p/oak.png title=Oak; 1; picture=- title=-]
survives its reference and its fields | start[1; picture= title=Oak] destroy default:x[1; picture=- title=x]
a field that is read takes the package away | start[1; picture= title=Oak] succeed[1; picture=memory:/p/oak.png
    title=Oak] destroyAtRead default:x[1])")) {
        auto stage = std::make_unique<Stage>();
        stage->catalogue.addPackage("p"_s, {},
                                    json(R"({"title": "Oak", "name": "Quercus", "picture": "oak.png"})"_s));
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
        const auto start = [&] {
            QCoreApplication::processEvents();
            stage->publish();
            data.setPackageReference(p);
            title.reads = 1;
            log.take();
        };
        std::unique_ptr<SignalLog> listener; // to the values, one by one
        const auto takeAway = [&] {
            fields.clear(&fields);
            data.setPackageReference(nullptr);
            return QString();
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
            {"destroy"_s, [&](auto) { stage.reset(), picture.reset(); }},
            {"destroyAtRead"_s, [&](auto) { title.onRead = [&] { stage.reset(); }; }},
            {"tell"_s, [&](auto signal) { QMetaObject::invokeMethod(p, qPrintable(signal)); }},
            {"default"_s, [&](auto value) { title.setDefaultValue(value); }},
            {"rename"_s, [&](auto name) { title.setName(name); }},
            {"write"_s, [&](auto) { data.manifest()->setProperty("title", "written"_s); }},
            {"mark"_s, [&](auto) { data.manifest()->insert("mark"_s, "x"_s); }}, // an update would empty it
            {"clear"_s, [&](auto) { fields.clear(&fields); }},
            {"append"_s, [&](auto) { fields.append(&fields, &title); }},
            {"takeaway"_s,
             [&](auto) {
                 listener = std::make_unique<SignalLog>(data.manifest());
                 listener->detail = takeAway;
             }},
        };
        QString shownBefore;
        const auto effects = [&] {
            const int reads = std::exchange(title.reads, 0);
            QStringList parts{log.take(), reads > 0 ? QString::number(reads) : QString(),
                              shown() != std::exchange(shownBefore, shown()) ? shown() : QString()};
            parts.removeAll(QString());
            return parts.join("; "_s);
        };
        QCOMPARE(row.with(perform(row[1], verbs, effects)), row.text());
    }
}

QTEST_GUILESS_MAIN(tst_Packages)
#include "tst_packages.moc"
