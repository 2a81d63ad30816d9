#include "server/packageledger.h"

#include "server/packagefiles_p.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/signedledger.h"
#include "support/table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <functional>
#include <memory>

using namespace ts::pm;
using namespace ts::pm::test;
using ts::ledger::IssuerRecord;
using ts::ledger::PackageRecord;

namespace {

const auto goodLog = "H; O; 0i; 0l; 0k; 0t; 0p; 0l; OK"_s;
const auto category = "tamsel.packageserver.ledger"_s;

// What the log says, with a short form for each line that stands in the log of a good ledger. "OK" and "FAIL"
// are the end of the log.
QString brief(const QStringList &lines)
{
    QString text = lines.join(QLatin1String("; "));
    text.replace("debug: Basic header verification OK"_s, "H"_s);
    text.replace("debug: Offset table parsing OK"_s, "O"_s);
    text.replace(QRegularExpression("debug: Ledger contains (\\d+) ([iklpt])\\w+"_s), "\\1\\2"_s);
    text.replace(QRegularExpression("debug: Ledger parsing took [0-9.e-]+ msecs"_s), "OK"_s);
    text.replace("OK; critical: Parsing of package ledger failed"_s, "FAIL"_s);
    return text;
}

QString logOf(const QByteArray &document)
{
    const LogCapture log(category);
    const PackageLedger ledger(document, "tag");
    return brief(log.lines());
}

bool isValid(const QByteArray &document)
{
    // Behind the last byte stands nothing that may be read.
    const auto size = std::size_t(document.size());
    const std::unique_ptr<char[]> bytes(new char[size]);
    std::copy(document.cbegin(), document.cend(), bytes.get());
    const PackageLedger ledger(QByteArray::fromRawData(bytes.get(), document.size()), "tag");
    if (ledger.etag != (ledger.valid ? "tag" : "") || ledger.data.isEmpty() == ledger.valid)
        qFatal("A ledger that is half valid");
    return ledger.valid;
}

QByteArray number(int value)
{
    const auto littleEndian = qToLittleEndian(quint32(value));
    return QByteArray(reinterpret_cast<const char *>(&littleEndian), 4);
}

// All that decides what is installed: the keys, and of each package what its issuer has signed.
QString signedPart(const PackageLedger &ledger)
{
    QStringList parts;
    for (const IssuerEntry &issuer : ledger.issuers)
        parts.append(QString::fromLatin1(QByteArray(issuer.publicKey.data, issuer.publicKey.length).toHex()));
    for (const PackageEntry &package : ledger.packages) {
        QJsonObject manifest =
            QJsonDocument::fromJson(QByteArray(package.manifest.data, package.manifest.length)).object();
        manifest.remove("type"_s);
        parts.append(ledger.types.at(package.typeIndex).toString() + QString::number(package.issuerIndex)
                     + QString::fromUtf8(QJsonDocument(manifest).toJson()));
        const QVector<PackageFile> files = packageFiles(package);
        for (const PackageFile &file : files)
            parts.append(
                file.path
                + QString::fromLatin1(
                    QByteArray::fromRawData(reinterpret_cast<const char *>(file.digest), 28).toHex()));
    }
    return parts.join(QLatin1Char('\n'));
}

// A document of four payloads in the order of the header, spelled without any writer.
QByteArray document(const QVector<QByteArray> &payloads)
{
    const QVector<QByteArray> tags{".iss", ".kwd", ".pkg", ".lnk"};
    QByteArray header("ldgr\x01\x00", 6);
    QByteArray sections;
    for (int i = 0; i < 4; ++i) {
        header += tags.at(i) + number(38 + sections.size());
        sections += tags.at(i) + number(payloads.at(i).size()) + payloads.at(i);
    }
    return header + sections;
}

const QVector<QByteArray> emptyPayloads{QByteArray(2, 0), QByteArray(6, 0), QByteArray(6, 0),
                                        QByteArray(4, 0)};

QByteArray minimalDocument()
{
    return document(emptyPayloads);
}

// The example in the documentation, which is signed by another program.
QByteArray documentedLedger()
{
    QFile page(QStringLiteral(LEDGER_FORMAT_PAGE));
    if (!page.open(QIODevice::ReadOnly))
        qFatal("Cannot read the page on the format");
    const QRegularExpression line("^[0-9a-f]{4}  ([0-9a-f ]+)\\|"_s, QRegularExpression::MultilineOption);
    auto matches = line.globalMatch(QString::fromUtf8(page.readAll()));
    QByteArray ledger;
    while (matches.hasNext())
        ledger += QByteArray::fromHex(matches.next().captured(1).toLatin1());
    return ledger;
}

QString text(const QVector<Utf8String> &strings)
{
    QStringList texts;
    for (const Utf8String &string : strings)
        texts.append(string.data ? string.toString() : "null"_s);
    return texts.join(QLatin1Char(','));
}

SignedLedger sample()
{
    SignedLedger ledger(2);
    ledger.addPackage("oak", "tree", R"({"title":"Oak"})", {{"a.txt", "one"}});
    ledger.addPackage("ivy", "herb", R"({"title":"Ivy","type":"x"})", {{"a.txt", "one"}, {"b", "two"}}, 1);
    ledger.addKeyword("leaf", 0, {{"de", {QByteArray("Blatt\0Blaetter", 14)}}, {"en", {"leaf", "blade"}}});
    ledger.records.links.append({1, 0x01, 0, 7});
    return ledger;
}

} // namespace

