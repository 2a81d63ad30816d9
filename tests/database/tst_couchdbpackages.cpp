#include "database/couchdbpackageaccessor.h"
#include "storage/filestore.h"
#include "storage/packageinstaller.h"
#include "support/accessors.h"
#include "support/files.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/logcapture.h"

#include <Tamsel/Request>

#include <QNetworkAccessManager>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

QJsonObject digestOf(const QByteArray &content)
{
    const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Md5);
    return {{"digest"_s, QString::fromLatin1("md5-" + digest.toBase64())}};
}

/** The row of a package with those attachments. */
QByteArray rowOf(const QString &id, const QJsonObject &attachments)
{
    const QJsonObject package{{"_id"_s, id}, {"_attachments"_s, attachments}};
    return QJsonDocument({{"key"_s, QJsonArray{"package"_s}}, {"value"_s, package}}).toJson();
}

} // namespace

class tst_CouchDBPackages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsRows()
    {
        const auto accessor = accessorOn(R"(
            {"key":["package",1],"value":{"_id":"package:oak","_rev":"2-b","packageType":"a:b","manifest":{"x":1}}},
            {"key":["keyword"],"value":{"_id":"12345678owl","keywordType":"noun",
                "strings":{"de":[{"sg":"Eule","pl":"Eulen"}],"en":[{"sg":"owl"},7]}}},
            {"key":["keyword"],"value":{"_id":"keyword-kit","keywordType":"category","strings":{"en":["red","kite"]}}},
            {"key":["keyword"],"value":{"_id":"keyword-1m","keywordType":"literal","string":"1 m","strings":{"en":["x"]}}},
            {"key":["keyword"],"value":{"_id":"keyword-bad","keywordType":"Noun","strings":{"en":["x"]}}},
            {"key":["link"],"value":{"from":"oak","to":"owl","linkType":"contains"}},
            {"key":[],"value":{"from":"a"}}, {"value":{"to":"b"}}, {"key":"package","value":{"linkType":"is"}}, 7,
            {"key":["package"],"value":[]}, {"key":["package"],"value":{"_id":"short"}})");
        QCOMPARE(recordsOf(*accessor).join("\n"_s), R"(a:b/oak {"x":1} 2-b
/ {}
/ {}
owl 0, de=Eule/Eulen, en=owl/, en=/
kit 4, en=red/, en=kite/
1m 3, =1 m/
bad -1
oak 1 owl
a -1
-1 b
4
-1)"_s);
        QCOMPARE(accessor->keywordLanguages(), (QStringList{"de"_s, "en"_s}));
        for (const QString &name : {"a b.png"_s, "x@2x.png"_s, "map [1] (2),!$&';=*.png"_s, "sub/\u00fc"_s})
            QCOMPARE(accessor->packageFileUrl(0, name),
                     QUrl(database().toString() + "/package:oak/"_s + name));
    }

    // Names that a relative URL would take for a query, a fragment, a scheme, another host or another
    // directory, and as what they have to be asked for.
    void fetchesAttachmentsByTheirNames()
    {
        const QByteArray document = "/db/pa%2Fck%3Fe/";
        const QVector<QPair<QByteArray, QByteArray>> cases{
            {"plain.txt", "plain.txt"},
            {"a b\xc3\xbc.txt", "a%20b%C3%BC.txt"},
            {"100%25", "100%2525"},
            {"q?x=1", "q%3Fx=1"},
            {"#f", "%23f"},
            {"http://h/x", "http:%2F%2Fh%2Fx"},
            {"file:x", "file:x"},
            {"//h/x", "%2F%2Fh%2Fx"},
            {"a/../../b", "a%2F..%2F..%2Fb"},
            {"..hidden", "..hidden"},
            {"+&;=", "%2B&;="},
            {"[x@2x] (1),b!$'*", "[x@2x]%20(1),b!$'*"},
        };
        QJsonObject attachments{{".."_s, digestOf("")}};
        for (const auto &[name, path] : cases) {
            attachments.insert(QString::fromUtf8(name), digestOf(document + path));
            server.setAnswer(document + path, HttpAnswer::with(200, document + path));
        }
        const auto accessor = accessorOn(rowOf("pa/ck?e"_s, attachments));
        const QString result = install(*accessor, 0);
        QVERIFY2(result.startsWith("%1 requests;"_s.arg(cases.size())), qPrintable(result));
        QVERIFY2(result.contains("\n1 Download of  failed with code 0, error 301\n"_s), qPrintable(result));
        for (const auto &[name, path] : cases) {
            QVERIFY2(server.count(document + path) == 1, path.constData());
            if (!name.contains('/'))
                QCOMPARE(readFile(location.pathToFile(QString::fromUtf8(name))), document + path);
        }
        for (const char *nowhere : {"", ".", ".."}) {
            const auto lost = accessorOn(rowOf(QLatin1String(nowhere), {{"x"_s, digestOf("x")}}));
            QVERIFY(install(*lost, 0).startsWith("0 requests;"_s));
        }
    }

    void installsWhatIsGood()
    {
        for (const char *path : {"/db/p/good", "/db/p/twin"})
            server.setAnswer(path, HttpAnswer::with(200, "owl"));
        server.setAnswer("/db/p/false", HttpAnswer::with(200, "fox"));
        const QByteArray rows = R"(
            {"key":["package"],"value":{"_id":"p","_attachments":{"good":OWL,"twin":OWL}}},
            {"key":["package"],"value":{"_id":"p","_attachments":{"good":OWL,"gone":{"digest":"md5-QUJDREVGR0g="},
                "false":{"digest":"md5-QUJDREVGR0g="},"odd":{"digest":"md5-!"},"none":{},"bad":7}}},
            {"key":["package"],"value":{"_id":"p"}})";
        const QByteArray digest = QJsonDocument(digestOf("owl")).toJson();
        const auto accessor = accessorOn(QByteArray(rows).replace("OWL", digest));
        QCOMPARE(install(*accessor, 0), "2 requests; good twin; status 1"_s);
        QCOMPARE(install(*accessor, 0), "0 requests; good twin; status 1"_s);
        QCOMPARE(install(*accessor, 2), "0 requests; ; status 1"_s);
        QCOMPARE(install(*accessor, 1), R"(2 requests; false gone good; status -1
1 Download of gone failed with code 404, error 203
2 Commit of file 4142434445464748 (false) failed (code 2)
3 Failed to install file bad ()
3 Failed to install file none ()
3 Failed to install file odd ())"_s);
    }

    // Nothing is stored before the last download has ended.
    void goesAwayInTheMiddle()
    {
        const QByteArray content = "on its way";
        server.setAnswer("/db/p/fast", HttpAnswer::with(200, content));
        server.setAnswer("/db/p/slow",
                         {"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", HttpAnswer::Stall, {}});
        const QJsonObject attachments{{"fast"_s, digestOf(content)}, {"slow"_s, digestOf("never")}};
        const auto accessor = accessorOn(rowOf("p"_s, attachments));
        std::unique_ptr<PackageInstaller> installer(accessor->packageInstaller(0, location));
        QTRY_COMPARE(installer->findChildren<ts::Request *>().size(), 1);
        installer.reset();
        QCoreApplication::processEvents();
        QVERIFY(!FileStore::defaultStore()->contains(idOf(content, QCryptographicHash::Md5)));
    }

