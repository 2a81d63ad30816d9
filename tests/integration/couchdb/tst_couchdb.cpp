// The database sources and the publisher's upload against a real server.

#include "database/couchdbpackagesource.h"
#include "database/documentpackageloader.h"
#include "database/documentpackagesource.h"
#include "index/packageindex.h"
#include "index/packagenode.h"
#include "integration/childprocess.h"
#include "presentation/packagereference.h"
#include "support/directorycatalogue.h"
#include "support/files.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/testprovider.h"

#include <TamselDataCore/Context>
#include <TamselDataCore/LinkedDocument>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int patience = 60000; // milliseconds; the server and the publisher's command are slow to start

/** The server, empty at its start, and with a database "db" that the test writes to. */
class Server
{
public:
    [[nodiscard]] bool start()
    {
        process.start(QStringLiteral(NODE), {QStringLiteral(SERVER), port});
        port = process.nextLine();
        return !port.isEmpty();
    }
    void stop() { process.end(); }

    QUrl url(const QString &path = QString()) const { return QUrl("http://localhost:"_s + port + path); }

    /** What the server answers to a request for \a path below the database; empty unless it is a success. */
    QByteArray ask(const QByteArray &method, const QString &path, const QJsonObject &json = {})
    {
        QNetworkRequest request(url("/db"_s + path));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_s);
        const std::unique_ptr<QNetworkReply> reply(
            manager.sendCustomRequest(request, method, QJsonDocument(json).toJson()));
        QSignalSpy finished(reply.get(), &QNetworkReply::finished);
        const bool succeeds = finished.wait(patience) && reply->error() == QNetworkReply::NoError;
        return succeeds ? reply->readAll() : QByteArray();
    }

    QJsonObject document(const QString &id)
    {
        return QJsonDocument::fromJson(ask("GET", "/"_s + id)).object();
    }

    /** Writes the document \a id with the given members, on top of the revision that is there. */
    [[nodiscard]] bool put(const QString &id, QJsonObject members)
    {
        if (const QJsonValue revision = document(id).value("_rev"_s); revision.isString())
            members.insert("_rev"_s, revision);
        return !ask("PUT", "/"_s + id, members).isEmpty();
    }

    QNetworkAccessManager manager;

private:
    ChildProcess process;
    QString port = "0"_s;
};

/** A data context with packages of its own. */
class PackageContext : public ts::data::Context, public IPackageProvider
{
    Q_OBJECT
    Q_INTERFACES(ts::pm::IPackageProvider)

public:
    using Context::Context;
    PackageRepository *packageRepository() const override { return provider.packageRepository(); }
    PackageReference *packageReference(const QString &id) override { return provider.packageReference(id); }

    bool rebuild() { return provider.rebuild(); }

    QString ids() const
    {
        QStringList ids;
        for (const PackageNode *node :
             PackageIndex::selectPackages(packageRepository()->packageIndex(), {}, {}, {}))
            ids << node->id().toString();
        ids.sort();
        return ids.join(" "_s);
    }

private:
    TestProvider provider;
};

} // namespace

class tst_CouchDB : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QVERIFY(server.start() && !server.ask("PUT", QString()).isEmpty()); }
    void cleanup() { server.stop(); }

    void writesDocuments();
    void followsTheDatabase();
    void readsDocuments();

private:
    // What the publisher's command tells of an upload, in numbers: documents that were written, unchanged,
    // deleted, and left that are not in the catalogue. Empty if it fails.
    QString upload(const QStringList &options = {}) const
    {
        ChildProcess command;
        const QString url = server.url("/db"_s).toString();
        command.start(QStringLiteral(TAMSEL_LEDGER),
                      QStringList{"couchdb"_s, "--url"_s, url, catalogue.path()} + options);
        if (!command.waitForFinished(patience) || command.exitStatus() != QProcess::NormalExit
            || command.exitCode() != 0)
            return QString();
        const QString output = QString::fromUtf8(command.readAllStandardOutput());
        return QString(output).remove(QRegularExpression("[^0-9 ]"_s)).simplified();
    }

    Server server;
    DirectoryCatalogue catalogue;
    const QString trailPath = "packages/hike/trail/"_s;
    const QMap<QString, QByteArray> files{{"plain.txt"_s, "owl"},        {"a b"_s, "blank"},
                                          {"\u00fc\u65e5"_s, "letters"}, {"100%25"_s, "percent"},
                                          {"q?#&+;:"_s, "signs"},        {"twin"_s, "owl"}};
};

