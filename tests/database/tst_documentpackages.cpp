// Packages among the documents of a data context: as documents themselves, opened as documents, and linked
// to.

#include "database/documentpackageaccessor.h"
#include "database/documentpackageloader.h"
#include "presentation/packagereference.h"
#include "presentation/packagereferencefield.h"
#include "presentation/packagereferencetype.h"
#include "storage/packageinstaller.h"
#include "support/files.h"
#include "support/stage.h"

#include <TamselDataCore/Context>
#include <TamselDataCore/LinkedDocument>
#include <TamselDataCore/ReferenceType>

#include <QtTest>

using namespace ts::data;
using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** A context whose documents can link to the packages of a stage. */
class PackageContext : public Context, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)

public:
    PackageContext()
        : Context(QUrl(), QString())
    {
    }

    PackageRepository *packageRepository() const override { return stage.repository(); }
    PackageReference *packageReference(const QString &id) override
    {
        asked << id;
        onAsked();
        return stage.provider.packageReference(id);
    }

    /** Makes an index with the package "trail", or with one more version of it. */
    void publish(const QJsonObject &manifest)
    {
        stage.catalogue = {};
        stage.catalogue.addPackage("trail"_s, "hike"_s, manifest);
        stage.publish();
    }

    QStringList asked;
    std::function<void()> onAsked = [] {};
    Stage stage;
};

} // namespace

