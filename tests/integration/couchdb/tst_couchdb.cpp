// The database sources against a real server: listing, changes, attachments, and a server that goes and
// returns.

#include "database/couchdbpackagesource.h"
#include "database/documentpackageloader.h"
#include "database/documentpackagesource.h"
#include "index/packageindex.h"
#include "index/packagenode.h"
#include "integration/childprocess.h"
#include "presentation/packagereference.h"
#include "repository/localpackagesource.h"
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

    [[nodiscard]] bool rebuild() { return provider.rebuild(); }

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
    void init() { QVERIFY(server.start()); }
    void cleanup() { server.stop(); }

    void followsTheDatabase();
    void readsDocuments();
    void uploadsWhatIsNew();
    void offersTheSampleCatalogue();

private:
    // What the publisher's command tells of an upload, in numbers: documents that were written, unchanged,
    // deleted, and left that are not in the catalogue. Empty if it fails.
    QString upload(const QString &directory, const QStringList &options = {})
    {
        ChildProcess command;
        const QStringList arguments{"couchdb"_s, "--url"_s, server.url("/db"_s).toString(), directory};
        command.start(QStringLiteral(TAMSEL_LEDGER), arguments + options);
        if (!command.waitForFinished(patience) || command.exitStatus() != QProcess::NormalExit
            || command.exitCode() != 0)
            return QString();
        const QString output = QString::fromUtf8(command.readAllStandardOutput());
        return QString(output).remove(QRegularExpression("[^0-9 ]"_s)).simplified();
    }

    // Brings the catalogue, and nothing else, into the database, and with it the views.
    bool publish(const QString &directory)
    {
        server.ask("PUT", QString()); // fails if the database is there
        return !upload(directory, {"--prune"_s}).isEmpty();
    }

    Server server;
};

void tst_CouchDB::followsTheDatabase()
{
    const QMap<QString, QByteArray> files{{"plain.txt"_s, "owl"},        {"a b"_s, "blank"},
                                          {"\u00fc\u65e5"_s, "letters"}, {"100%25"_s, "percent"},
                                          {"q?#&+;:"_s, "signs"},        {"twin"_s, "owl"}};
    DirectoryCatalogue catalogue;
    catalogue.writePackage("hike"_s, "empty"_s);
    catalogue.writePackage("hike"_s, "trail"_s, {{"title"_s, "old"_s}});
    for (auto content = files.begin(); content != files.end(); ++content)
        catalogue.writeFile("packages/hike/trail/"_s + content.key(), content.value());
    // Names of attachments can have slashes, those of files cannot.
    const QByteArray nested = R"({"a b/c?":{"content_type":"application/octet-stream","data":"ZGVlcA=="}})";
    const QJsonObject deep{{"packageType"_s, "hike"_s},
                           {"_attachments"_s, QJsonDocument::fromJson(nested).object()}};
    QVERIFY(publish(catalogue.path()) && server.put("package:deep"_s, deep));

    PackageContext context(server.url(), "db"_s);
    auto source = std::make_unique<CouchDBPackageSource>(server.url("/db"_s), &server.manager);
    context.packageRepository()->addSource(source.get());
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), "deep empty trail"_s, patience);

    const PackageReference *trail = context.packageReference("trail"_s);
    QTRY_COMPARE_WITH_TIMEOUT(trail->status(), PackageReference::Installed, patience);
    for (auto content = files.begin(); content != files.end(); ++content)
        QCOMPARE(readFile(trail->installLocation().pathToFile(content.key())), content.value());
    QTRY_COMPARE_WITH_TIMEOUT(context.packageReference("empty"_s)->status(), PackageReference::Installed,
                              patience);
    {
        const LogCapture log("tamsel.packages"_s);
        const PackageReference *reference = context.packageReference("deep"_s);
        QTRY_COMPARE(reference->status(),
                     PackageReference::Incomplete); // without directories to install into
        const QUrl url = reference->fileUrl("a b/c?"_s);
        QCOMPARE(server.ask("GET", url.path(QUrl::FullyEncoded).mid(3)), QByteArray("deep"));
    }

    catalogue.writePackage("hike"_s, "trail"_s, {{"title"_s, "new"_s}});
    catalogue.writeFile("packages/hike/trail/plain.txt"_s, "wren");
    QVERIFY(publish(catalogue.path())); // takes away what the catalogue does not have
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), "empty trail"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(trail->manifestField("title"_s), QJsonValue("new"_s), patience);
    QCOMPARE(readFile(trail->installLocation().pathToFile("plain.txt"_s)), QByteArray("wren"));

    // The server goes, the application is started again, the server returns with other data, the database
    // goes.
    server.stop();
    const LogCapture log("tamsel.package.couchdb"_s);
    const auto lines = [&log] { return log.lines().filter("critical"_s).size(); };
    source->update();
    QTRY_COMPARE_WITH_TIMEOUT(lines(), 1, patience);
    source->persist();
    context.packageRepository()->removeSource(source.get());
    source = std::make_unique<CouchDBPackageSource>(server.url("/db"_s), &server.manager);
    PackageContext restarted(server.url(), "db"_s);
    restarted.packageRepository()->addSource(source.get());
    QTRY_COMPARE_WITH_TIMEOUT(restarted.ids(), "empty trail"_s, patience);
    QVERIFY(server.start() && publish(catalogue.path()) && server.put("package:deep"_s, deep));
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
    DirectoryCatalogue catalogue;
    catalogue.writePackage("bird"_s, "raven"_s);
    QVERIFY(publish(catalogue.path()));
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

