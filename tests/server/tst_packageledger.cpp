#include "server/packageledger.h"

#include "ledger/ledgerreader.h"
#include "server/packagefiles_p.h"
#include "support/diskfaults.h"
#include "support/files.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/signedledger.h"
#include "support/table.h"

#include <QtConcurrent>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <functional>
#include <tuple>
#include <vector>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace ts::pm;
using namespace ts::pm::test;
using ts::ledger::FileRecord;
using ts::ledger::PackageRecord;

namespace {

std::atomic<bool> hasFileLocks(true);

const auto goodLog = "H; O; 0i; 0l; 0k; 0t; 0p; 0l; OK"_s;
const auto category = "tamsel.packageserver.ledger"_s;

// What the log says of a document, with a short form for each line that stands in the log of a good ledger.
// "OK" and "FAIL" are the end of the log.
QString logOf(const QByteArray &document)
{
    const LogCapture log(category);
    const PackageLedger ledger(document, "tag");
    QString text = log.lines().join(QLatin1String("; "));
    text.replace("debug: Basic header verification OK"_s, "H"_s);
    text.replace("debug: Offset table parsing OK"_s, "O"_s);
    text.replace(QRegularExpression("debug: Ledger contains (\\d+) ([iklpt])\\w+"_s), "\\1\\2"_s);
    text.replace(QRegularExpression("debug: Issuer signature of (\"[^\"]*\" ?){2} is valid"_s), "S"_s);
    text.replace(QRegularExpression("debug: Ledger parsing took [0-9.e-]+ msecs"_s), "OK"_s);
    text.replace("OK; critical: Parsing of package ledger failed"_s, "FAIL"_s);
    return text;
}

// What the log says of a file, and of errors.
QStringList linesOf(const LogCapture &log)
{
    QStringList lines = log.lines().filter(QRegularExpression("^critical|ersist"_s));
    return lines.replaceInStrings(QRegularExpression("[0-9.e-]+ msecs"_s), "_ msecs"_s);
}

bool isValid(const QByteArray &document)
{
    // Behind the last byte stands nothing that may be read.
    const std::vector<char> bytes(document.cbegin(), document.cend());
    const PackageLedger ledger(QByteArray::fromRawData(bytes.data(), document.size()), "tag");
    if (ledger.etag != (ledger.valid ? "tag" : "") || ledger.data.isEmpty() == ledger.valid)
        qFatal("A ledger that is half valid");
    return ledger.valid;
}

// In four bytes.
QByteArray number(int value)
{
    QByteArray bytes(4, 0);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// What QDataStream writes for bytes.
QByteArray array(const QByteArray &bytes)
{
    return QByteArray(2, 0) + char(bytes.size() >> 8) + char(bytes.size() & 0xff) + bytes;
}

const QVector<QByteArray> tags{".iss", ".kwd", ".pkg", ".lnk"};

// Sections in the given order, from an offset on, spelled without any writer. One has the payload, the others
// are empty.
QByteArray document(const QVector<QByteArray> &order = tags, const QByteArray &tag = {},
                    const QByteArray &payload = {}, int offset = 38)
{
    const QMap<QByteArray, int> emptySizes{{".iss", 2}, {".kwd", 6}, {".pkg", 6}, {".lnk", 4}};
    QByteArray header("ldgr\x01\x00", 6);
    QByteArray sections(offset - 38, 'x');
    for (const QByteArray &name : order) {
        const QByteArray content = name == tag ? payload : QByteArray(emptySizes.value(name), 0);
        header += name + number(38 + sections.size());
        sections += name + number(content.size()) + content;
    }
    return header + sections;
}

QString text(const QVector<Utf8String> &strings)
{
    QStringList texts;
    for (const Utf8String &string : strings)
        texts.append(string.data ? string.toString() : "null"_s);
    return texts.join(QLatin1Char(','));
}

SignedLedger sample(int padding = 0)
{
    SignedLedger ledger(2);
    ledger.addPackage("oak", "tree", R"({"title":"Oak"})" + QByteArray(padding, ' '), {{"a.txt", "one"}});
    ledger.addPackage("ivy", "herb", R"({"title":"Ivy","type":"x"})", {{"a.txt", "one"}, {"b", "two"}}, 1);
    ledger.addKeyword("leaf", 0, {{"de", {QByteArray("Blatt\0Blaetter", 14)}}, {"en", {"leaf", "blade"}}});
    ledger.records.links.append({1, 0x01, 0, 7});
    return ledger;
}

} // namespace

// Stands before the function of the C library for every library of the process.
extern "C" __attribute__((visibility("default"))) int flock(int descriptor, int operation) noexcept
{
    if (hasFileLocks)
        return int(syscall(SYS_flock, descriptor, operation));
    errno = ENOLCK;
    return -1;
}

class tst_PackageLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The warning comes once in a process, and not among the lines of the ledger.
    void initTestCase()
    {
        {
            const LogCapture log("tamsel.packages"_s);
            QVERIFY(isValid(document()) && isValid(document()));
            QCOMPARE(log.lines(), QStringList("warning: Ledgers are verified with the development root key, "
                                              "with which everybody can sign"_s));
        }
        QCOMPARE(logOf(document()), goodLog);
        QCOMPARE(logOf(QByteArray()), QString());
    }

