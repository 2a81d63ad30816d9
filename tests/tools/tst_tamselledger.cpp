#include "workshop.h"

#include "ledger/ledgerreader.h"
#include "ledger/ledgerwriter.h"
#include "server/packageledger.h"
#include "support/filesizelimit.h"
#include "support/literals.h"
#include "support/signedledger.h"
#include "support/table.h"

#include <Tamsel/GetRequest>
#include <TamselNetwork/NetworkAccessManager>

#include <QtTest>

#include <sys/stat.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

int modeOf(const QString &path)
{
    struct stat status
    {
    };
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777) : -1;
}

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
    catalogue.writeLink("oak"_s, "is_a"_s, "tree"_s);
    catalogue.writeLink("tree"_s, "requires"_s, "top"_s);
}

// One line for each record, as the library reads it.
QStringList linesOf(const PackageLedger &ledger)
{
    QStringList lines;
    for (const PackageEntry &package : ledger.packages) {
        QStringList files;
        for (const QByteArray &path : package.files.keys())
            files.append(QString::fromUtf8(path));
        files.sort();
        lines.append("%1/%2 %3 %4"_s.arg(ledger.types[package.typeIndex].toString(), package.id.toString(),
                                         package.manifest.toString(), files.join(QLatin1Char(' '))));
    }
    for (const KeywordEntry &keyword : ledger.keywords) {
        QStringList strings;
        for (auto values = keyword.names.begin(); values != keyword.names.end(); ++values) {
            for (const Utf8String &value : *values)
                strings.append(
                    ledger.languages[values.key()].toString() + QLatin1Char('=')
                    + QString::fromUtf8(value.data, value.length).replace(QChar::Null, QLatin1Char('/')));
        }
        lines.append(
            "%1 %2 %3"_s.arg(keyword.id.toString()).arg(keyword.type).arg(strings.join(QLatin1Char(' '))));
    }
    for (const LinkEntry &link : ledger.links)
        lines.append("%1 %2:%3 %4"_s.arg(link.type).arg(link.source).arg(link.target).arg(link.flags, 2, 16));
    return lines;
}

} // namespace

