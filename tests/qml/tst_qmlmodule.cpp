#include "storage/fileproxyserver.h"
#include "storage/ifileproxy.h"
#include "support/directorycatalogue.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/table.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTimer>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** An engine with one QML object in it, whose "provider" shows the catalogue of its source "local". */
class Scene
{
public:
    explicit Scene(const QByteArray &content)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick 2.15\nimport Tamsel.PackageManager 1.0\nItem {\n"
                          "property var provider: PackageProvider { LocalSource { id: local } }\n"
                              + content + "}",
                          QUrl());
        root.reset(component.create());
        if (!root)
            qFatal("%s", qPrintable(component.errorString()));
        oak.writePackage("plant/tree"_s, "oak"_s, {{"title"_s, "Oak"_s}, {"picture"_s, "oak.png"_s}});
        oak.writeFile("packages/plant/tree/oak/oak.png"_s, "picture");
        fern.writePackage("plant"_s, "fern"_s, {{"title"_s, "Fern"_s}});
    }

    /** The value of a JavaScript expression in the scope of the object. */
    QVariant run(const QString &expression)
    {
        QQmlExpression script(qmlContext(root.data()), root.data(), expression);
        const QVariant value = script.evaluate();
        if (script.hasError())
            qFatal("%s", qPrintable(script.error().toString()));
        return value;
    }

    void use(const DirectoryCatalogue &catalogue) { run("local.path = '%1'"_s.arg(catalogue.path())); }

    DirectoryCatalogue oak;
    DirectoryCatalogue fern;
    QQmlEngine engine;
    QScopedPointer<QObject> root;
};

} // namespace

class tst_QmlModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void types();
    void listFollowsThePath();
    void sourcesComeAndGoInAnyOrder();
    void serverTellsItsState();
    void picturesComeFromTheLoopback();
    void dataOfAReference();
    void textsAreTranslatedAnew();
    void databasesAreSources();
    void promptLayout();
};

void tst_QmlModule::types()
{
    // whether QML can make one | types
    for (const Row &row : rows(R"(
        yes | ManifestField ManifestBooleanField ManifestFileField ManifestSizeField ManifestStringField HasKeyword
              HasManifestField MatchesKeywordSearch PackageMatcherGroup SortByIntegerField SortByStringField
              CategoryListModel KeywordSuggestionModel PackageListModel Keyword PackageData PackageProvider LocalSource
              PackageServerSource CouchDBSource DocumentSource PackageReferenceField
        no  | PackageMatcher PackageSorter SortByField PackageReference PackageSourceElement PromptLayout)")) {
        QQmlEngine engine;
        for (const QString &type : row[1].split(" "_s)) {
            QQmlComponent component(&engine);
            component.setData("import Tamsel.PackageManager 1.0\n" + type.toLatin1() + "{}", QUrl());
            const QScopedPointer<QObject> object(component.isReady() ? component.create() : nullptr);
            QVERIFY2(object.isNull() == (row[0] == "no"_s), qPrintable(type + component.errorString()));
        }
    }
}

void tst_QmlModule::listFollowsThePath()
{
    Scene scene(R"(
        Repeater {
            id: rows
            Item { property string text: [index, model.id, model.title, model.picture].join() }
            model: PackageListModel {
                packageProvider: provider
                packageType: "plant"
                sorter: SortByStringField { name: "title" }
                ManifestStringField { name: "title" }
                ManifestFileField { name: "picture" }
            }
        }
        function texts() { return Array.from({ length: rows.count }, (_, i) => rows.itemAt(i).text).join(" ") })");
    const QString oak = "oak,Oak,file://%1/packages/plant/tree/oak/oak.png"_s.arg(scene.oak.path());
    QCOMPARE(scene.run("provider.ready || local.exists"_s), QVariant(false));
    scene.use(scene.oak);
    QTRY_COMPARE(scene.run("texts()"_s).toString(), "0,"_s + oak);
    QCOMPARE(scene.run("[provider.ready, local.exists, provider.packageCount].join()"_s).toString(),
             "true,true,1"_s);
    scene.run("local.path = 'file://%1'"_s.arg(scene.fern.path()));
    QTRY_COMPARE(scene.run("texts()"_s).toString(), "0,fern,Fern,"_s);
    QCOMPARE(scene.run("local.path"_s).toString(), scene.fern.path());
    scene.fern.writePackage("plant"_s, "elm"_s, {{"title"_s, "Elm"_s}});
    scene.run("provider.update()"_s);
    QTRY_COMPARE(scene.run("texts()"_s).toString(), "0,elm,Elm, 1,fern,Fern,"_s);
    scene.run("local.path = '/nowhere'"_s);
    QTRY_COMPARE(scene.run("texts()"_s).toString(), QString());
    QCOMPARE(scene.run("local.exists"_s), QVariant(false));
}

