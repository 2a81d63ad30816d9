#include "server/packageledger.h"

#include "support/filesizelimit.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/signedledger.h"

#include <QtConcurrent>
#include <QtTest>

#include <sys/stat.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

const auto category = "tamsel.packageserver.ledger"_s;

QByteArray array(const QByteArray &bytes)
{
    const auto size = qToBigEndian(quint32(bytes.size()));
    return QByteArray(reinterpret_cast<const char *>(&size), 4) + bytes;
}

QByteArray document(int padding = 0)
{
    SignedLedger ledger;
    ledger.addPackage("oak", "tree", R"({"title":"Oak"})" + QByteArray(padding, ' '));
    ledger.records.links.append({0, 0x11, 0, 0});
    return ledger.toByteArray();
}

// What is logged, without what every good ledger makes the parser say.
QStringList linesOf(const LogCapture &log)
{
    QStringList lines = log.lines();
    const QRegularExpression usual("^(debug: (Basic|Offset|Ledger|Issuer)|warning)"_s);
    lines.erase(std::remove_if(lines.begin(), lines.end(), [&](auto &line) { return line.contains(usual); }),
                lines.end());
    return lines.replaceInStrings(QRegularExpression("[0-9.e-]+ msecs"_s), "_ msecs"_s);
}

} // namespace

class tst_LedgerPersistence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { directory.reset(new QTemporaryDir); }

    void writesWhatIsNew()
    {
        const QByteArray bytes = document();
        const QDir dir(directory->filePath("made/for/it"_s));
        const LogCapture log(category);
        QVERIFY(!PackageLedger(bytes.chopped(1), "1").persist(dir, "id"_s));
        QVERIFY(!dir.exists());
        QVERIFY(PackageLedger(bytes, "\"1\"").persist(dir, "id"_s));
        QVERIFY(!PackageLedger(bytes, "\"1\"").persist(dir, "id"_s));
        QFile file(dir.filePath("ledger"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), array("\"1\"") + array(bytes));
        const PackageLedger found(dir);
        QVERIFY(found.valid && found.findPackage("oak"));
        QCOMPARE(found.etag, QByteArray("\"1\""));
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
        const QByteArray bytes = document();
        QByteArray forged = bytes;
        forged.replace("Oak", "Elm");
        const auto rejected = "critical: Parsing of package ledger failed"_s;
        struct Case
        {
            QByteArray content;
            bool loads;
            bool isReplaced;
            QStringList log;
        };
        const QVector<Case> cases{
            {array("t") + array(bytes), true, false, {}},
            {array("u") + array(bytes) + "more", true, true, {}},
            {QByteArray(4, '\xff') + array(bytes), true, true, {}},
            {array("t") + array(forged), false, false, {rejected}},
            {array("t") + array(bytes).chopped(1), false, false, {}},
            {array("t") + QByteArray("\x7f\xff\xff\xff") + bytes, false, false, {}},
            {array("t") + QByteArray("\xff\xff\xff\xfe") + bytes, false, false, {}},
            {QByteArray("\x80\0\0\0t", 5), false, true, {}},
            {QByteArray(3, 0), false, true, {}},
        };
        const QDir dir(directory->path());
        for (const Case &test : cases) {
            QFile file(dir.filePath("ledger"_s));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(test.content);
            file.close();
            const LogCapture log(category);
            const PackageLedger found(dir);
            QCOMPARE(found.valid, test.loads);
            QCOMPARE(linesOf(log), test.log);
            QCOMPARE(PackageLedger(bytes, "t").persist(dir, "id"_s), test.isReplaced);
            QCOMPARE(PackageLedger(dir).valid, test.loads || test.isReplaced);
        }
    }

    void needsAFile()
    {
        const QByteArray bytes = document();
        const QString path = directory->filePath("ledger"_s);
        const QByteArray pipe = QFile::encodeName(path);
        const LogCapture log(category);
        QVERIFY(!PackageLedger(QDir(directory->path())).valid); // nothing there, nothing said
        QVERIFY(QDir().mkdir(path));
        QVERIFY(!PackageLedger(QDir(directory->path())).valid);
        QVERIFY(!PackageLedger(bytes, "t").persist(QDir(directory->path()), "id"_s));
        QVERIFY(QDir().rmdir(path));
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
        QVERIFY(!PackageLedger(QDir(directory->path())).valid);
        QVERIFY(!PackageLedger(bytes, "t").persist(QDir(path), "id"_s));
        QVERIFY(PackageLedger(bytes, "t").persist(QDir(directory->path()), "id"_s));
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
    void survivesAFullDisk()
    {
        const QDir dir(directory->path());
        for (const QByteArray &bytes : {document(), document(60000)}) {
            for (const int size : {0, 300, bytes.size() / 2, bytes.size()}) {
                QFile::remove(dir.filePath("ledger"_s));
                QVERIFY(PackageLedger(bytes, "old").persist(dir, "id"_s));
                const LogCapture log(category);
                {
                    const FileSizeLimit limit{rlim_t(size)};
                    QVERIFY2(!PackageLedger(bytes, "new").persist(dir, "id"_s),
                             qPrintable("%1 of %2"_s.arg(size).arg(bytes.size())));
                }
                const QRegularExpression line(
                    "^critical: Failed to commit target file for ledger pesistence: [0-9] \"[^\"]+\"$"_s);
                QCOMPARE(log.lines().filter("critical"_s).size(), 1);
                QCOMPARE(log.lines().filter(line).size(), 1);
                QCOMPARE(dir.entryList(QDir::Files | QDir::Hidden), QStringList("ledger"_s));
                QCOMPARE(PackageLedger(dir).etag, QByteArray("old"));
                QVERIFY(PackageLedger(bytes, "new").persist(dir, "id"_s));
                QCOMPARE(PackageLedger(dir).data, bytes);
            }
        }
    }

    void waitsForTheLock()
    {
        const QDir dir(directory->path());
        const QByteArray bytes = document();
        for (const bool writes : {true, false}) {
            QLockFile lock(dir.filePath(".lock"_s));
            QVERIFY(lock.lock());
            QFuture<bool> used = QtConcurrent::run([=] {
                return writes ? PackageLedger(bytes, "t").persist(dir, "id"_s) : PackageLedger(dir).valid;
            });
            QVERIFY(!QTest::qWaitFor([&] { return used.isFinished(); }, 50));
            lock.unlock();
            QVERIFY(used.result());
        }
    }

private:
    QScopedPointer<QTemporaryDir> directory;
};

QTEST_GUILESS_MAIN(tst_LedgerPersistence)
#include "tst_ledgerpersistence.moc"