private:
    /** An accessor on the given rows of a view, which is on the database "db" of the server. */
    std::unique_ptr<CouchDBPackageAccessor> accessorOn(const QByteArray &rows)
    {
        ListingFile listing;
        listing.directory.emplace();
        listing.path = listing.directory->filePath("listing"_s);
        if (!writeFile(listing.path, R"({"rows":[)" + rows + "]}"))
            qFatal("cannot write the listing");
        auto accessor = std::make_unique<CouchDBPackageAccessor>(database(), listing, &manager);
        accessor->initialize();
        return accessor;
    }

    /** The requests that the install of a package makes, and what comes of it. */
    QString install(const CouchDBPackageAccessor &accessor, int package)
    {
        const LogCapture log("tamsel.packages"_s);
        location = InstallLocation::createRoot();
        const int before = server.requests().size();
        const QString outcome = test::install(accessor, package, location);
        return "%1 requests; "_s.arg(server.requests().size() - before)
               + QString(outcome).remove(server.url("/db/p/"_s).toString());
    }

    /** With a user, whom no message names. */
    QUrl database() const
    {
        QUrl url = server.url("/db"_s);
        url.setUserInfo("user:word"_s);
        return url;
    }

    ScriptedServer server;
    QNetworkAccessManager manager;
    InstallLocation location = InstallLocation::createRoot();
};

QTEST_GUILESS_MAIN(tst_CouchDBPackages)
#include "tst_couchdbpackages.moc"