void tst_QmlModule::sourcesComeAndGoInAnyOrder()
{
    Scene scene(R"(
        property int changes: 0
        property var other: PackageProvider { onSourcesChanged: ++changes }
        property var first: LocalSource {}
        property var second: LocalSource {}
        function counts() { return provider.packageCount + "/" + other.packageCount })");
    scene.use(scene.oak);
    scene.run("first.path = '%1', other.sources = [first, second]"_s.arg(scene.fern.path()));
    QTRY_COMPARE(scene.run("counts()"_s).toString(), "1/1"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("This source is in use already"_s));
    scene.run("provider.sources.push(first)"_s);
    QCOMPARE(scene.run("[provider.sources.length, other.sources.length].join()"_s).toString(), "1,2"_s);
    scene.run("second.path = local.path"_s);
    QTRY_COMPARE(scene.run("counts()"_s).toString(), "1/2"_s);
    delete scene.run("first"_s).value<QObject *>();
    QTRY_COMPARE(scene.run("counts()"_s).toString(), "1/1"_s);
    QCOMPARE(scene.run("[other.sources.length, changes].join()"_s).toString(), "1,3"_s);
    scene.run("other.sources = [], provider.sources.push(second)"_s); // let go, it can be used again
    QTRY_COMPARE(scene.run("counts()"_s).toString(), "1/0"_s);
    delete scene.run("provider"_s).value<QObject *>();
    scene.run("second.path = '', other.sources.push(second), second.path = '%1'"_s.arg(scene.fern.path()));
    QTRY_COMPARE(scene.run("other.packageCount"_s).toInt(), 1);
}

void tst_QmlModule::serverTellsItsState()
{
    ScriptedServer http;
    Scene scene(R"(
        property var log: []
        PackageServerSource { id: remote; token: "secret"; onStatusChanged: log.push(status) }
        function use(url) { remote.url = url; provider.sources.push(remote) })");
    http.setAnswer("/api/v1/ledger", HttpAnswer::with(401));
    scene.run("use('%1')"_s.arg(http.url().toString()));
    QTRY_COMPARE(scene.run("log.join()"_s).toString(), "1,4"_s); // connecting, unreachable
    QCOMPARE(http.requests().last().headers.value("authorization"), QByteArray("Bearer secret"));
    http.setAnswer("/api/v1/ledger", HttpAnswer::with(200, "no ledger"));
    scene.run("remote.token = ''; remote.user = 'me'; remote.password = 'x'; provider.refresh()"_s);
    QTRY_COMPARE(scene.run("log.join()"_s).toString(), "1,4,5"_s); // untrusted
    QCOMPARE(http.requests().last().headers.value("authorization"), "Basic " + QByteArray("me:x").toBase64());
    http.setAnswer("/other/api/v1/ledger", HttpAnswer::with(304));
    scene.run("remote.url += 'other/'"_s);
    QTRY_COMPARE(scene.run("log.join()"_s).toString(), "1,4,5,1,2"_s); // ready
    scene.run("remote.url = 'file:///other'"_s);
    QTRY_COMPARE(scene.run("log.join()"_s).toString(), "1,4,5,1,2,1,3"_s); // invalid
    scene.run("remote.url = ''"_s);
    QCOMPARE(scene.run("log.join()"_s).toString(), "1,4,5,1,2,1,3,0"_s);
    QCOMPARE(http.requests().size(), 3);
}

void tst_QmlModule::databasesAreSources()
{
    ScriptedServer http;
    http.setHandler([](const HttpRequest &) {
        return HttpAnswer::with(200, R"({"rows":[{"key":["package"],"value":{"_id":"package:oak"},)"
                                     R"("doc":{"_id":"owl","name":"Owl"}}]})");
    });
    Scene scene(R"(
        CouchDBSource { id: catalogue }
        DocumentSource { id: birds; database: "db"; documentType: "bird" }
        function use(url) {
            catalogue.url = url + "db/"; birds.serviceUrl = url
            provider.sources = [catalogue, birds]; provider.refresh()
        })");
    scene.run("use('%1')"_s.arg(http.url().toString()));
    QTRY_COMPARE(scene.run("provider.packageCount"_s).toInt(), 2);
    QCOMPARE(scene.run("provider.packageReference('owl').manifestField('name')"_s).toString(), "Owl"_s);
    for (const HttpRequest &request : http.requests())
        QVERIFY2(request.path.startsWith("/db/_design/"), request.path.constData());
    scene.run("birds.documentType = ''"_s);
    QTRY_COMPARE(scene.run("provider.packageCount"_s).toInt(), 1);
    delete scene.run("catalogue"_s).value<QObject *>();
    QTRY_COMPARE(scene.run("provider.packageCount"_s).toInt(), 0);
}