void tst_CouchDB::initTestCase()
{
    catalogue.writePackage("hike"_s, "empty"_s);
    catalogue.writePackage("hike"_s, "trail"_s, {{"title"_s, "old"_s}, {"year"_s, 1753}});
    for (auto content = files.begin(); content != files.end(); ++content)
        catalogue.writeFile(trailPath + content.key(), content.value());
    catalogue.writeFile("dictionary/way.json"_s, R"({"type":"noun","strings":{
        "en":[{"sg":"way","pl":"ways"},{"sg":"path"}],"de":[{"sg":"","pl":"G\u00e4nge"}]}})");
    catalogue.writeFile("dictionary/latin.json"_s, R"({"type":"literal","string":"Via"})");
    catalogue.writeLink("way"_s, "requires"_s, "trail"_s);
    catalogue.writeLink("trail"_s, "is_a"_s, "way"_s);
}

void tst_CouchDB::writesDocuments()
{
    QCOMPARE(upload(), "8 0 0 0"_s);
    QCOMPARE(upload(), "0 8 0 0"_s);
    const QJsonArray documents = QJsonDocument::fromJson(R"([
        {"_id":"package:trail","packageType":"hike","manifest":{"title":"old","year":1753}},
        {"_id":"keyword:way","keywordType":"noun","strings":{
            "en":[{"sg":"way","pl":"ways"},{"sg":"path","pl":""}],"de":[{"sg":"","pl":"G\u00e4nge"}]}},
        {"_id":"keyword:latin","keywordType":"literal","string":"Via"},
        {"_id":"link:trail:is_a:way","from":"trail","to":"way","linkType":"is_a"}])")
                                     .array();
    for (const QJsonValue &expected : documents) {
        QJsonObject document = server.document(expected["_id"_s].toString());
        for (const QString &key : {"_rev"_s, "_attachments"_s})
            document.remove(key);
        QCOMPARE(document, expected.toObject());
    }

    // More than fits into one request.
    constexpr int size = 4 << 20;
    for (const QString &id : {"map1"_s, "map2"_s, "map3"_s}) {
        catalogue.writePackage("maps"_s, id);
        catalogue.writeFile("packages/maps/%1/map"_s.arg(id), QByteArray(size, '.'));
    }
    QCOMPARE(upload(), "3 8 0 0"_s);
    QVERIFY(QDir(catalogue.path() + "/packages/maps"_s).removeRecursively());
    for (const QString &id : {"package:map1"_s, "package:map2"_s, "package:map3"_s})
        QCOMPARE(QJsonValue(server.document(id))["_attachments"_s]["map"_s]["length"_s].toInt(), size);
}

