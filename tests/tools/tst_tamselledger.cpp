#include "workshop.h"

#include "ledger/ledgerwriter.h"
#include "server/packageledger.h"
#include "support/diskfaults.h"
#include "support/httpserver.h"
#include "support/literals.h"
#include "support/signedledger.h"
#include "support/table.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int patience = 60000; // milliseconds; long, since the machine may be busy

void fill(DirectoryCatalogue &catalogue, int version = 1)
{
    catalogue.writePackage("plant/tree"_s, "oak"_s, {{"title"_s, "Eiche"_s}, {"year"_s, 1753}});
    catalogue.writePackage(QString(), "top"_s, {{"z"_s, true}, {"a"_s, QJsonArray{1.5, QJsonValue()}}});
    for (int i = 0; i < 4; ++i)
        catalogue.writeFile("packages/plant/tree/oak/file%1.bin"_s.arg(i),
                            QByteArray(60000, char(version * 4 + i)));
    catalogue.writeFile("packages/top/umlaut-\u00e4.txt"_s, "the same in every version");
    catalogue.writeFile("packages/top/.hidden"_s, "not published");
    catalogue.writeFile("dictionary/tree.json"_s, R"({"type":"noun","strings":{
        "en":[{"sg":"tree","pl":"trees"},{"sg":"wood"}],"de":[{"sg":"","pl":"B\u00e4ume"}]}})");
    catalogue.writeFile("dictionary/latin.json"_s, R"({"type":"literal","string":"Quercus"})");
    catalogue.writeFile("links/1.json"_s, R"({"from":"oak","type":"is_a","to":"tree"})");
    catalogue.writeFile("links/2.json"_s, R"({"from":"tree","type":"requires","to":"top"})");
}

} // namespace

