#include "server/packageserveraccessor.h"

#include "repository/packagerecords.h"
#include "servedledger.h"
#include "server/packageledger.h"
#include "storage/filestore.h"
#include "storage/packageinstaller.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QtConcurrentRun>
#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

/** What came of a URL, as in "200 content". */
QString fetch(const QUrl &url)
{
    QNetworkAccessManager manager;
    const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QSignalSpy(reply.data(), &QNetworkReply::finished).wait();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return QString::number(status) + QLatin1Char(' ') + QString::fromUtf8(reply->readAll());
}

/** The accessor of what a server has, beginning with the package "oak". */
class Stage
{
public:
    explicit Stage(const SignedLedger::Contents &files = {})
        : http(files)
        , service(new ReadyService(http))
    {
        open();
    }

    void open()
    {
        const auto parsed = QSharedPointer<PackageLedger>::create(http.ledger.toByteArray(), QByteArray());
        QVERIFY(parsed->valid);
        accessor.reset(new PackageServerAccessor(service.data(), parsed));
    }

    QUrl url(const QString &name, int package = 0) const { return accessor->packageFileUrl(package, name); }

    /** The URL of a path below the key of the accessor. */
    QUrl belowKey(const QString &path)
    {
        const QString known = url("picture"_s).toString();
        return QUrl(known.section(QLatin1Char('/'), 0, 3) + path);
    }

    /** Installs a package, and tells the status and the errors. */
    QString install(int package = 0)
    {
        const QString name = QUuid::createUuid().toString(QUuid::Id128);
        const InstallLocation location = InstallLocation::createRoot().subLocation(name);
        const QScopedPointer<PackageInstaller> job(accessor->packageInstaller(package, location));
        if (!QTest::qWaitFor([&] { return job->isFinished(); }))
            return "not finished"_s;
        installed = location.directory(false).entryList(QDir::Files | QDir::System, QDir::Name);
        QStringList lines;
        for (const InstallError &error : job->errors())
            lines.append("%1 %2"_s.arg(QString::number(error.code), error.message));
        lines.sort();
        lines.prepend(QString::number(job->status()));
        return lines.join(QLatin1Char('\n'));
    }

    ServedLedger http;
    QScopedPointer<ReadyService> service;
    QScopedPointer<PackageServerAccessor> accessor;
    QStringList installed;
};

} // namespace