void tst_CouchDB::followsTheDatabase()
{
    // Names of attachments can have slashes, those of files cannot.
    const QByteArray nested = R"({"a b/c?":{"content_type":"application/octet-stream","data":"ZGVlcA=="}})";
    const QJsonObject deep{{"packageType"_s, "hike"_s},
                           {"_attachments"_s, QJsonDocument::fromJson(nested).object()}};
    QVERIFY(!upload().isEmpty() && server.put("package:deep"_s, deep));

    PackageContext context(server.url(), "db"_s);
    auto source = std::make_unique<CouchDBPackageSource>(server.url("/db"_s), &server.manager);
    context.packageRepository()->addSource(source.get());
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), "deep empty trail"_s, patience);
    const PackageReference *trail = context.packageReference("trail"_s);
    const PackageReference *empty = context.packageReference("empty"_s);
    QTRY_COMPARE_WITH_TIMEOUT(trail->status(), PackageReference::Installed, patience);
    QTRY_COMPARE_WITH_TIMEOUT(empty->status(), PackageReference::Installed, patience);
    for (auto content = files.begin(); content != files.end(); ++content)
        QCOMPARE(readFile(trail->installLocation().pathToFile(content.key())), content.value());
    {
        const LogCapture log("tamsel.packages"_s);
        const PackageReference *reference = context.packageReference("deep"_s);
        QTRY_COMPARE(reference->status(),
                     PackageReference::Incomplete); // without directories to install into
        const QUrl url = reference->fileUrl("a b/c?"_s);
        QCOMPARE(server.ask("GET", url.path(QUrl::FullyEncoded).mid(3)), QByteArray("deep"));
    }

    catalogue.writePackage("hike"_s, "trail"_s, {{"title"_s, "new"_s}});
    catalogue.writeFile(trailPath + "plain.txt"_s, "wren");
    for (const QString &name : {trailPath + "a b"_s, "links/1.json"_s})
        QVERIFY(QFile::remove(catalogue.path() + "/"_s + name));
    QCOMPARE(upload(), "1 6 0 2"_s);
    const QJsonObject attachments = server.document("package:trail"_s)["_attachments"_s].toObject();
    QCOMPARE(attachments.size(), files.size() - 1);
    QCOMPARE(attachments["twin"_s].toObject()["revpos"_s].toInt(), 1); // has not been sent again
    QCOMPARE(upload({"--prune"_s}), "0 7 2 0"_s);
    QVERIFY(server.document("link:way:requires:trail"_s).isEmpty());
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), "empty trail"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(trail->manifestField("title"_s), QJsonValue("new"_s), patience);
    QCOMPARE(readFile(trail->installLocation().pathToFile("plain.txt"_s)), QByteArray("wren"));

    // The server goes, the application is started again, the server returns with other data, the database
    // goes.
    server.stop();
    const LogCapture log("tamsel.package.couchdb"_s);
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(log.lines().filter("critical"_s).size(), 1, patience);
    source->persist();
    context.packageRepository()->removeSource(source.get());
    source = std::make_unique<CouchDBPackageSource>(server.url("/db"_s), &server.manager);
    PackageContext restarted(server.url(), "db"_s);
    restarted.packageRepository()->addSource(source.get());
    QTRY_COMPARE_WITH_TIMEOUT(restarted.ids(), "empty trail"_s, patience);
    QVERIFY(server.start());
    QCOMPARE(upload(), QString()); // there is no database
    QVERIFY(!server.ask("PUT", QString()).isEmpty() && !upload().isEmpty());
    QVERIFY(server.put("package:deep"_s, deep));
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(restarted.ids(), "deep empty trail"_s, patience);
    QVERIFY(!server.ask("DELETE", QString()).isEmpty());
    source->update();
    QTRY_VERIFY_WITH_TIMEOUT(source->children().isEmpty(), patience);
    QVERIFY(restarted.rebuild());
    QCOMPARE(restarted.ids(), "deep empty trail"_s);
}

void tst_CouchDB::readsDocuments()
{
    QVERIFY(!upload().isEmpty()); // and with it the views
    for (const char *id : {"wren", "owl"})
        QVERIFY(server.put(QString::fromLatin1(id), {{"type"_s, "bird"_s}, {"name"_s, "old"_s}}));
    QVERIFY(server.put("alder"_s, {{"type"_s, "bird2"_s}}) && server.put("elm"_s, {{"type"_s, "bir"_s}}));
    PackageContext context(server.url(), "db"_s);
    DocumentPackageSource source("bird"_s, &context);
    new DocumentPackageLoader("o"_s, &context);
    context.packageRepository()->addSource(&source);
    source.update();
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), "owl wren"_s, patience);
    QCOMPARE(context.packageReference("wren"_s)->type(), "compat:bird"_s);

    const ts::data::LinkedDocument *owl = context.openDocument("owl"_s);
    QCOMPARE(owl->getStructValue(QString(), "name"_s), QJsonValue("old"_s));
    QVERIFY(server.put("owl"_s, {{"type"_s, "bird"_s}, {"name"_s, "new"_s}})
            && server.put("wren"_s, {{"_deleted"_s, true}}));
    source.update();
    QTRY_COMPARE_WITH_TIMEOUT(owl->getStructValue(QString(), "name"_s), QJsonValue("new"_s), patience);
    QCOMPARE(context.ids(), "owl"_s);
    context.packageRepository()->removeSource(&source);
}

QTEST_GUILESS_MAIN(tst_CouchDB)
#include "tst_couchdb.moc"
