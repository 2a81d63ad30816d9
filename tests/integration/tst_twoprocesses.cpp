#include "childprocess.h"

#include "server/packageledger.h"
#include "storage/installlocationroot_p.h"
#include "support/literals.h"
#include "support/signedledger.h"

#include <Tamsel/Locations>

#include <QDirIterator>
#include <QRandomGenerator>
#include <QtTest>

#include <array>
#include <memory>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

constexpr int patience = 60000; // milliseconds
constexpr int kills = 30;

QByteArray hashOf(const QString &path, QCryptographicHash::Algorithm algorithm)
{
    QFile file(path);
    QCryptographicHash hash(algorithm);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex() : QByteArray();
}

} // namespace

/** Several processes with one data location, some of which are killed at any moment. */
class tst_TwoProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void surviveEachOther();
    void cleanup();

private:
    using Worker = std::unique_ptr<ChildProcess>;

    Worker start() const
    {
        auto worker = std::make_unique<ChildProcess>();
        worker->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        worker->start(QStringLiteral(WORKER), {data.path(), data.filePath("document"_s)});
        return worker;
    }

    static QString nextLine(const Worker &worker)
    {
        while (!worker->canReadLine() && worker->waitForReadyRead(patience)) {
        }
        return QString::fromUtf8(worker->readLine()).trimmed();
    }

    static void kill(const Worker &worker)
    {
        worker->kill();
        worker->waitForFinished();
    }

    const QTemporaryDir data;
    SignedLedger ledger;
};

void tst_TwoProcesses::initTestCase()
{
    for (char id = 'a'; id < 'f'; ++id)
        ledger.addPackage(QByteArray(1, id), "tree", R"({"text":")" + QByteArray(50000, id) + "\"}");
    QFile file(data.filePath("document"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(ledger.toByteArray()) > 0);
    QVERIFY(ts::Locations::setDataLocation(QDir(data.path())));
}

void tst_TwoProcesses::surviveEachOther()
{
    const quint32 seed = qEnvironmentVariableIsSet("SEED") ? qEnvironmentVariable("SEED").toUInt()
                                                           : QRandomGenerator::global()->generate();
    qInfo("SEED=%u", seed);
    QRandomGenerator random(seed);
    // One lives through it all, with a lock as old as that of an application that has run for days.
    const Worker survivor = start();
    const QString root = nextLine(survivor);
    QFile lock(root + "/.lock"_s);
    QVERIFY(lock.open(QIODevice::ReadWrite));
    QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
    std::array<Worker, 2> victims{start(), start()};
    for (quint32 i = 0; i < kills; ++i) {
        survivor->write("\n\n");
        Worker &victim = victims[i % victims.size()];
        victim->write(QByteArray(20, '\n'));
        QVERIFY(!nextLine(victim).isEmpty()); // its root
        for (quint32 lines = random.bounded(10U); lines > 0; --lines)
            QCOMPARE(nextLine(victim), "done"_s);
        kill(victim);
        victim = start();
    }
    for (const Worker &victim : victims)
        kill(victim);
    for (int i = 0; i < 2 * kills; ++i)
        QCOMPARE(nextLine(survivor), "done"_s);

    // It goes on sweeping.
    const QDir::Filters roots = QDir::Dirs | QDir::NoDotAndDotDot;
    QTRY_COMPARE_WITH_TIMEOUT(_installDir().entryList(roots), QStringList(QFileInfo(root).fileName()),
                              patience);
    const QFileInfoList installed = QDir(root).entryInfoList(QDir::Files);
    QVERIFY(!installed.isEmpty());
    for (const QFileInfo &file : installed)
        QCOMPARE(hashOf(file.filePath(), QCryptographicHash::Sha224), file.fileName().toLatin1());
    kill(survivor);
    ts::pm::cleanup(QDateTime::currentDateTime().addSecs(400));
    QVERIFY(_installDir().isEmpty());
}

// Whatever has happened, under its final name every file is whole. What a process was writing when it was
// killed has a dot in its name.
void tst_TwoProcesses::cleanup()
{
    int files = 0;
    for (QDirIterator it(data.filePath("packages/files"_s), QDir::Files, QDirIterator::Subdirectories);
         it.hasNext();) {
        const QString path = it.next();
        if (it.fileName().contains(QLatin1Char('.')))
            continue;
        const QString id = it.fileInfo().dir().dirName() + it.fileName();
        QCOMPARE(hashOf(path, QCryptographicHash::Sha224), id.toLatin1());
        ++files;
    }
    QVERIFY(files > 0);
    QCOMPARE(PackageLedger(QDir(data.filePath("packages/servers/one"_s))).data, ledger.toByteArray());
    const QFileInfoList listings = QDir(data.filePath("packages/couchdb/one"_s)).entryInfoList(QDir::Files);
    QVERIFY(!listings.isEmpty());
    for (const QFileInfo &file : listings)
        QCOMPARE(hashOf(file.filePath(), QCryptographicHash::Md5), file.fileName().toLatin1());
}

QTEST_GUILESS_MAIN(tst_TwoProcesses)

#include "tst_twoprocesses.moc"