class tst_TamselLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wantsKeysThatFit()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        for (const char *command : {"keygen root", "keygen other",
                                    "issue --root-key root.key.pem --name N --output other.json other.pem"})
            QCOMPARE(workshop.run(QString::fromLatin1(command)).exitCode, 0);
        QVERIFY(QFile::setPermissions(workshop.path("other.key.pem"_s), QFile::ReadOwner | QFile::ReadOther));
        for (const Row &row : rows(R"(
            --key other.key.pem --certificate other.json --root-key root.pem | others can read | 0
            --key other.key.pem --certificate other.json                     | root key        | 1
            --key other.key.pem --certificate issuer.json                    | not the cert    | 1
            --key other.pem --certificate issuer.json                        | no private      | 1
            --key other.key.pem --certificate issuer.pem                     | no certificate  | 1
            SIGNED --output issuer.json                                      | is read by      | 1
            SIGNED --output CATALOGUE/dictionary/tree.json                   | is read by      | 1
            SIGNED --output other.key.pem                                    | private key     | 1
            --key issuer.key.pem                                             | --certificate   | 2
            --key issuer.key.pem --certificate issuer.json --wrong           | wrong           | 2)")) {
            const Outcome outcome = workshop.run("build --output out CATALOGUE "_s + row[0]);
            QCOMPARE(row.with(QString::number(outcome.exitCode)), row.text());
            QVERIFY2(outcome.errors.contains(row[1]), qPrintable(row.text() + outcome.errors));
            QCOMPARE(QFile::remove(workshop.path("out"_s)), outcome.exitCode == 0);
        }

        const QJsonObject certificate = QJsonDocument::fromJson(workshop.content("issuer.json"_s)).object();
        QCOMPARE(certificate.keys().join(QLatin1Char(' ')), "name publicKey secondName signature"_s);
        const QByteArray key = workshop.content("issuer.key.pem"_s);
        QCOMPARE(QFile::permissions(workshop.path("issuer.key.pem"_s)), QFile::Permissions(0x6600));
        QCOMPARE(workshop.run("keygen issuer"_s).exitCode, 1);
        QVERIFY(QFile::remove(workshop.path("issuer.pem"_s)));
        QCOMPARE(workshop.run("keygen issuer"_s).exitCode, 1);
        QCOMPARE(workshop.content("issuer.key.pem"_s), key);
        QVERIFY(!QFile::exists(workshop.path("issuer.pem"_s)));
    }

    void tellsWhatIsMissing()
    {
        const Workshop workshop;
        for (const Row &row : rows(R"(
            issue --name x --output y key      | --root-key is missing
            build --key k --output out c       | --certificate is missing
            publish --certificate c c www      | --key or --ledger is missing
            publish --ledger l c               | TREE is missing
            publish --ledger l c ''            | TREE is empty
            build --key '' --output o c        | --key is empty
            couchdb c                          | --url or --output is missing
            publish --ledger l --key k c www   | --key and --ledger do not go together
            couchdb --url http://x --output y c | do not go together
            couchdb --output y --prune c       | --prune and --output do not go together
            couchdb --url ftp://me:word@x/y c  | '...@x/y' is no URL
            couchdb --url http:///y c          | 'http:///y' is no URL
            keygen keys/                       | 'keys/' names no file
            serve www more                     | Unexpected argument 'more'
            serve --port 65536 www             | '65536' is no port
            server www                         | There is no command 'server')")) {
            const Outcome outcome = workshop.run(row[0]);
            QVERIFY2(outcome.exitCode == 2 && outcome.errors.contains(row[1]), qPrintable(outcome.errors));
        }
        QVERIFY(
            workshop.run("publish --help"_s)
                .output.contains("publish (--certificate <FILE> --key <FILE> | --ledger <FILE>) [options] "
                                 "CATALOGUE TREE\n"_s));
    }

    void buildsTheSameBytes()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        QCOMPARE(workshop.run("build SIGNED --output one CATALOGUE"_s).errors, QString());
        const QString place = workshop.catalogue.path();
        QVERIFY(QFile::rename(place + "/packages/top"_s, place + "/top"_s));
        QVERIFY(QFile::rename(place + "/top"_s, place + "/packages/top"_s));
        QVERIFY(QFile::rename(place + "/links/1.json"_s, place + "/links/3.json"_s));
        QCOMPARE(workshop.run("build SIGNED --output two CATALOGUE"_s).exitCode, 0);
        QCOMPARE(workshop.content("one"_s), workshop.content("two"_s));
        QVERIFY(PackageLedger(workshop.content("one"_s), QByteArray()).valid);
        QCOMPARE(mkfifo(qPrintable(workshop.path("pipe"_s)), 0600), 0);
        const int pipe = open(qPrintable(workshop.path("pipe"_s)), O_RDWR | O_NONBLOCK);
        QCOMPARE(workshop.run("build SIGNED --output pipe CATALOGUE"_s).exitCode, 0);
        QByteArray piped(65536, '\0');
        piped.truncate(int(qMax<ssize_t>(0, read(pipe, piped.data(), size_t(piped.size())))));
        close(pipe);
        QCOMPARE(piped, workshop.content("one"_s));

        QString report = workshop.run("inspect --json one"_s).output;
        QCOMPARE(report.toUtf8(), QJsonDocument::fromJson(report.toUtf8()).toJson());
        report.replace(QRegularExpression("[0-9a-f]{56,64}|[A-Za-z0-9+/]{32}"_s), "."_s); // what keys decide
        QCOMPARE(QJsonDocument::fromJson(report.toUtf8()), QJsonDocument::fromJson(R"({
            "issuers": [{"name":"Acme","secondName":"","keySha256":".","signatureGood":true}],
            "languages": ["","de","en"],
            "keywords": [
                {"id":"latin","type":"literal","strings":{"":[["Quercus"]]}},
                {"id":"tree","type":"noun",
                 "strings":{"de":[["","B\u00e4ume"]],"en":[["tree","trees"],["wood"]]}}],
            "packages": [
                {"id":"top","type":"","manifest":{"a":[1.5,null],"z":true},"files":{"umlaut-\u00e4.txt":"."},
                 "issuer":"Acme","revision":".","signatureGood":true},
                {"id":"oak","type":"plant:tree","manifest":{"title":"Eiche","year":1753},
                 "files":{"file0.bin":".","file1.bin":".","file2.bin":".","file3.bin":"."},
                 "issuer":"Acme","revision":".","signatureGood":true}],
            "links": [{"from":"oak","type":"is_a","to":"tree"},
                      {"from":"tree","type":"requires","to":"top"}]})"));
        const QString tables = workshop.run("inspect one"_s).output;
        QVERIFY(tables.contains(" / B\u00e4ume, tree / trees\n"_s)
                && tables.contains("2 keywords in 2 languages"_s) && tables.contains("\n            top  "_s)
                && tables.contains("\ntree  requires  top"_s));
    }

    // In a catalogue that is good otherwise; "<x*3>" is "xxx". Without a message it can be published.
    void refusesWhatCannotBePublished()
    {
        const Workshop workshop;
        const QRegularExpression repetition("<([^*]+)\\*(\\d+)>"_s);
        for (const Row &row : rows(R"(
            packages/a/manifest.json    | {"t":"<x*65527>"}         |
            packages/a/manifest.json    | {"t":"<x*65528>"}         | a: manifest of 65536 bytes; at most 65535
            packages/a/manifest.json    | {"t":"<x*1048569>"}       | : 1048577 bytes; at most 1048576
            packages/a/manifest.json    | {"t":"\udc00"}            | : no canonical form
            packages/a/manifest.json    | {"s":1,"t":[9007199254740993]} | packages/a: the manifest's key 't' has a number
            packages/a/manifest.json    | {                         | : no JSON, at byte
            packages/a/manifest.json    | {"type":"x"}              | warning: packages/a: the manifest's key 'type'
            packages/top/sub/file       | x                         | packages/top/sub: sub-directory of a package
            packages/top/c:x            | x                         | packages/top/c:x: no client installs
            packages/top/:x             | x                         | packages/top/:x: no client installs
            packages/b:c/d/manifest.json | {}                       | packages/b:c: a ':'
            packages/tree/manifest.json | {} | packages/tree: the id 'tree' is that of dictionary/tree.json
            dictionary/a.json | {"type":"name","strings":{"en":["<x*65536>"]}}       | : string of 65536
            dictionary/a.json | {"type":"name","strings":{"de":["x"],"en":["x"<,"x"*254>]}} |
            dictionary/a.json | {"type":"name","strings":{"en":["x"<,"x"*255>]}}     | : 256 strings
            dictionary/a.json | {"type":"name","strings":{"en":["a\u0000b"]}}        | : a NUL
            dictionary/a.json | {"type":"name","strings":{"en":[{"sg":"x"}]}}        | : in the language 'en'
            dictionary/a.json | {"type":"name","strings":{"<x*65536>":["x"]}}        | : language of 65536 bytes
            dictionary/a.json | {"type":"noun","strings":{"de":[{"sg":"x"}],"en":[{"sq":"x"}]}} | warning: dictionary/a.json: no text in the language 'en',
            dictionary/a.json | {"type":"name","strings":{"fr":["x"]}} | warning: dictionary/tree.json: no text in the language 'fr',
            packages/translation/a/manifest.json | {"de":"a.qm"} | warning: packages/translation/a: names 'a.qm', but
            packages/guide/a/manifest.json | {"de":"a.qm"} |
            dictionary/a.json | {"type":"Noun"}                     | : there is no keyword type 'Noun'
            dictionary/a.b.json | {"type":"name","strings":{"en":["x"]}}             | : a dot
            links/x.json | {"from":"oak","to":"ash","type":"is_a"}  | : no package and no keyword
            links/x.json | {"from":"oak","to":"tree","type":"isa"}  | : there is no link type)")) {
            const bool good = row[2].isEmpty() || row[2].startsWith("warning"_s);
            const auto match = repetition.match(row[1]);
            DirectoryCatalogue catalogue;
            fill(catalogue);
            catalogue.writeFile(
                row[0], QString(row[1])
                            .replace(repetition, match.captured(1).repeated(match.captured(2).toInt()))
                            .toUtf8());
            const Outcome outcome = workshop.run("build SIGNED --output out "_s + catalogue.path());
            const QString message = row[2].startsWith(QLatin1Char(':')) ? row[0] + row[2] : row[2];
            QVERIFY2(row[2].isEmpty() ? outcome.errors.isEmpty() : outcome.errors.contains(message),
                     qPrintable(row.text() + outcome.errors));
            QCOMPARE(outcome.exitCode, good ? 0 : 1);
            QCOMPARE(QFile::remove(workshop.path("out"_s)), good);
        }
    }

    void refusesFilesThatCannotBePublished()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        const QString package = workshop.catalogue.path() + "/packages/top/"_s;
        QVERIFY(QFile::link("umlaut-\u00e4.txt"_s, package + "inside"_s));
        QCOMPARE(workshop.run("build SIGNED --output out CATALOGUE"_s).exitCode, 0);
        QVERIFY(QFile::link(workshop.path("issuer.key.pem"_s), package + "outside"_s));
        QVERIFY(QFile::link("nowhere"_s, package + "broken"_s));
        const QString links = workshop.catalogue.path() + "/links"_s;
        QVERIFY(QDir(links).removeRecursively() && mkfifo(qPrintable(links), 0600) == 0);
        QVERIFY(mkfifo(qPrintable(workshop.catalogue.path() + "/dictionary/x.json"_s), 0600) == 0);
        QFile huge(package + "huge"_s); // takes no room on the disk
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(2147483584));
        const QString errors = workshop.run("build SIGNED --output out CATALOGUE"_s).errors;
        for (const QString &error :
             {"top/outside: the link leads out"_s, "top/broken: the link leads nowhere"_s,
              "top/huge: 2147483584 bytes; at most 2147483583"_s, "dictionary/x.json: is no regular file"_s,
              "links: is no directory"_s})
            QVERIFY2(errors.contains(error), qPrintable(errors));
    }

    void writerKnowsLimits()
    {
        const ts::ledger::PackageRecord package{
            0, 0, QByteArray(64, 's'), "p", QByteArray(65535, ' '), {}, QString()};
        for (const int beyond : {0, 1}) {
            const int count = 65535 + beyond;
            ts::ledger::LedgerRecords records;
            records.issuers.fill({QByteArray(64, 's'), {}, {}, {}}, count);
            records.languages.fill("de", count);
            ts::ledger::KeywordRecord keyword; // with 2^23 parts, or one more
            keyword.translations.fill({0, QVector<QByteArray>(255)}, 0x8000);
            keyword.translations.last().values.resize(254 + beyond);
            records.keywords = {keyword};
            records.types.fill("t", count);
            records.packages = {package};
            records.packages[0].files.fill({QByteArray(28, 'd'), "f"}, count);
            const ts::ledger::LedgerWriter writer(records);
            QCOMPARE(writer.errors().size(), 5 * beyond);
            QCOMPARE(writer.toByteArray().isNull(), beyond == 1);
        }
        ts::ledger::LedgerRecords records;
        records.packages.fill(package, 4092); // 256 MiB in all
        QCOMPARE(ts::ledger::LedgerWriter(records).errors().size(), 1);
    }

    void verifyNamesTheCulprit()
    {
        Workshop workshop;
        const auto verify = [&workshop](const SignedLedger &ledger) {
            workshop.catalogue.writeFile("ledger"_s, ledger.toByteArray());
            return workshop.run("verify CATALOGUE/ledger"_s);
        };
        SignedLedger ledger(2);
        for (const QByteArray id : {"oak", "ash", "yew"})
            ledger.addPackage(id, "tree", "{}", {}, 1);
        ledger.records.links = {{0, 0x1F, 3, 0}, {0, 0x0F, 2, 0}}; // from and to what is not there
        Outcome outcome = verify(ledger);
        QVERIFY(outcome.exitCode == 0 && outcome.errors.count("an end that is not in"_s) == 2);
        const QString tables = workshop.run("inspect CATALOGUE/ledger"_s).output;
        QVERIFY(tables.contains("\n?3 "_s) && tables.contains("  ?0\n"_s));
        SignedLedger spelled; // the second path reads like the first, and is spelled exactly
        spelled.addPackage("oak", "tree", "{}", {{"a\x80", "1"}, {"a\xef\xbf\xbd", "2"}});
        QCOMPARE(verify(spelled).exitCode, 0);
        ledger.records.packages[1].manifest = "{\"a\":1}";
        outcome = verify(ledger);
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY(outcome.errors.contains("'ash'"_s) && !outcome.errors.contains("'oak'"_s));
        ledger.sign(ledger.records.packages[1], "{\"a\":1}");
        ledger.records.issuers[0].signature[0] = char(ledger.records.issuers[0].signature[0] ^ 1);
        outcome = verify(ledger);
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY(outcome.errors.contains("'Issuer 0'"_s) && !outcome.errors.contains("'Issuer 1'"_s));
        workshop.catalogue.writeFile("ledger"_s, "no ledger");
        outcome = workshop.run("verify --json CATALOGUE/ledger"_s);
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY(QJsonDocument::fromJson(outcome.output.toUtf8()).object().contains("errors"_s));
    }

    // Though 3,000 records refer to a name of 65,535 bytes.
    void tellsNoMoreThanNeeded()
    {
        Workshop workshop;
        SignedLedger ledger;
        ledger.addKeyword(QByteArray(65535, 'k'), 3);
        ledger.records.links.fill({0, 0, 0, 0}, 3000);
        ledger.addPackage("\xc2\x9b", "tree", "{}");
        ledger.records.issuers[0].name = QByteArray(65535, 'n');
        ledger.records.packages[0].signature[0] = char(ledger.records.packages[0].signature[0] ^ 1);
        ledger.records.packages.fill(ledger.records.packages.at(0), 3000);
        workshop.catalogue.writeFile("ledger"_s, ledger.toByteArray());
        for (const QString &command : {"inspect"_s, "inspect --json"_s, "verify"_s, "verify --json"_s}) {
            const QString output = workshop.run(command + " CATALOGUE/ledger"_s).output;
            QVERIFY2(!output.isEmpty() && output.size() < 10000000, qPrintable(command));
            QVERIFY(!output.contains(QChar(0x9b)));
        }
    }

    // The last sizes let all but the end of a file be written, or of the ledger.
    void survivesAFullDisk()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        fill(workshop.catalogue, 2);
        workshop.catalogue.writeFile("packages/top/manifest.json"_s,
                                     QByteArray("{\"t\":\"%\"}").replace('%', QByteArray(62000, 'x')));
        const QRegularExpression reasons(QRegularExpression::escape(qt_error_string(EFBIG)) + "|full"_s);
        for (const rlim_t size : {0, 1000, 59999, 62000}) {
            {
                const FileSizeLimit limit(size);
                const Outcome outcome = workshop.run("publish SIGNED CATALOGUE www"_s);
                QVERIFY2(outcome.exitCode == 1 && outcome.errors.contains(reasons),
                         qPrintable(outcome.errors));
            }
            QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
        }
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
    }

    void publishesWhatIsNew()
    {
        Workshop workshop;
        const QDir served(workshop.path("www/api/v1/ledger"_s));
        const auto timeOfLedger = [&served] {
            return QFileInfo(served.filePath("index"_s)).lastModified().toSecsSinceEpoch();
        };
        qint64 before = 0;
        // The version of the catalogue and an option; what the command tells.
        for (const Row &row : rows(R"(
            1 |         | 5 files written, 0 kept, 0 removed; the ledger is new
            1 |         | 0 files written, 5 kept, 0 removed; the ledger is unchanged
            2 |         | 4 files written, 1 kept, 0 removed; the ledger is new
            2 | --prune | 0 files written, 5 kept, 0 removed; the ledger is unchanged
            3 | --prune | 4 files written, 1 kept, 4 removed; the ledger is new)")) {
            fill(workshop.catalogue, row[0].toInt());
            QCOMPARE(row.with(workshop.run("publish SIGNED CATALOGUE www "_s + row[1]).output.trimmed()),
                     row.text());
            if (row[2].endsWith("new"_s))
                QVERIFY(timeOfLedger() > before); // or a web server would give both ledgers one tag
            before = timeOfLedger();
        }
        QCOMPARE(served.entryList(QDir::Files | QDir::Hidden).size(), 4 + 4 + 1 + 2);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
        QCOMPARE(workshop.run("build SIGNED --output ledger CATALOGUE"_s).exitCode, 0);
        const QString id = idOf("the same in every version");
        QFile damaged(served.filePath(id));
        QVERIFY(damaged.open(QIODevice::ReadWrite) && damaged.write("T") == 1);
        damaged.close();
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 3);
        QCOMPARE(workshop.run("publish --recheck --ledger ledger CATALOGUE www"_s).output.left(1), "1"_s);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
        const QByteArray precious = workshop.content("issuer.json"_s);
        for (const QString &name : {id, "index"_s})
            QVERIFY(QFile::remove(served.filePath(name))
                    && QFile::link(workshop.path("issuer.json"_s), served.filePath(name)));
        QCOMPARE(workshop.run("publish --ledger ledger CATALOGUE www"_s).exitCode, 0);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
        QCOMPARE(workshop.content("issuer.json"_s), precious);
        QVERIFY(QFile::link(workshop.path("made"_s), served.filePath(".lock"_s)));
        QVERIFY(workshop.run("publish --ledger ledger CATALOGUE www"_s).errors.contains("symbolic link"_s));
        QVERIFY(!QFileInfo::exists(workshop.path("made"_s)) && QFile::remove(served.filePath(".lock"_s)));
        fill(workshop.catalogue, 4);
        const Outcome outcome = workshop.run("publish --ledger ledger CATALOGUE www"_s);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.errors.contains("no file with the content of 'file0.bin'"_s));
    }

    // Wherever a publisher dies, the ledger that is there has all of its files.
    void survivesKilledPublishers()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        const QString publish = "publish SIGNED --prune CATALOGUE www"_s;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(workshop.run(publish).exitCode, 0);
        const quint32 longest = quint32(timer.nsecsElapsed() / 1000);
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        int killed = 0;
        for (int version = 2; version < 18; ++version) {
            fill(workshop.catalogue, version);
            QProcess process;
            workshop.start(process, publish);
            QVERIFY(process.waitForStarted());
            QThread::usleep(random.bounded(longest));
            process.kill();
            QVERIFY(process.waitForFinished());
            killed += process.exitStatus() == QProcess::CrashExit;
            const Outcome outcome = workshop.run("verify --files www"_s);
            QVERIFY2(outcome.exitCode == 0,
                     qPrintable("%1, seed %2: %3"_s.arg(version).arg(seed).arg(outcome.errors)));
        }
        QVERIFY(killed > 0);
        // What a killed one can leave besides: a file of its own, and a lock without its name.
        const QDir served(workshop.path("www/api/v1/ledger"_s));
        QVERIFY(QFile::copy(served.filePath("index"_s), served.filePath("index.AbCdEf"_s)));
        QFile lock(served.filePath(".lock"_s));
        QVERIFY(lock.open(QIODevice::WriteOnly) && flock(lock.handle(), LOCK_EX) == 0);
        QProcess next;
        workshop.start(next, publish);
        QVERIFY(!next.waitForFinished(300)); // as long as another one is at work
        lock.close();
        QVERIFY(next.waitForFinished() && next.exitCode() == 0);
        QCOMPARE(served.entryList({"*.??????"_s}, QDir::Files), QStringList());
    }

    void talksToOtherServers()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        ScriptedServer database;
        database.setHandler([](const HttpRequest &request) {
            HttpAnswer answer = HttpAnswer::with(201, request.method == "GET" ? "{\"rows\":[]}" : "{}");
            answer.then = HttpAnswer::Stall; // closing would reset what the client still sends
            return answer;
        });
        workshop.catalogue.writeFile("login"_s, "me:word\n");
        const QString url = database.url("/c"_s).toString();
        QProcess process;
        workshop.start(process, "couchdb --credentials CATALOGUE/login --url %1 CATALOGUE"_s.arg(url));
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, patience);
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(database.requests().constLast().headers.value("authorization"),
                 "Basic " + QByteArray("me:word").toBase64());
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(errors.contains("answered for 0 of 8 documents"), errors.constData());
        QCOMPARE(workshop.run("couchdb --output documents CATALOGUE"_s).exitCode, 0);
        const QJsonObject documents = QJsonDocument::fromJson(workshop.content("documents"_s)).object();
        QCOMPARE(documents.value("docs"_s).toArray().size(), 6); // all but the two with the views
        QCOMPARE(workshop.run("build SIGNED --output ledger CATALOGUE"_s).exitCode, 0);
        database.setAnswer("/a%2Fb", HttpAnswer::with(200, workshop.content("ledger"_s)));
        workshop.start(process, "verify --files "_s + database.url().toString() + "a%2Fb"_s);
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, patience);
        QVERIFY(database.requests().constLast().path.startsWith("/a%2Fb/"));
    }

    void serves()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        workshop.catalogue.writeFile("packages/top/empty"_s, QByteArray());
        QCOMPARE(workshop.run("serve www"_s).exitCode, 1);
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        QProcess server;
        workshop.start(server, "serve --verbose --port 0 www"_s);
        QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), patience);
        const QUrl url(QString::fromUtf8(server.readLine()).trimmed() + "api/v1/ledger"_s);
        QNetworkAccessManager manager;
        QByteArray tag;
        const auto get = [&](const QUrl &place, const QByteArray &known = {}) {
            QNetworkRequest request(place);
            request.setRawHeader("If-None-Match", known);
            const QScopedPointer<QNetworkReply> reply(manager.get(request));
            QSignalSpy(reply.data(), &QNetworkReply::finished).wait();
            tag = reply->rawHeader("ETag");
            const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            return qMakePair(status, reply->readAll());
        };
        QCOMPARE(get(url), qMakePair(200, workshop.content("www/api/v1/ledger/index"_s)));
        const QByteArray ledgerTag = tag;
        QCOMPARE(get(url, ledgerTag).first, 304);
        QCOMPARE(get(url, "\"a\", W/" + ledgerTag).first, 304);
        QCOMPARE(get(url, "\"a\"").first, 200);
        QCOMPARE(get(QUrl(url.toString() + "/index"_s)).first, 404);
        QCOMPARE(workshop.run("verify --files "_s + url.toString()).exitCode, 0);
        fill(workshop.catalogue, 2);
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        QCOMPARE(get(url, ledgerTag).first, 200);
        QVERIFY(server.readAllStandardOutput().contains("GET /api/v1/ledger 304\n"));
        server.terminate();
        QVERIFY(server.waitForFinished());
        QCOMPARE(server.exitStatus() == QProcess::NormalExit ? server.exitCode() : -1, 0);

        // A client that does not come to an end holds the server up, but not beyond a second signal.
        workshop.start(server, "serve www"_s);
        QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), patience);
        QTcpSocket client;
        client.connectToHost("127.0.0.1"_s,
                             quint16(QUrl(QString::fromUtf8(server.readLine()).trimmed()).port()));
        QVERIFY(client.waitForConnected() && client.write("GET / HTTP/1.1\r\n"));
        QTimer trickle;
        connect(&trickle, &QTimer::timeout, this, [&client] { client.write("X: y\r\n"); });
        trickle.start(100);
        ::kill(pid_t(server.processId()), SIGINT);
        ::kill(pid_t(server.processId()), SIGTERM);
        QTRY_COMPARE_WITH_TIMEOUT(server.state(), QProcess::NotRunning, patience);
    }
};

QTEST_GUILESS_MAIN(tst_TamselLedger)
#include "tst_tamselledger.moc"
