#include "index/packageindex.h"
#include "index/packagenode.h"
#include "presentation/packagereference.h"

#include "support/literals.h"
#include "support/memorysource.h"
#include "support/table.h"
#include "support/testprovider.h"

#include <QTranslator>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

QString greeting()
{
    return qtTrId("greeting");
}

// A repository with a package whose title is to be translated, and with room for a translation package.
struct Stage
{
    explicit Stage(const QString &manifest = R"({"de": "Hallo.qm"})"_s, const QString &type = "translation"_s)
    {
        source.catalogue.addPackage("p"_s, "birds"_s, {{"title"_s, "id:greeting"_s}});
        source.catalogue.addPackage("words"_s, type);
        setManifest(manifest);
        source.installers = [this](const QString &id, const InstallLocation &location) {
            auto *job = new ManualInstaller(location);
            for (const QString &name : {"Hallo.qm"_s, "Servus.qm"_s})
                location.installFile(QStringLiteral(GREETINGS "/") + name, name);
            if (installsAtOnce)
                job->succeed();
            else if (id == "words"_s)
                installer = job;
            return job;
        };
        repository.addSource(&source);
    }

    void setManifest(const QString &manifest)
    {
        source.catalogue.manifests["words"_s] = QJsonDocument::fromJson(manifest.toUtf8()).object();
    }

    // As the current index has it.
    QString title() const
    {
        const QString id = "p"_s;
        return repository.packageIndex()->getPackage(QStringRef(&id))->readManifest("title"_s).toString();
    }

    MemorySource source;
    TestProvider provider;
    PackageRepository &repository = *provider.packageRepository();
    QSignalSpy translated{&repository, &PackageRepository::translationsChanged};
    bool installsAtOnce = true;
    ManualInstaller *installer = nullptr; // of the translation package
};

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLocale::setDefault(QLocale("de_AT"_s)); }
    void cleanup() { QCOMPARE(greeting(), "greeting"_s); } // translators go with their repository

    void choosesTheFile()
    {
        // locale | manifest | text
        for (const Row &row : rows(R"(
            de_AT | {"de": "Hallo.qm", "en": "Servus.qm"}    | Hallo
            de_AT | {"de": "Hallo.qm", "de_AT": "Servus.qm"} | Servus
            fr_FR | {"de": "Hallo.qm", "en": "Servus.qm"}    | Servus
            de_AT | {"de": "missing.qm", "en": "Servus.qm"}  | greeting
            de_AT | {"de": 1, "en": "Servus.qm"}             | greeting
            de_AT | {"fr": "Servus.qm"}                      | greeting)")) {
            QLocale::setDefault(QLocale(row[0]));
            Stage stage(row[1]);
            QVERIFY(stage.provider.rebuild());
            QCOMPARE(row.with(greeting()), row.text());
            QCOMPARE(stage.title(), row[2]);
            QCOMPARE(stage.translated.count(), 1); // whether or not a file was loaded
        }
    }

    void loadsWhatBecomesInstalled()
    {
        Stage stage;
        stage.installsAtOnce = false;
        QVERIFY(stage.provider.rebuild());
        const auto index = stage.repository.packageIndex();
        QCOMPARE(stage.title(), "greeting"_s);
        QVERIFY(stage.translated.isEmpty());
        stage.installer->succeed();
        QCOMPARE(greeting() + stage.title(), "HalloHallo"_s);
        QCOMPARE(stage.translated.count(), 1);
        QCOMPARE(stage.repository.packageIndex(), index);
    }

    void tellsTheRepositoryLast()
    {
        Stage stage;
        QStringList heard;
        connect(&stage.repository, &PackageRepository::packageIndexChanged, this,
                [&] { heard.append(greeting()); });
        connect(&stage.repository, &PackageRepository::translationsChanged, this,
                [&] { heard.append("all"_s); });
        for (const QString &id : {"p"_s, "missing"_s}) {
            connect(stage.repository.packageReference(id), &PackageReference::translationsChanged, this,
                    [&] { heard.append(stage.title()); });
        }
        QVERIFY(stage.provider.rebuild());
        QCOMPARE(heard.join(QLatin1Char(' ')), "Hallo Hallo all Hallo"_s);
    }

    void followsVersions()
    {
        Stage stage;
        QVERIFY(stage.provider.rebuild());
        stage.setManifest(R"({"de": "Servus.qm"})"_s);
        QVERIFY(stage.provider.rebuild());
        QCOMPARE(greeting() + stage.title(), "ServusServus"_s);
        PackageReference *const words = stage.repository.packageReference("words"_s);
        QCOMPARE(words->findChildren<QTranslator *>().size(), 1);
        QCOMPARE(stage.translated.count(), 2); // once for each version
        stage.source.catalogue.packages.removeLast();
        QVERIFY(stage.provider.rebuild());
        QCOMPARE(words->status(), PackageReference::Unavailable);
        QCOMPARE(greeting() + stage.title(), "ServusServus"_s); // stays
    }

    void notifiesOnRequest()
    {
        Stage stage(R"({"de": "Hallo.qm"})"_s, "translations"_s); // of another type, which is left alone
        QSignalSpy ofReference(stage.repository.packageReference("p"_s),
                               &PackageReference::translationsChanged);
        stage.repository.notifyTranslationUpdate();
        QVERIFY(stage.translated.isEmpty() && ofReference.isEmpty()); // there is no index yet
        QVERIFY(stage.provider.rebuild());
        QCOMPARE(greeting() + stage.title(), "greetinggreeting"_s);
        QVERIFY(stage.translated.isEmpty());
        QCOMPARE(stage.repository.findChildren<PackageReference *>().size(), 1);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(GREETINGS "/Hallo.qm")));
        QCoreApplication::installTranslator(&translator);
        QCOMPARE(stage.title(), "greeting"_s);
        stage.repository.notifyTranslationUpdate();
        QCOMPARE(stage.title(), "Hallo"_s);
        QVERIFY(stage.translated.count() == 1 && ofReference.count() == 1);
    }
};

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_translations.moc"