class tst_PackageServerAccessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records()
    {
        Stage stage;
        SignedLedger &ledger = stage.http.ledger;
        ledger.addPackage("ash", "plant", "no manifest");
        ledger.addKeyword("tree", Keyword::Noun,
                          {{"en", {QByteArray("tree\0trees\0x", 12), "wood"}}, {"de", {"Baum"}}});
        ledger.addKeyword("odd", 5);
        std::swap(ledger.records.keywords[0].translations[0], ledger.records.keywords[0].translations[1]);
        stage.open();
        const PackageServerAccessor &accessor = *stage.accessor;

        const PackageInfo oak = accessor.packageInfo(0);
        QCOMPARE(accessor.packageCount(), 2);
        QCOMPARE(oak.id + QLatin1Char(' ') + oak.type, "oak plant:tree"_s);
        QCOMPARE(oak.revision.toLatin1(), ledger.records.packages[0].signature.left(24).toBase64());
        QCOMPARE(accessor.packageManifest(0), (QJsonObject{{"title"_s, "Oak"_s}}));
        const LogCapture log("tamsel.packageserver.ledger"_s);
        QCOMPARE(accessor.packageManifest(1), QJsonObject());
        QCOMPARE(log.lines(), QStringList("critical: Package manifest parsing failed: \"illegal value\""_s));

        QCOMPARE(accessor.keywordLanguages().join(QLatin1Char(' ')), "de en"_s);
        QCOMPARE(accessor.keywordCount(), 2);
        QStringList strings;
        const KeywordInfo tree = accessor.keywordInfo(0);
        for (const LangString &text : tree.strings)
            strings.append("%1/%2/%3"_s.arg(text.language, text.sg, text.pl));
        QCOMPARE(strings.join(QLatin1Char(' ')), "de/Baum/ en/tree/trees en/wood/"_s);
        QCOMPARE(int(tree.type), int(Keyword::Noun));
        QCOMPARE(int(accessor.keywordInfo(1).type), int(Keyword::Invalid));
        QVERIFY(accessor.keywordInfo(1).strings.isEmpty());
    }

    void links()
    {
        Stage stage;
        stage.http.ledger.addKeyword("tree", Keyword::Noun);
        // Type, flags, source and target in the ledger; what comes of it.
        const QVector<Row> table = rows(R"(
        6   | 17  | 0 | 0          | 6 oak oak
        0   | 128 | 0 | 0          | 0 tree oak
        1   | 8   | 0 | 0          | 1 oak tree
        7   | 0   | 0 | 1          | -1 tree
        255 | 16  | 1 | 4294967295 | -1
        2   | 1   | 2147483648 | 0 | 2  tree
    )");
        for (const Row &row : table)
            stage.http.ledger.records.links.append(
                {quint8(row[0].toInt()), quint8(row[1].toInt()), row[2].toUInt(), row[3].toUInt()});
        stage.open();
        QCOMPARE(stage.accessor->linkCount(), table.size());
        for (int i = 0; i < table.size(); ++i) {
            const LinkInfo link = stage.accessor->linkInfo(i);
            const QString outcome = "%1 %2 %3"_s.arg(QString::number(link.type), link.from, link.to);
            QCOMPARE(table.at(i).with(outcome.trimmed()), table.at(i).text());
        }
    }

    // Ids are not signed: whatever a server gives for one, nobody is sent to another place.
    void filesComeThroughTheProxy()
    {
        QVector<QPair<QByteArray, QByteArray>> files{{"a-b", "dir/b.png"}, {"c", "e//f"}}; // id, name
        for (const char *text :
             {"a b", "\u00e4", "50%", "%41", "x?y#z", "http:", "http://host", "//host", "..", "../c",
              "file:///etc/passwd?", "/..", "=", "[1]{2}|\\", "\U0001f333", "a:b"}) {
            const QByteArray number = QByteArray::number(files.size());
            files << qMakePair(number, QByteArray(text)) << qMakePair(QByteArray(text), '/' + number);
        }
        Stage stage;
        for (const auto &[id, name] : files) {
            stage.http.setAnswer(ServedLedger::pathOf(id + name), HttpAnswer::with(200, id + name));
            stage.http.ledger.addPackage(id, "plant", "{}", {{name, id + name}});
        }
        stage.open();
        for (int i = 0; i < files.size(); ++i) {
            const QString name = QString::fromUtf8(files[i].second);
            const QByteArray content = files[i].first + files[i].second;
            const QUrl url = stage.url(name, i + 1);
            QCOMPARE(url.host(), "localhost"_s);
            QCOMPARE(fetch(url), "200 "_s + QString::fromUtf8(content));
            QVERIFY(stage.url(name, i + 1).isLocalFile());
            QCOMPARE(fetch(stage.url(name, i + 1)), "0 "_s + QString::fromUtf8(content));
            QCOMPARE(fetch(url), "200 "_s + QString::fromUtf8(content));
            QCOMPARE(stage.http.count(ServedLedger::pathOf(content)), 1);
        }
        QCOMPARE(stage.url("none"_s), QUrl());
    }

    void answersWithoutFile()
    {
        Stage stage({{"picture", "of another tree"}, {"forged", "as signed"}});
        stage.http.setAnswer(ServedLedger::pathOf("of another tree"), HttpAnswer::with(503));
        stage.http.setAnswer(ServedLedger::pathOf("as signed"), HttpAnswer::with(200, "as forged"));
        QCOMPARE(fetch(stage.url("picture"_s)), "503 "_s);
        QCOMPARE(fetch(stage.url("forged"_s)), "500 "_s);
        QCOMPARE(fetch(stage.belowKey("/oak"_s)), "404 Not Found"_s);
        QCOMPARE(fetch(stage.belowKey("/elm/picture"_s)), "404 Not Found"_s);
        QCOMPARE(fetch(stage.belowKey("/oak/none"_s)), "404 Not Found"_s);
        QCOMPARE(fetch(stage.belowKey("/=oak/=none"_s)), "404 Not Found"_s);
        const QFuture<QUrl> asked = QtConcurrent::run([&stage] { return stage.url("picture"_s); });
        QTRY_VERIFY(asked.isFinished());
        QCOMPARE(asked.result(), stage.url("picture"_s));
        stage.service.reset();
        QCOMPARE(fetch(stage.url("picture"_s)), "502 "_s);
    }

    void requestsOutliveTheAccessor()
    {
        Stage stage({{"picture", "late"}});
        QNetworkAccessManager manager;
        const QScopedPointer<QNetworkReply> reply(manager.get(QNetworkRequest(stage.url("picture"_s))));
        stage.http.setHandler([](const HttpRequest &) { return HttpAnswer::with(200, "late"); });
        QTRY_COMPARE(stage.http.count(ServedLedger::pathOf("late")), 1);
        stage.accessor.reset();
        QTRY_VERIFY(FileStore::defaultStore()->contains(idOf("late")));
        stage.open();
        QCOMPARE(fetch(stage.url("picture"_s)), "0 late"_s);
    }

    void installs()
    {
        const LogCapture log("tamsel.packages"_s);
        const QString download = "2 Download of ./api/v1/ledger/%1 failed with code %2, error %3"_s;
        Stage stage({{"1", "first"}, {"2", "absent"}, {"3", "third"}, {"4", "first"}, {"5", "signed"}});
        stage.http.setAnswer(ServedLedger::pathOf("absent"), HttpAnswer::with(404));
        stage.http.setAnswer(ServedLedger::pathOf("signed"), HttpAnswer::with(200, "forged"));
        QCOMPARE(
            stage.install(),
            QStringList({"-1"_s, download.arg(idOf("absent"), "404"_s, "203"_s),
                         "3 Commit of file %1 (./api/v1/ledger/%1) failed (code 2)"_s.arg(idOf("signed"))})
                .join(QLatin1Char('\n')));
        QCOMPARE(stage.installed.join(QLatin1Char(' ')), "1 2 3 4 5"_s);
        QVERIFY(!FileStore::defaultStore()->contains(idOf("signed")));
        stage.http.ledger.addPackage("deep", "plant", "{}", {{"a/b", "first"}});
        stage.open();
        QCOMPARE(stage.install(1), "-1\n4 Failed to install file a/b (%1)"_s.arg(idOf("first")));
        stage.service.reset();
        QCOMPARE(stage.install(), "-1\n1 No service for package file download"_s);
        QVERIFY(stage.installed.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_PackageServerAccessor)

#include "tst_packageserveraccessor.moc"