    void init()
    {
        dir = QDir(directory.filePath(QString::fromLatin1(QTest::currentTestFunction())));
        QVERIFY(dir.mkpath("."_s));
    }

    // The example in the documentation, which is signed by another program.
    void readsDocumentedLedger()
    {
        const QRegularExpression line("^[0-9a-f]{4}  ([0-9a-f ]+)\\|"_s, QRegularExpression::MultilineOption);
        auto matches = line.globalMatch(QString::fromUtf8(readFile(QStringLiteral(LEDGER_FORMAT_PAGE))));
        QByteArray example;
        while (matches.hasNext())
            example += QByteArray::fromHex(matches.next().captured(1).toLatin1());
        const PackageLedger ledger(example, "tag");
        QVERIFY(ledger.valid);
        QCOMPARE(ledger.data.size(), 452);
        const IssuerEntry &issuer = ledger.issuers.at(0);
        const KeywordEntry &keyword = ledger.keywords.at(0);
        const PackageEntry &package = ledger.packages.at(0);
        QCOMPARE(text(ledger.languages + ledger.types), "de,en,guide:tree"_s);
        QCOMPARE(text({issuer.name, issuer.secondName, keyword.id, package.id}), "Ann,Press,tree,oak"_s);
        QCOMPARE(text(keyword.names.value(0) + keyword.names.value(1)), "Baum,tree"_s); // cut at the NUL
        QCOMPARE(keyword.names.value(0).at(0).length, quint16(11));
        QCOMPARE(package.manifest.toString().size(), 58);
        const QByteArray digest(reinterpret_cast<const char *>(package.files.value("oak.txt")), 28);
        QCOMPARE(digest, QCryptographicHash::hash("An oak.\n", QCryptographicHash::Sha224));
        QVERIFY(ledger.findPackage("oak") == &package && !ledger.findPackage("oa"));
        QCOMPARE(ledger.links.size(), 1);
    }

    void parsesAnew()
    {
        PackageLedger ledger;
        for (const bool valid : {true, true, false, true}) {
            QCOMPARE(ledger.parse(valid ? bytes : QByteArray(), "tag"), valid);
            QCOMPARE(ledger.valid, valid);
            QCOMPARE(ledger.languages.size() + ledger.types.size() + ledger.issuers.size()
                         + ledger.keywords.size() + ledger.packages.size() + ledger.links.size(),
                     valid ? 10 : 0);
        }
    }