void tst_QmlModule::picturesComeFromTheLoopback()
{
    struct LateFiles : IFileProxy
    {
        // Not before the client has had the time to ask for more over the same connection.
        void requestFile(const QUrl &url) override
        {
            QTimer::singleShot(1, [this, url] { server.resolveFile(key, url, 200, picture); });
        }

        FileProxyServer server;
        const QString key = server.install(this);
        QString picture;
    } files;
    const DirectoryCatalogue place;
    files.picture = place.path() + "/picture.png"_s;
    QVERIFY(QImage(1, 1, QImage::Format_RGB32).save(files.picture));
    Scene scene(R"(
        property string base
        Repeater { id: pictures; model: base ? 40 : 0; Image { asynchronous: true; source: base + index } }
        function ready() { return Array.from({ length: 40 }, (_, i) => pictures.itemAt(i).status).join("") })");
    scene.run("base = '%1'"_s.arg(files.server.fileUrl(files.key, QUrl("picture"_s)).toString()));
    QTRY_COMPARE(scene.run("ready()"_s).toString(), QString(40, QLatin1Char('1')));
}

void tst_QmlModule::dataOfAReference()
{
    Scene scene(R"(
        property var values: PackageData {
            packageReference: provider.packageReference("oak")
            ManifestStringField { name: "title"; defaultValue: "none" }
            ManifestFileField { name: "picture" }
        }
        function text() { return [values.$.title, values.manifest.picture, values.packageReference.status].join() })");
    const QPointer<QObject> oak = scene.run("provider.packageReference('oak')"_s).value<QObject *>();
    QCOMPARE(scene.run("text()"_s).toString(), "none,,-3"_s);
    scene.use(scene.oak);
    QTRY_COMPARE(scene.run("values.packageReference.status == PackageReference.Installed"_s), QVariant(true));
    QVERIFY(scene.run("text()"_s).toString().startsWith("Oak,file:///"_s));
    QVERIFY(QFile::exists(scene.run("values.$.picture"_s).toUrl().toLocalFile()));
    scene.run("values.$.title = 'written'"_s);
    QCOMPARE(scene.run("typeof values.$.title"_s).toString(), "undefined"_s);
    scene.run("values.packageReference = null"_s);
    scene.engine.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(oak && !scene.run("provider.packageReference('')"_s).value<QObject *>());
    QCOMPARE(scene.run("provider.packageReference('oak')"_s).value<QObject *>(), oak.data());
}

void tst_QmlModule::textsAreTranslatedAnew()
{
    Scene scene(R"(
        property string text: qsTrId("greeting")
        property int changes: 0
        Connections { target: provider; function onTranslationsChanged() { ++changes } })");
    QFile greeting(QStringLiteral(GREETING));
    QVERIFY(greeting.open(QIODevice::ReadOnly));
    scene.oak.writePackage("translation"_s, "words"_s, {{"en"_s, "greeting.qm"_s}});
    scene.oak.writeFile("packages/translation/words/greeting.qm"_s, greeting.readAll());
    QCOMPARE(scene.run("text"_s).toString(), "greeting"_s);
    scene.use(scene.oak);
    QTRY_COMPARE(scene.run("text"_s).toString(), "Hallo"_s);
    QVERIFY(scene.run("changes"_s).toInt() > 0);
}

void tst_QmlModule::promptLayout()
{
    Scene scene(R"(
        id: view
        property int layouts: 0
        property var model: ListModel { id: list }
        function forceLayout() { ++layouts }
        function append(count) {
            for (let i = 0; i < count; ++i)
                list.append({ name: "row" })
            return layouts
        })");
    QCOMPARE(scene.run("append(600)"_s).toInt(), 0);
    QCOMPARE(scene.run("PromptLayout.enabled = true, append(600)"_s).toInt(), 2);
    QCOMPARE(scene.run("PromptLayout.enabled = false, append(600)"_s).toInt(), 2);
    QCOMPARE(scene.run("PromptLayout.enabled = true, list.clear(), append(300)"_s).toInt(), 3);
    QCOMPARE(scene.run("model = null, append(600)"_s).toInt(), 3);
    QCOMPARE(scene.run("model = list, append(600)"_s).toInt(), 5);
}

QTEST_MAIN(tst_QmlModule)
#include "tst_qmlmodule.moc"