void tst_CouchDB::uploadsWhatIsNew()
{
    DirectoryCatalogue catalogue;
    catalogue.writePackage("plant/tree"_s, "oak"_s, {{"title"_s, "Eiche"_s}, {"year"_s, 1753}});
    for (const QString &name : {"edited"_s, "kept"_s, "removed"_s})
        catalogue.writeFile("packages/plant/tree/oak/"_s + name, "old");
    catalogue.writeFile("dictionary/tree.json"_s, R"({"type":"noun","strings":{
        "en":[{"sg":"tree","pl":"trees"},{"sg":"wood"}],"de":[{"sg":"","pl":"B\u00e4ume"}]}})");
    catalogue.writeFile("dictionary/latin.json"_s, R"({"type":"literal","string":"Quercus"})");
    catalogue.writeLink("tree"_s, "requires"_s, "oak"_s);
    catalogue.writeLink("oak"_s, "is_a"_s, "tree"_s);
    QCOMPARE(upload(catalogue.path()), QString()); // there is no database
    server.ask("PUT", QString());
    QCOMPARE(upload(catalogue.path()), "7 0 0 0"_s);
    QCOMPARE(upload(catalogue.path()), "0 7 0 0"_s);
    for (const char *json : {R"({"_id":"package:oak","packageType":"plant:tree",
                                 "manifest":{"title":"Eiche","year":1753}})",
                             R"({"_id":"keyword:tree","keywordType":"noun","strings":{
                                 "en":[{"sg":"tree","pl":"trees"},{"sg":"wood","pl":""}],
                                 "de":[{"sg":"","pl":"B\u00e4ume"}]}})",
                             R"({"_id":"keyword:latin","keywordType":"literal","string":"Quercus"})",
                             R"({"_id":"link:oak:is_a:tree","from":"oak","to":"tree","linkType":"is_a"})"}) {
        const QJsonObject expected = QJsonDocument::fromJson(json).object();
        QJsonObject document = server.document(expected["_id"_s].toString());
        for (const QString &key : {"_rev"_s, "_attachments"_s})
            document.remove(key);
        QCOMPARE(document, expected);
    }

    catalogue.writeFile("packages/plant/tree/oak/edited"_s, "new");
    QVERIFY(QFile::remove(catalogue.path() + "/packages/plant/tree/oak/removed"_s));
    QVERIFY(QFile::remove(catalogue.path() + "/links/1.json"_s));
    QCOMPARE(upload(catalogue.path()), "1 5 0 1"_s);
    QCOMPARE(server.ask("GET", "/package:oak/edited"_s), QByteArray("new"));
    const QJsonObject files = server.document("package:oak"_s)["_attachments"_s].toObject();
    QCOMPARE(files.keys().join(" "_s), "edited kept"_s);
    QCOMPARE(files["kept"_s].toObject()["revpos"_s].toInt(), 1); // has not been sent again
    QCOMPARE(upload(catalogue.path(), {"--prune"_s}), "0 6 1 0"_s);
    QVERIFY(server.document("link:tree:requires:oak"_s).isEmpty());
}

void tst_CouchDB::offersTheSampleCatalogue()
{
    QVERIFY(publish(QStringLiteral(SAMPLE_CATALOGUE)));
    PackageContext context(server.url(), "db"_s);
    CouchDBPackageSource source(server.url("/db"_s), &server.manager);
    context.packageRepository()->addSource(&source);
    source.update();
    PackageContext local{QUrl(), QString()};
    LocalPackageSource localSource(QStringLiteral(SAMPLE_CATALOGUE));
    local.packageRepository()->addSource(&localSource);
    QVERIFY(local.rebuild() && local.ids().size() > 1000);
    QTRY_COMPARE_WITH_TIMEOUT(context.ids(), local.ids(), patience);
}

QTEST_GUILESS_MAIN(tst_CouchDB)
#include "tst_couchdb.moc"