class tst_PackageLedger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void warnsOnceOfTheDevelopmentKey()
    {
        const auto warning =
            "warning: Ledgers are verified with the development root key, with which everybody can "
            "sign; "_s;
        QCOMPARE(minimalDocument().size(), 88);
        QCOMPARE(logOf(minimalDocument()), "H; O; 0i; 0l; 0k; 0t; 0p; 0l; "_s + warning + "OK"_s);
        QCOMPARE(logOf(minimalDocument()), goodLog);
        QCOMPARE(logOf(QByteArray()), QString());
    }

    void readsDocumentedLedger()
    {
        const PackageLedger ledger(documentedLedger(), "tag");
        QVERIFY(ledger.valid);
        QCOMPARE(ledger.data.size(), 452);
        QCOMPARE(text(ledger.languages + ledger.types), "de,en,guide:tree"_s);
        const IssuerEntry &issuer = ledger.issuers.at(0);
        QCOMPARE(text({issuer.name, issuer.secondName}), "Ann,Press"_s);
        const KeywordEntry &keyword = ledger.keywords.at(0);
        QCOMPARE(keyword.type, 0);
        QCOMPARE(text({keyword.id}), "tree"_s);
        QCOMPARE(text(keyword.names.value(0) + keyword.names.value(1)), "Baum,tree"_s); // cut at the NUL
        QCOMPARE(keyword.names.value(0).at(0).length, quint16(11));
        const PackageEntry *package = ledger.findPackage("oak");
        QCOMPARE(package, ledger.packages.constData());
        QVERIFY(!ledger.findPackage("oa"));
        QCOMPARE(text({package->manifest}).size(), 58);
        const QByteArray digest(reinterpret_cast<const char *>(package->files.value("oak.txt")), 28);
        QCOMPARE(digest, QCryptographicHash::hash("An oak.\n", QCryptographicHash::Sha224));
        const LinkEntry &link = ledger.links.at(0);
        QCOMPARE(QString::asprintf("%u %u %u %u", link.type, link.flags, link.source, link.target),
                 "0 1 0 0"_s);
    }

    // Of the minimal document: bytes to write over it at an offset in decimal, bytes to append, a size to cut
    // it to.
    void checksHeaderAndOffsetTable()
    {
        for (const Row &row : rows(R"(
            cut 87                    | critical: Invalid or corrupted ledger data: Size of 87 is below minimum size; FAIL
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
            QByteArray bytes = minimalDocument();
            const QStringList edits = row[0].split(QLatin1Char(' '));
            for (int i = 0; i < edits.size(); i += 2) {
                const QByteArray operand = QByteArray::fromHex(edits.at(i + 1).toLatin1());
                if (edits.at(i) == "cut"_s)
                    bytes.truncate(edits.at(i + 1).toInt());
                else if (edits.at(i) == "add"_s)
                    bytes.append(operand);
                else
                    bytes.replace(edits.at(i).toInt(), operand.size(), operand);
            }
            const QString log = logOf(bytes);
            QCOMPARE(row.with(log), row.text());
            QCOMPARE(isValid(bytes), log == goodLog);
        }
        // Sections from back to front, and something before the first.
        const QByteArray junk = QByteArray(62, 'x') + minimalDocument().mid(76)
                                + minimalDocument().mid(62, 14) + minimalDocument().mid(48, 14)
                                + minimalDocument().mid(38, 10);
        QVERIFY(isValid(QByteArray("ldgr\x01\0", 6) + ".kwd" + number(126) + ".iss" + number(140) + ".lnk"
                        + number(100) + ".pkg" + number(112) + junk));
    }

    // The payload of one section, the others being empty; in the end what the tables hold.
    void readsSectionsTolerantly()
    {
        const QStringList sections{"iss"_s, "kwd"_s, "pkg"_s, "lnk"_s};
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
            QVector<QByteArray> payloads = emptyPayloads;
            payloads[sections.indexOf(row[0])] = QByteArray::fromHex(row[1].toLatin1());
            const QByteArray bytes = document(payloads).leftJustified(88, '.');
            const PackageLedger ledger(bytes, "tag");
            QStringList tables{logOf(bytes).mid(6)};
            if (ledger.valid && ledger.languages.size() + ledger.types.size() == 2)
                tables.append(text(ledger.languages + ledger.types));
            for (const KeywordEntry &keyword : ledger.keywords)
                tables.append(QStringLiteral("%1(%2)").arg(keyword.type).arg(text(keyword.names.value(0))));
            for (const LinkEntry &link : ledger.links)
                tables.append(
                    QString::asprintf("%u %u %u %u", link.type, link.flags, link.source, link.target));
            QCOMPARE(row.with(tables.join(QLatin1Char(' '))), row.text());
            QCOMPARE(isValid(bytes), ledger.valid);
        }
    }

    void checksSignatures()
    {
        const auto badIssuer =
            "critical: Failed to verify issuer signature of \"Issuer %1\" \"Department\"; FAIL"_s;
        const auto noKey = "debug: Issuer signature of \"Issuer 1\" \"Department\" is valid; "
                           "critical: Public key of \"Issuer 1\" \"Department\" is not valid; FAIL"_s;
        const auto badPackage = "critical: Package parsing failed; FAIL"_s;
        using Change = std::function<void(SignedLedger &, PackageRecord &, QVector<IssuerRecord> &)>;
        const QVector<QPair<Change, QString>> cases{
            {[](auto &, auto &, auto &) {}, "OK"_s},
            {[](auto &, auto &package, auto &) { package.manifest.replace("x", "y"); }, "OK"_s},
            {[](auto &, auto &package, auto &) {
                 package.files.append({QByteArray(28, 0), "n"});
             },
             "FAIL"_s},
            {[](auto &, auto &package, auto &) { package.files[1].digest[27] = 'x'; }, "FAIL"_s},
            {[](auto &, auto &package, auto &) { package.files[0].path = "c"; }, "FAIL"_s},
            {[](auto &, auto &package, auto &) { package.type = 0; }, "FAIL"_s},
            {[](auto &, auto &package, auto &) { package.issuer = 0; }, "FAIL"_s},
            {[](auto &, auto &package, auto &) { package.type = 2; }, badPackage},
            {[](auto &, auto &package, auto &) { package.issuer = 2; }, badPackage},
            {[](auto &ledger, auto &package, auto &) { ledger.sign(package, "{"); }, "OK"_s},
            // No canonical form, so that what is signed is nothing.
            {[](auto &ledger, auto &package, auto &) { ledger.sign(package, R"(["\ud800"])"); }, "OK"_s},
            {[](auto &ledger, auto &package, auto &) { ledger.sign(package, R"({"a":"\ud800"})"); },
             "FAIL"_s},
            {[](auto &, auto &, auto &issuers) { std::swap(issuers[0].signature, issuers[1].signature); },
             badIssuer.arg(0)},
            {[](auto &, auto &, auto &issuers) { issuers[1].publicKey = "no key"; }, badIssuer.arg(1)},
            {[](auto &ledger, auto &, auto &issuers) { ledger.sign(issuers[1], "no key"); }, noKey},
        };
        const SignedLedger good = sample();
        for (int i = 0; i < cases.size(); ++i) {
            SignedLedger ledger = good;
            cases.at(i).first(ledger, ledger.records.packages[1], ledger.records.issuers);
            QString log = logOf(ledger.toByteArray());
            if (cases.at(i).second != badPackage)
                QVERIFY(log.startsWith("H; O; 2i; 2l; 1k; 2t; 2p; 1l; "_s));
            QVERIFY2(log.endsWith("; "_s + cases.at(i).second), qPrintable(QString::number(i) + log));
            QCOMPARE(log.count("critical"_s), cases.at(i).second.count("critical"_s));
        }
    }

    // Of several spellings of a path the exact one counts, whatever their order; the others are not signed.
    void choosesAmongSpellingsOfOnePath()
    {
        SignedLedger ledger;
        ledger.addPackage("oak", "tree", "{}", {{"a", "good"}, {"b\xff", "first"}, {"b\xfe", "x"}});
        auto &package = ledger.records.packages[0];
        std::swap(package.files[1], package.files[2]); // the first counts, the last is what the writer signs
        ledger.sign(package, "{}");
        for (const QByteArray &path : {QByteArray("a\0", 2), QByteArray("a\0b", 3),
                                       QByteArray("\xef\xbb\xbf"
                                                  "a")})
            package.files.append({QByteArray(28, 'x'), path});
        const PackageLedger parsed(ledger.toByteArray(), "tag");
        QVERIFY(parsed.valid);
        const PackageEntry &entry = parsed.packages.at(0);
        QCOMPARE(entry.files.size(), 6);
        const QVector<PackageFile> files = packageFiles(entry);
        QCOMPARE(files.size(), 2);
        QCOMPARE(files.at(0).path, "a"_s);
        QCOMPARE(files.at(0).digest, entry.files.value("a"));
        QCOMPARE(files.at(1).digest, entry.files.value("b\xfe"));
        QCOMPARE(fileDigest(entry, "a"_s), files.at(0).digest);
        QVERIFY(!fileDigest(entry, QString::fromLatin1("a\0b", 3))
                && !fileDigest(entry, QString::fromUtf8("\xef\xbb\xbf\xef\xbb\xbf"
                                                        "a")));
    }

    void refusesEveryTruncation()
    {
        const QByteArray whole = sample().toByteArray();
        for (int size = 0; size < whole.size(); ++size)
            QVERIFY2(!isValid(whole.left(size)), qPrintable(QString::number(size)));
    }

    void refusesEveryFlippedBitThatMatters()
    {
        const QByteArray whole = sample().toByteArray();
        const QString expected = signedPart(PackageLedger(whole, "tag"));
        int refused = 0;
        for (int i = 0; i < whole.size(); ++i) {
            QByteArray flipped = whole;
            flipped[i] = char(flipped.at(i) ^ (1 << i % 8));
            const PackageLedger ledger(flipped, "tag");
            refused += ledger.valid ? 0 : 1;
            if (ledger.valid)
                QCOMPARE(signedPart(ledger), expected);
        }
        QVERIFY(refused < whole.size()); // keywords and links are not signed
    }

    // On a thread of a pool that has no other, and with one bad signature among many good ones.
    void verifiesInAFullPool()
    {
        SignedLedger many;
        for (int i = 0; i < 200; ++i)
            many.addPackage(QByteArray::number(i), "tree", "{}", {{"a", QByteArray::number(i)}});
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
};

QTEST_GUILESS_MAIN(tst_PackageLedger)

#include "tst_packageledger.moc"