class tst_DocumentPackages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesPackagesOfDocuments()
    {
        QTemporaryDir directory;
        const QByteArray rows = R"([{"doc":{"_id":"x","_rev":"1-a","t":1}},{"doc":{"_id":"y"}},{},7])";
        for (const QByteArray &content : {rows, QByteArray("{\"rows\":" + rows + "}")}) {
            QVERIFY(writeFile(directory.filePath("rows"_s), content));
            DocumentPackageAccessor accessor("my:bird"_s, {directory.filePath("rows"_s), std::nullopt});
            accessor.initialize();
            QString found;
            for (int i = -1; i <= accessor.packageCount(); ++i) {
                const PackageInfo info = accessor.packageInfo(i);
                const std::unique_ptr<PackageInstaller> installer(accessor.packageInstaller(i, {}));
                found += "[%1 %2 %3 %4 %5]"_s.arg(info.id, info.type, info.revision)
                             .arg(accessor.packageManifest(i).size())
                             .arg(installer ? installer->status() : 0);
            }
            QCOMPARE(found, "[   0 0][x compat:my:bird 1-a 3 1][y compat:my:bird  1 1]"
                            "[ compat:my:bird  0 1][ compat:my:bird  0 1][   0 0]"_s);
            QVERIFY(accessor.packageFileUrl(0, "f"_s).isEmpty() && accessor.keywordLanguages().isEmpty());
            QVERIFY(accessor.keywordCount() == 0 && accessor.linkCount() == 0);
        }
    }

    void opensPackagesAsDocuments()
    {
        PackageContext context;
        DocumentPackageLoader loader("tr"_s, &context);
        DocumentPackageLoader second(QString(), &context);
        const auto data = [&context] {
            const LinkedDocument *document = context.loadedDocument("trail"_s);
            return document ? QJsonDocument(document->data()).toJson(QJsonDocument::Compact) : "none";
        };
        QVERIFY(!loader.tryLoad("Trail"_s) && context.asked.isEmpty());
        LinkedDocument *document = context.openDocument("trail"_s);
        QVERIFY(loader.tryLoad("trail"_s) && second.tryLoad("trail"_s));
        QCOMPARE(data(), QByteArray("none"));
        context.publish({{"docType"_s, "a"_s}, {"type"_s, "b"_s}}); // installing
        QByteArray expected = R"({"docType":"a","type":"b","wasCached":true})";
        QCOMPARE(data(), expected);
        context.stage.started.constLast()->succeed();
        QSignalSpy changes(document, &LinkedDocument::dataChanged);
        for (const auto &[manifest, fixed] :
             {std::pair(R"({"docType":"a","wasCached":1})", R"({"docType":"a","type":"a","wasCached":true})"),
              {"{}", R"({"type":"","wasCached":true})"}}) {
            context.publish(QJsonDocument::fromJson(manifest).object());
            QCOMPARE(data(), expected);
            context.stage.started.constLast()->succeed();
            expected = fixed;
            QCOMPARE(data(), expected);
        }
        QCOMPARE(changes.count(), 2);
        context.stage.catalogue = {};
        context.stage.publish();
        context.publish({{"type"_s, "c"_s}}); // comes back, and is installing
        QCOMPARE(data(), expected);

        // A package that is there already is delivered before the document is out.
        PackageContext ready;
        new DocumentPackageLoader("trail"_s, &ready);
        ready.publish({});
        QVERIFY(ready.openDocument("trail"_s)->isLoaded());

        // Who hears of the data may delete the loader that brings them.
        PackageContext waiting;
        document = waiting.openDocument("trail"_s);
        waiting.publish({});
        auto *mortal = new DocumentPackageLoader("trail"_s, &waiting);
        connect(document, &LinkedDocument::loaded, mortal, [mortal] { delete mortal; });
        QTRY_VERIFY(document->isLoaded());
    }

    // Whoever is asked for a package may delete the loader, or the document, that asks.
    void goWhenTheyAsk()
    {
        registerReferenceType<PackageReferenceType>();
        PackageContext context;
        context.publish({});
        context.onAsked = [&context] { delete context.findChild<DocumentPackageLoader *>(); };
        new DocumentPackageLoader("tr"_s, &context);
        QVERIFY(!context.openDocument("trail"_s)->isLoaded());
        QVERIFY(!context.findChild<DocumentPackageLoader *>());

        QPointer<LinkedDocument> document = context.openDocument("letter"_s);
        context.onAsked = [&document] { delete document; };
        document->setData({{"a"_s, "ref:1:trail"_s}, {"b"_s, "ref:1:trail"_s}});
        QVERIFY(!document);
        document = new LinkedDocument("loose"_s, &context);
        document->setStructValue({}, "goal"_s, "ref:1:trail"_s);
        QVERIFY(!document);
    }

    void linksToPackages()
    {
        registerReferenceType<PackageReferenceType>();
        PackageContext context;
        PackageReferenceField field;
        field.setName("goal"_s);
        LinkedDocument *document = context.openDocument("letter"_s);
        document->setData({{"any"_s, QJsonArray{"ref:1:trail%2F%FC"_s}}});
        QCOMPARE(context.asked, QStringList("trail/ü"_s)); // attached: it gets installed
        PackageReference *trail = context.packageReference("trail/ü"_s);
        QCOMPARE(trail->status(), PackageReference::Unavailable);
        const QVariant value = QVariant::fromValue(trail);
        field.write(document, "a/b"_s, value);
        QCOMPARE(document->getStructValue("a/b"_s, "goal"_s), QJsonValue("ref:1:trail%2F%FC"_s));
        QCOMPARE(field.read(document, "a/b"_s), value);
        for (QObject *foreign : {static_cast<QObject *>(&context), static_cast<QObject *>(nullptr)}) {
            field.write(document, "a/b"_s, QVariant::fromValue(foreign));
            QVERIFY(document->getStructValue("a/b"_s, "goal"_s).isUndefined());
            QCOMPARE(field.read(document, "a/b"_s), QVariant::fromValue<PackageReference *>(nullptr));
            QVERIFY(!field.compare(value, QVariant::fromValue(foreign)));
            QVERIFY(!field.convert(QVariant::fromValue(foreign)).value<QObject *>());
        }
        const QVariant asObject = QVariant::fromValue<QObject *>(trail);
        QVERIFY(field.compare(value, asObject));
        QCOMPARE(field.convert(asObject), value);
        for (const char *noLink : {"ref:", "ref:1", "ref:1:", "ref:8:owl", "ref:x:owl", "trail"})
            QVERIFY2(!document->decodeReference(QString::fromLatin1(noLink)), noLink);

        for (QObject *parent : {static_cast<QObject *>(nullptr), static_cast<QObject *>(&field)})
            QVERIFY(!LinkedDocument("x"_s, parent).decodeReference("ref:1:trail"_s)); // there are no packages
        QCOMPARE(field.convert(7).userType(), qMetaTypeId<LinkedDocument *>());
        QCOMPARE(field.read(nullptr, QString()).userType(), qMetaTypeId<LinkedDocument *>());
        field.write(nullptr, QString(), value);
    }
};

QTEST_GUILESS_MAIN(tst_DocumentPackages)
#include "tst_documentpackages.moc"