    // Of the minimal document: bytes to write over it, each at an offset in decimal.
    void checksHeaderAndOffsetTable()
    {
        QCOMPARE(logOf(document().left(87)),
                 "critical: Invalid or corrupted ledger data: Size of 87 is below minimum size; FAIL"_s);
        for (const Row &row : rows(R"(
            0 4c 4 02                 | critical: Ledger data missing magic bytes "ldgr"; FAIL
            4 02                      | critical: Ledger version mismatch, must be 1.0; FAIL
            6 2e497373                | H; critical: Invalid offset table entry ".Iss"; FAIL
            10 25000000               | H; critical: Invalid offset 37 for offset able entry ".iss"; FAIL
            34 51000000               | H; critical: Invalid offset 81 for offset able entry ".lnk"; FAIL
            34 ffffffff               | H; critical: Invalid offset 4294967295 for offset able entry ".lnk"; FAIL
            34 50000000               | H; critical: Invalid offset 80 for offset able entry ".lnk" (No such section at that offset); FAIL
            80 0c000000               | H; critical: Segment ".lnk" has out of bounds section size 12; FAIL
            30 2e69737326000000       | H; critical: Incomplete ledger data, missing segments: QSet(".lnk"); FAIL
            42 03000000               | H; critical: Invalid ledger structure, misaligned segments; FAIL
            6 2e6b776430000000 14 2e69737326000000 | H; O; 0i; 0l; 0k; 0t; 0p; 0l; OK
            80 f0ffffff               | H; O; 0i; 0l; 0k; 0t; 0p; 0l; OK
            80 0b000000 84 01000000   | H; O; 0i; 0l; 0k; 0t; 0p; 1l; critical: Failed to parse link with index 0; FAIL)")) {
            QByteArray edited = document();
            const QStringList edits = row[0].split(QLatin1Char(' '));
            for (int i = 0; i < edits.size(); i += 2) {
                const QByteArray operand = QByteArray::fromHex(edits.at(i + 1).toLatin1());
                edited.replace(edits.at(i).toInt(), operand.size(), operand);
            }
            const QString log = logOf(edited);
            QCOMPARE(row.with(log), row.text());
            QCOMPARE(isValid(edited), log == goodLog);
        }
        QVERIFY(isValid(document({".lnk", ".pkg", ".kwd", ".iss"}, {}, {}, 100)));
    }

    // The payload of one section, the others being empty; in the end what the tables hold.
    void readsSectionsTolerantly()
    {
        for (const Row &row : rows(R"(
            iss |                                | 0i; FAIL
            iss | 0100 0000 0000 01              | 1i; FAIL
            iss | 0100 0100 41 0900 0000         | 1i; 0l; 0k; 0t; 0p; 0l; critical: Failed to verify issuer signature of "A" ""; FAIL
            kwd | 0000                           | 0i; 0l; FAIL
            kwd | 0200 ff00 0000 00000000        | 0i; 2l; 0k; 0t; 0p; 0l; OK null,
            kwd | 0200 0000 ff00 00000000        | 0i; 2l; FAIL
            kwd | 0000 01000000 00 0000          | 0i; 0l; 1k; FAIL
            kwd | 0000 01000000 09 ff00 0000     | 0i; 0l; 1k; 0t; 0p; 0l; OK 9()
            kwd | 0000 ffffffff 09 0000 0000     | 0i; 0l; 4294967295k; FAIL
            kwd | 0100 0000 01000000 02 0000 0100 0000                  | 0i; 1l; 1k; FAIL
            kwd | 0100 0000 01000000 02 0000 0100 0000 01 0100          | 0i; 1l; 1k; FAIL
            kwd | 0100 0000 01000000 02 0000 0100 0000 02 ff00 0000     | 0i; 1l; 1k; 0t; 0p; 0l; OK 2(null,)
            kwd | 0100 0000 01000000 02 0000 0200 0000 01 0100 61 0000 01 0100 62 | 0i; 1l; 1k; 0t; 0p; 0l; OK 2(b)
            pkg | 0000 0000                      | 0i; 0l; 0k; 0t; FAIL
            pkg | 0000 ffffffff                  | 0i; 0l; 0k; 0t; 4294967295p; critical: Package parsing failed; FAIL
            pkg | 0100 0000 01000000 0000 0000 0000 0000 0000 | 0i; 0l; 0k; 1t; 1p; critical: Package parsing failed; FAIL
            lnk | 02000000 00010000000009000000 06 | 0i; 0l; 0k; 0t; 0p; 2l; critical: Failed to parse link with index 1; FAIL
            lnk | 01000000 09210000000009000000  | 0i; 0l; 0k; 0t; 0p; 1l; OK 9 33 0 9)")) {
            const QByteArray stored =
                document(tags, '.' + row[0].toLatin1(), QByteArray::fromHex(row[1].toLatin1()))
                    .leftJustified(88, '.');
            const PackageLedger ledger(stored, "tag");
            QStringList tables{logOf(stored).mid(6)};
            if (ledger.valid && ledger.languages.size() + ledger.types.size() == 2)
                tables.append(text(ledger.languages + ledger.types));
            for (const KeywordEntry &keyword : ledger.keywords)
                tables.append("%1(%2)"_s.arg(keyword.type).arg(text(keyword.names.value(0))));
            for (const LinkEntry &link : ledger.links)
                tables.append(
                    QString::asprintf("%u %u %u %u", link.type, link.flags, link.source, link.target));
            QCOMPARE(row.with(tables.join(QLatin1Char(' '))), row.text());
            QCOMPARE(isValid(stored), ledger.valid);
            QString error; // what is not to be read, no tool reads either
            QVERIFY(ledger.valid || row[2].contains("signature"_s)
                    || !ts::ledger::LedgerReader::read(stored, &error));
        }
    }