class tst_TamselLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesKeys()
    {
        const Workshop workshop;
        QCOMPARE(modeOf(workshop.path("issuer.key.pem"_s)), 0600);
        const QByteArray key = workshop.content("issuer.key.pem"_s);
        QCOMPARE(workshop.run("keygen issuer"_s).exitCode, 1);
        QVERIFY(QFile::remove(workshop.path("issuer.pem"_s)));
        QCOMPARE(workshop.run("keygen issuer"_s).exitCode, 1);
        QCOMPARE(workshop.content("issuer.key.pem"_s), key);
        QVERIFY(!QFileInfo::exists(workshop.path("issuer.pem"_s)));
    }

    void wantsKeysThatFit()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        QCOMPARE(workshop.run("keygen root"_s).exitCode, 0);
        QCOMPARE(workshop.run("keygen other"_s).exitCode, 0);
        QCOMPARE(
            workshop.run("issue --root-key root.key.pem --name N --output other.json other.pem"_s).exitCode,
            0);
        QVERIFY(QFile::setPermissions(workshop.path("other.key.pem"_s), QFile::ReadOwner | QFile::ReadOther));
        for (const Row &row : rows(R"(
            --key other.key.pem --certificate other.json --root-key root.pem | others can read | 0
            --key other.key.pem --certificate other.json                     | root key        | 1
            --key other.key.pem --certificate issuer.json                    | not the cert    | 1
            --key other.pem --certificate issuer.json                        | no private      | 1
            --key other.key.pem --certificate issuer.pem                     | no certificate  | 1
            --key issuer.key.pem                                             | --certificate   | 2
            --key issuer.key.pem --certificate issuer.json --wrong           | wrong           | 2)")) {
            QFile::remove(workshop.path("out"_s));
            const Outcome outcome = workshop.run("build --output out CATALOGUE "_s + row[0]);
            QCOMPARE(row.with(QString::number(outcome.exitCode)), row.text());
            QVERIFY2(outcome.errors.contains(row[1]), qPrintable(row.text() + outcome.errors));
            QCOMPARE(QFileInfo::exists(workshop.path("out"_s)), outcome.exitCode == 0);
        }
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
        const PackageLedger ledger(workshop.content("one"_s), QByteArray());
        QVERIFY(ledger.valid);
        QCOMPARE(linesOf(ledger).join(QLatin1Char('\n')), QString::fromUtf8(R"(
/top {"a":[1.5,null],"z":true} umlaut-ä.txt
plant:tree/oak {"title":"Eiche","year":1753} file0.bin file1.bin file2.bin file3.bin
latin 3 =Quercus
tree 0 de=/Bäume en=tree/trees en=wood
0 1:1  1
6 1:0 10)")
                                                              .mid(1));
    }

    void refusesWhatCannotBePublished()
    {
        const QByteArray title = R"({"t":"%"})";
        const auto manifest = [&title](int size) {
            return QByteArray(title).replace('%', QByteArray(size - 8, 'x'));
        };
        const auto noun = [](const QByteArray &value) {
            return R"({"type":"name","strings":{"en":[)" + value + "]}}";
        };
        const struct
        {
            const char *file;
            QByteArray content;
            const char *message; // null if it can be published
        } faults[] = {
            {"packages/a/manifest.json", manifest(65535), nullptr},
            {"packages/a/manifest.json", manifest(65536),
             "packages/a: manifest of 65536 bytes; at most 65535"},
            {"packages/a/manifest.json", manifest(1048577),
             "packages/a/manifest.json: 1048577 bytes; at most 1048576"},
            {"packages/a/manifest.json", R"({"t":"\udc00"})", "packages/a/manifest.json: no canonical form"},
            {"packages/a/manifest.json", R"({"t":9007199254740993})",
             "packages/a: the manifest has a number"},
            {"packages/a/manifest.json", "{", "packages/a/manifest.json: no JSON, at byte"},
            {"packages/top/sub/file", "x", "packages/top/sub: sub-directory of a package"},
            {"packages/b:c/d/manifest.json", "{}", "packages/b:c: a ':'"},
            {"packages/tree/manifest.json", "{}",
             "packages/tree: the id 'tree' is that of dictionary/tree.json"},
            {"dictionary/a.json", noun('"' + QByteArray(65536, 'x') + '"'),
             "dictionary/a.json: string of 65536"},
            {"dictionary/a.json", noun("\"x\"" + QByteArray(",\"x\"").repeated(254)), nullptr},
            {"dictionary/a.json", noun("\"x\"" + QByteArray(",\"x\"").repeated(255)),
             "dictionary/a.json: 256 strings"},
            {"dictionary/a.json", noun(R"("a\u0000b")"), "dictionary/a.json: a NUL"},
            {"dictionary/a.json", noun(R"({"sg":"x"})"), "dictionary/a.json: in the language 'en'"},
            {"dictionary/a.json", R"({"type":"Noun"})", "dictionary/a.json: there is no keyword type 'Noun'"},
            {"dictionary/a.b.json", noun("\"x\""), "dictionary/a.b.json: a dot"},
            {"links/x.json", R"({"from":"oak","to":"ash","type":"is_a"})",
             "links/x.json: no package and no keyword"},
            {"links/x.json", R"({"from":"oak","to":"tree","type":"isa"})",
             "links/x.json: there is no link type"},
        };
        const Workshop workshop;
        for (const auto &fault : faults) {
            DirectoryCatalogue catalogue;
            fill(catalogue);
            catalogue.writeFile(QString::fromUtf8(fault.file), fault.content);
            const Outcome outcome = workshop.run("build SIGNED --output out "_s + catalogue.path());
            QVERIFY2(fault.message ? outcome.errors.contains(QLatin1String(fault.message))
                                   : outcome.errors.isEmpty(),
                     qPrintable(outcome.errors));
            QCOMPARE(outcome.exitCode, fault.message ? 1 : 0);
            QCOMPARE(QFile::remove(workshop.path("out"_s)), !fault.message);
        }
    }

    void refusesLinksOutOfTheDirectory()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        const QString package = workshop.catalogue.path() + "/packages/top/"_s;
        QVERIFY(QFile::link("umlaut-\u00e4.txt"_s, package + "inside"_s));
        QCOMPARE(workshop.run("build SIGNED --output out CATALOGUE"_s).exitCode, 0);
        QVERIFY(QFile::link(workshop.path("issuer.key.pem"_s), package + "outside"_s));
        QVERIFY(QFile::link("nowhere"_s, package + "broken"_s));
        const QString errors = workshop.run("build SIGNED --output out CATALOGUE"_s).errors;
        QVERIFY(errors.contains("packages/top/outside: the link leads out"_s));
        QVERIFY(errors.contains("packages/top/broken: the link leads nowhere"_s));
    }

    void writerKnowsLimits()
    {
        using namespace ts::ledger;
        const PackageRecord package{0, 0, QByteArray(64, 's'), "p", QByteArray(65535, ' '), {}, QString()};
        const auto errorsOf = [](const std::function<void(LedgerRecords &)> &fill) {
            LedgerRecords records;
            fill(records);
            const LedgerWriter writer(records);
            return writer.errors().isEmpty() == writer.toByteArray().isNull() ? -1 : writer.errors().size();
        };
        for (const int beyond : {0, 1}) {
            const int count = 65535 + beyond;
            QCOMPARE(errorsOf([&](auto &r) {
                         r.issuers.fill({QByteArray(64, 's'), {}, {}, {}}, count);
                     }),
                     beyond);
            QCOMPARE(errorsOf([&](auto &r) { r.languages.fill("de", count); }), beyond);
            QCOMPARE(errorsOf([&](auto &r) { r.types.fill("t", count); }), beyond);
            QCOMPARE(errorsOf([&](auto &r) {
                         r.packages = {package};
                         r.packages[0].files.fill({QByteArray(28, 'd'), "f"}, count);
                     }),
                     beyond);
        }
        QCOMPARE(errorsOf([&](auto &r) { r.packages.fill(package, 32740); }), 1); // 2 GiB in all
    }

    void verifyNamesTheCulprit()
    {
        const Workshop workshop;
        SignedLedger ledger(2);
        for (const QByteArray id : {"oak", "ash", "yew"})
            ledger.addPackage(id, "tree", "{}", {}, 1);
        ledger.records.packages[1].manifest = "{\"a\":1}";
        const auto verify = [&workshop](const QByteArray &document) {
            QFile file(workshop.path("ledger"_s));
            return file.open(QIODevice::WriteOnly) && file.write(document) == document.size() && file.flush()
                       ? workshop.run("verify ledger"_s)
                       : Outcome();
        };
        Outcome outcome = verify(ledger.toByteArray());
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY(outcome.errors.contains("'ash'"_s) && !outcome.errors.contains("'oak'"_s));
        ledger.sign(ledger.records.packages[1], "{\"a\":1}");
        const QByteArray good = ledger.toByteArray();
        QCOMPARE(verify(good).exitCode, 0);
        ledger.records.issuers[0].signature[0] = char(ledger.records.issuers[0].signature[0] ^ 1);
        outcome = verify(ledger.toByteArray());
        QCOMPARE(outcome.exitCode, 3);
        QVERIFY(outcome.errors.contains("'Issuer 0'"_s) && !outcome.errors.contains("'Issuer 1'"_s));
        QString error;
        QVERIFY(ts::ledger::LedgerReader::read(good, &error));
        for (int size = 0; size < good.size(); ++size)
            QVERIFY2(!ts::ledger::LedgerReader::read(good.left(size), &error),
                     qPrintable(QString::number(size)));
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
        for (const rlim_t size : {0, 1000, 59999, 62000}) {
            const Outcome outcome = [&] {
                const FileSizeLimit limit(size);
                return workshop.run("publish SIGNED CATALOGUE www"_s);
            }();
            QCOMPARE(outcome.exitCode, 1);
            QVERIFY(!outcome.errors.isEmpty());
            QCOMPARE(workshop.faultOfTree(), QString());
        }
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
    }

    void publishesWhatIsNew()
    {
        Workshop workshop;
        const QString publish = "publish SIGNED CATALOGUE www"_s;
        const auto files = [&workshop] {
            return QDir(workshop.path("www/api/v1/ledger"_s)).entryList(QDir::Files | QDir::Hidden).size();
        };
        fill(workshop.catalogue);
        QCOMPARE(workshop.run(publish).output, "5 files written, 0 kept, 0 removed; the ledger is new\n"_s);
        QCOMPARE(workshop.run(publish).output,
                 "0 files written, 5 kept, 0 removed; the ledger is unchanged\n"_s);
        fill(workshop.catalogue, 2);
        QCOMPARE(workshop.run(publish).output, "4 files written, 1 kept, 0 removed; the ledger is new\n"_s);
        QCOMPARE(workshop.run(publish + " --prune"_s).output.section(QLatin1Char(' '), 5, 6), "0 removed;"_s);
        const auto time = [&workshop] {
            return QFileInfo(workshop.path("www/api/v1/ledger/index"_s)).lastModified().toSecsSinceEpoch();
        };
        const qint64 timeBefore = time();
        fill(workshop.catalogue, 3);
        QCOMPARE(workshop.run(publish + " --prune"_s).output,
                 "4 files written, 1 kept, 4 removed; the ledger is new\n"_s);
        QVERIFY(time() > timeBefore); // or a web server would give both ledgers one tag
        QCOMPARE(files(), 4 + 4 + 1 + 2);
        QCOMPARE(workshop.faultOfTree(), QString());

        QCOMPARE(workshop.run("build SIGNED --output ledger CATALOGUE"_s).exitCode, 0);
        const QString id = QString::fromLatin1(
            QCryptographicHash::hash("the same in every version", QCryptographicHash::Sha224).toHex());
        QFile damaged(workshop.path("www/api/v1/ledger/"_s + id));
        QVERIFY(damaged.open(QIODevice::ReadWrite) && damaged.write("T") == 1);
        damaged.close();
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 3);
        QCOMPARE(workshop.run("publish --recheck --ledger ledger CATALOGUE www"_s).output.left(1), "1"_s);
        QCOMPARE(workshop.run("verify --files www"_s).exitCode, 0);
        fill(workshop.catalogue, 4);
        const Outcome outcome = workshop.run("publish --ledger ledger CATALOGUE www"_s);
        QVERIFY(outcome.exitCode == 1
                && outcome.errors.contains("no file with the content of 'file0.bin'"_s));
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
            QVERIFY2(workshop.faultOfTree().isNull(), qPrintable("%1, seed %2"_s.arg(version).arg(seed)));
        }
        QVERIFY(killed > 0);
        QFile lock(workshop.path("www/api/v1/ledger/.lock"_s)); // of one that died before it wrote its name
        QVERIFY(lock.open(QIODevice::WriteOnly));
        QCOMPARE(workshop.run(publish).exitCode, 0);
        QVERIFY(!QDir(workshop.path("www/api/v1/ledger"_s))
                     .entryList(QDir::Files)
                     .join(QLatin1Char(' '))
                     .contains(QRegularExpression("(\\b[0-9a-f]{56}|index)\\.[A-Za-z]{6}\\b"_s)));
    }

    void serves()
    {
        Workshop workshop;
        fill(workshop.catalogue);
        QCOMPARE(workshop.run("serve www"_s).exitCode, 1);
        QCOMPARE(workshop.run("publish SIGNED CATALOGUE www"_s).exitCode, 0);
        QProcess server;
        workshop.start(server, "serve --port 0 www"_s);
        QTRY_VERIFY(server.canReadLine());
        const QUrl url(QString::fromUtf8(server.readLine()).trimmed() + "api/v1/ledger"_s);
        const auto manager = ts::network::NetworkAccessManager::sharedInstance();
        QByteArray tag;
        const auto get = [&](const QUrl &place, const QByteArray &known = {}) {
            QNetworkRequest question(place);
            question.setRawHeader("If-None-Match", known);
            auto *request = new ts::GetRequest(question, manager.data(), this);
            request->setSuppressErrors(true);
            QPair<int, QByteArray> result;
            QEventLoop loop;
            connect(request, &ts::Request::finished, &loop, [&] {
                result = {request->responseCode(), request->rawResponse()};
                tag = request->reply()->rawHeader("ETag");
                loop.quit();
            });
            loop.exec();
            return result;
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
        server.terminate();
        QVERIFY(server.waitForFinished());
        QCOMPARE(server.exitStatus() == QProcess::NormalExit ? server.exitCode() : -1, 0);
    }
};

QTEST_GUILESS_MAIN(tst_TamselLedger)
#include "tst_tamselledger.moc"