    // One keyword in 2^15 languages with 255 values each has one part too many.
    void limitsThePartsOfKeywords()
    {
        const QByteArray head = QByteArray::fromHex("0100 0000 01000000 02 0000 0080");
        const QByteArray translation = QByteArray("\0\0\xff", 3) + QByteArray(2 * 255, 0);
        const QByteArray shorter = QByteArray("\0\0\xfe", 3) + QByteArray(2 * 254, 0);
        for (const QByteArray &last : {shorter, translation}) {
            const QByteArray stored = document({".iss", ".pkg", ".lnk", ".kwd"}, ".kwd",
                                               head + translation.repeated(0x7fff) + last);
            QString error;
            QCOMPARE(isValid(stored), last == shorter);
            QCOMPARE(ts::ledger::LedgerReader::read(stored, &error).has_value(), last == shorter);
        }
    }

    void refusesEveryTruncationAndFlippedBit()
    {
        const QByteArray whole = sample().toByteArray();
        QByteArray free;
        QString error;
        for (int i = 0; i < whole.size(); ++i) {
            const QByteArray part = whole.left(i);
            QVERIFY(!isValid(part) && !ts::ledger::LedgerReader::read(part, &error));
            QByteArray flipped = whole;
            flipped[i] = char(flipped.at(i) ^ (1 << i % 8));
            if (isValid(flipped))
                free += whole.at(i);
        }
        // Nobody signs names of issuers, keywords, ids, the member "type" of a manifest, and links, which may
        // end up to 7 bytes behind their section.
        QCOMPARE(free, QByteArray("Issuer 0DepartmentIssuer 1Departmentdeen\0leafBlatt\0Blaetterleafblade"
                                  "oakivyx\x0e\1\1\0\0\0\0\7\0\0\0",
                                  86));
    }

    void checksSignatures()
    {
        using Change = std::function<void(SignedLedger &, PackageRecord &)>;
        const QVector<QPair<Change, const char *>> cases{
            {[](auto &, auto &) {}, "1l; S; S; OK"},
            {[](auto &, auto &package) {
                 package.files += FileRecord{QByteArray(28, 0), "n"};
             },
             "1l; S; S; FAIL"},
            {[](auto &, auto &package) { package.type = 0; }, "1l; S; S; FAIL"},
            {[](auto &, auto &package) { package.issuer = 0; }, "1l; S; S; FAIL"},
            {[](auto &, auto &package) { package.type = 2; }, "critical: Package parsing failed; FAIL"},
            {[](auto &, auto &package) { package.issuer = 2; }, "critical: Package parsing failed; FAIL"},
            {[](auto &ledger, auto &package) { ledger.sign(package, "{"); }, "1l; S; S; OK"},
            // No canonical form, so that what is signed is nothing.
            {[](auto &ledger, auto &package) { ledger.sign(package, R"(["\ud800"])"); }, "1l; S; S; OK"},
            {[](auto &ledger, auto &package) { ledger.sign(package, R"({"a":"\ud800"})"); },
             "1l; S; S; FAIL"},
            {[](auto &ledger, auto &) { ledger.sign(ledger.records.issuers[1], "no key"); },
             "1l; S; S; critical: Public key of \"Issuer 1\" \"Department\" is not valid; FAIL"},
        };
        const SignedLedger good = sample();
        for (const auto &[change, log] : cases) {
            SignedLedger ledger = good;
            change(ledger, ledger.records.packages[1]);
            QCOMPARE(logOf(ledger.toByteArray()), "H; O; 2i; 2l; 1k; 2t; 2p; "_s + QLatin1String(log));
        }
    }

    // Of several spellings of a path the exact one counts, whatever their order; the others are not signed.
    void choosesAmongSpellingsOfOnePath()
    {
        const QByteArray byteOrderMark("\xef\xbb\xbf");
        SignedLedger ledger;
        ledger.addPackage("oak", "tree", "{}",
                          {{"a", "good"},
                           {"b\xff", "first"},
                           {"b\xfe", "x"},
                           {"c\x80", "x"}, // sorts before the exact one
                           {"c\xef\xbf\xbd", "good"}});
        auto &package = ledger.records.packages[0];
        std::swap(package.files[1], package.files[2]); // the first counts, the last is what the writer signs
        ledger.sign(package, "{}");
        for (const QByteArray &path : {QByteArray("a\0", 2), QByteArray("a\0b", 3), byteOrderMark + 'a'})
            package.files.append({QByteArray(28, 'x'), path});
        const PackageLedger parsed(ledger.toByteArray(), "tag");
        QVERIFY(parsed.valid);
        const PackageEntry &entry = parsed.packages.at(0);
        QCOMPARE(entry.files.size(), 8);
        const QVector<PackageFile> files = packageFiles(entry);
        QCOMPARE(files.size(), 3);
        QCOMPARE(files.at(0).digest, entry.files.value("a"));
        QCOMPARE(files.at(1).digest, entry.files.value("b\xfe"));
        QCOMPARE(files.at(2).digest, entry.files.value("c\xef\xbf\xbd"));
        QCOMPARE(fileDigest(entry, "a"_s), files.at(0).digest);
        QVERIFY(!fileDigest(entry, QString::fromLatin1("a\0b", 3))
                && !fileDigest(entry, QString::fromUtf8(byteOrderMark + byteOrderMark + 'a')));
    }

    // On a thread of a pool that has no other, and with one bad signature among many good ones.
    void verifiesInAFullPool()
    {
        SignedLedger many;
        SignedLedger::Contents files;
        for (int i = 0; i < 100; ++i)
            files.insert(QByteArray::number(i), {});
        many.addPackage("wood", "tree", "{}", files);
        for (int i = 0; i < 200; ++i)
            many.addPackage(QByteArray::number(i), "tree", "{}", {{QByteArray(i * 9, '\1'), "escaped"}});
        const QByteArray good = many.toByteArray();
        many.records.packages[137].signature[5] = char(many.records.packages[137].signature[5] ^ 1);
        const QByteArray bad = many.toByteArray();

        QThreadPool *pool = QThreadPool::globalInstance();
        const int before = pool->maxThreadCount();
        pool->setMaxThreadCount(1);
        QAtomicInt verdicts(-1);
        pool->start(QRunnable::create([&] { verdicts = isValid(good) * 2 + isValid(bad); }));
        QTRY_COMPARE(int(verdicts), 2);
        pool->setMaxThreadCount(before);
    }

    void persistsWhatIsNew()
    {
        const QDir made(dir.filePath("made/for/it"_s));
        const LogCapture log(category);
        QVERIFY(!PackageLedger(bytes.chopped(1), "1").persist(made, "id"_s));
        QVERIFY(!made.exists());
        QVERIFY(PackageLedger(bytes, "\"1\"").persist(made, "id"_s));
        QVERIFY(!PackageLedger(bytes, "\"1\"").persist(made, "id"_s));
        QCOMPARE(readFile(made.filePath("ledger"_s)), array("\"1\"") + array(bytes));
        const auto took = "debug: Persisting ledger of \"id\" took _ msecs"_s;
        const QStringList expected{"critical: Failed to parse link with index 0"_s,
                                   "critical: Parsing of package ledger failed"_s,
                                   "debug: Persisting ledger for package server \"id\" ETag \"\\\"1\\\"\""_s,
                                   took,
                                   "debug: Skipping ledger persistence for \"id\" - already persisted"_s,
                                   took};
        QCOMPARE(linesOf(log), expected);
    }

    // Whatever stands in the place of the file: what comes of loading it, and of writing a ledger with the
    // tag "t".
    void copesWithWhatItFinds()
    {
        QByteArray forged = bytes;
        forged.replace("Oak", "Elm");
        const QVector<std::tuple<QByteArray, bool, bool>> cases{
            {array("t") + array(bytes), true, false},
            {array("u") + array(bytes) + "more", true, true},
            {QByteArray(4, '\xff') + array(bytes), true, true},
            {array("t") + array(forged), false, false},
            {array("t") + array(bytes).chopped(1), false, false},
            {array("t") + QByteArray("\x7f\xff\xff\xff") + bytes, false, false},
            {array("t") + QByteArray("\xff\xff\xff\xfe") + bytes, false, false},
            {QByteArray("\x80\0\0\0t", 5), false, true},
            {QByteArray(3, 0), false, true}};
        for (const auto &[content, loads, isReplaced] : cases) {
            QVERIFY(writeFile(dir.filePath("ledger"_s), content));
            const LogCapture log(category);
            QCOMPARE(PackageLedger(dir).valid, loads);
            QCOMPARE(linesOf(log).join(QLatin1Char('\n')),
                     content.contains("Elm") ? "critical: Parsing of package ledger failed"_s : QString());
            QCOMPARE(PackageLedger(bytes, "t").persist(dir, "id"_s), isReplaced);
            QCOMPARE(PackageLedger(dir).valid, loads || isReplaced);
        }
    }

    // Of a killed process; nothing that somebody may still be writing, or that is called something else.
    void removesRemains()
    {
        for (const char *name : {"ledger.oldXyz", "ledger.newXyz", "ledger.oldXyz1", "old.ledger"}) {
            QFile file(dir.filePath(QLatin1String(name)));
            const auto time =
                QDateTime::currentDateTime().addSecs(file.fileName().contains("old"_s) ? -90000 : -80000);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.setFileTime(time, QFile::FileModificationTime));
        }
        QVERIFY(PackageLedger(bytes, "t").persist(dir, "id"_s));
        QCOMPARE(dir.entryList(QDir::Files).join(QLatin1Char(' ')),
                 "ledger ledger.newXyz ledger.oldXyz1 old.ledger"_s);
    }

    void needsAFile()
    {
        const QString path = dir.filePath("ledger"_s);
        const LogCapture log(category);
        QVERIFY(!PackageLedger(dir).valid); // nothing there, nothing said
        QVERIFY(QDir().mkdir(path));
        QVERIFY(!PackageLedger(dir).valid);
        QVERIFY(!PackageLedger(bytes, "t").persist(dir, "id"_s));
        QVERIFY(QDir().rmdir(path));
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!PackageLedger(dir).valid);
        QVERIFY(!PackageLedger(bytes, "t").persist(QDir(path), "id"_s));
        QVERIFY(PackageLedger(bytes, "t").persist(dir, "id"_s));
        const auto noFile = "critical: Failed to open persisted ledger file \"%1\""_s.arg(path);
        const QStringList expected{
            noFile,
            "critical: Failed to open target file for ledger pesistence: 2 \"Filename refers "
            "to a directory\""_s,
            noFile, "critical: Failed to create persistence directory forledger persistence of \"id\""_s};
        QCOMPARE(linesOf(log).filter("critical"_s), expected);
    }

    // The smaller ledger fails when it is flushed. Of the larger one a part can be written, which is no error
    // yet. Without room there is no lock either.
    void survivesADiskThatTakesNothing()
    {
        const Unprivileged unprivileged;
        const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        const QRegularExpression noRoom(
            "^critical: Failed to commit target file for ledger pesistence: [0-9] \"[^\"]+\"$"_s);
        const auto isReadOnly = "critical: Failed to open target file for ledger pesistence: 5 "
                                "\"Permission denied\""_s;
        for (const QByteArray &document : {sample().toByteArray(), sample(60000).toByteArray()}) {
            for (const int size : {-1, 0, 300, document.size() / 2, document.size()}) { // below 0: read-only
                QFile::remove(dir.filePath("ledger"_s));
                QVERIFY(PackageLedger(document, "old").persist(dir, "id"_s));
                const LogCapture log(category);
                if (!setWritable(dir.path(), size >= 0))
                    continue; // permissions do not bind here
                {
                    const FileSizeLimit limit(size < 0 ? RLIM_INFINITY : rlim_t(size));
                    QVERIFY(!PackageLedger(document, "new").persist(dir, "id"_s));
                }
                QCOMPARE(log.lines().filter("critical"_s).replaceInStrings(noRoom, "full"_s),
                         QStringList(size < 0 ? isReadOnly : "full"_s));
                QCOMPARE(dir.entryList(everything), QStringList("ledger"_s));
                QCOMPARE(PackageLedger(dir).etag, QByteArray("old"));
                QVERIFY(setWritable(dir.path(), true));
                QVERIFY(PackageLedger(document, "new").persist(dir, "id"_s));
                QCOMPARE(PackageLedger(dir).data, document);
            }
        }
    }

    void waitsForTheLock()
    {
        for (const bool writes : {true, false}) {
            QLockFile lock(dir.filePath(".lock"_s));
            QVERIFY(lock.lock());
            QFuture<bool> used = QtConcurrent::run([this, writes] {
                return writes ? PackageLedger(bytes, "t").persist(dir, "id"_s) : PackageLedger(dir).valid;
            });
            QVERIFY(!QTest::qWaitFor([&] { return used.isFinished(); }, 50));
            lock.unlock();
            QVERIFY(used.result());
        }
        QVERIFY(dir.mkdir(".lock"_s)); // not a lock that somebody will give back
        QVERIFY(PackageLedger(bytes, "new").persist(dir, "id"_s));
        QCOMPARE(PackageLedger(dir).etag, QByteArray("new"));
    }

    // QLockFile can do nothing about it: the file system has no locks by which to find out, or the process
    // was another user's.
    void goesByTheAgeOfALockThatADeadProcessHasLeft()
    {
        const Unprivileged unprivileged;
        const QString path = dir.filePath(".lock"_s);
        QVERIFY(PackageLedger(bytes, "t").persist(dir, "id"_s));
        for (const bool hasLocks : {false, true}) {
            QVERIFY(writeFile(path, "1\nanother\nelsewhere\n"));
            QFile left(path);
            QVERIFY(left.open(QIODevice::ReadWrite)
                    && left.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                                        QFileDevice::FileModificationTime)
                    && left.setPermissions(hasLocks ? QFile::Permissions() : left.permissions()));
            hasFileLocks = hasLocks;
            const QFuture<bool> read = QtConcurrent::run([this] {
                const Unprivileged unprivilegedAsWell;
                return PackageLedger(dir).valid;
            });
            const bool isRead = QTest::qWaitFor([&] { return read.isFinished(); }, 20000);
            hasFileLocks = true;
            QVERIFY(left.remove() != isRead); // ends the waiting
            QVERIFY(isRead && read.result());
        }
    }

private:
    const QByteArray bytes = sample().toByteArray();
    const QTemporaryDir directory;
    QDir dir; // for one function
};

QTEST_GUILESS_MAIN(tst_PackageLedger)
#include "tst_packageledger.moc"
