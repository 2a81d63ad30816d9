#include "childprocess.h"

#include "database/persistedlisting_p.h"
#include "server/packageledger.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"
#include "storage/installlocation.h"
#include "storage/installlocationroot_p.h"
#include "support/files.h"
#include "support/literals.h"
#include "support/signedledger.h"

#include <Tamsel/Locations>

#include <QtConcurrentRun>
#include <QtTest>

#include <array>
#include <cstdio>
#include <memory>
#include <sys/file.h>

using namespace ts::pm;
using namespace ts::pm::test;

Q_LOGGING_CATEGORY(lcWorker, "worker", QtCriticalMsg)

namespace {

const auto toLedger = "packages/servers/one"_s;
const auto toListing = "packages/couchdb/one"_s;

QString place(const QString &path)
{
    return ts::Locations::dataLocation().filePath(path);
}

// Whether there are files, each of which is named by its content.
bool holdsWholeFiles(const QDir &directory, QCryptographicHash::Algorithm algorithm)
{
    const QStringList names = directory.entryList(QDir::Files);
    return !names.isEmpty() && std::all_of(names.begin(), names.end(), [&](const QString &name) {
        return idOf(readFile(directory.filePath(name)), algorithm) == name;
    });
}

// Others may have swept the location away before it was locked, since they take it for an old one. What is
// installed is looked at where that cannot be.
bool store(const QByteArray &content, const InstallLocation &location)
{
    const QString id = idOf(content);
    const auto files = FileStore::defaultStore();
    const QScopedPointer<FileStoreTarget> target(files->getTarget(id, QCryptographicHash::Sha224));
    target->write(content);
    const bool stored = target->commit() == 0;
    location.installFile(files->pathForId(id), id);
    return stored;
}

bool persistLedger(const QByteArray &document, const QByteArray &tag)
{
    PackageLedger(document, tag).persist(QDir(place(toLedger)), "one"_s);
    return PackageLedger(QDir(place(toLedger))).data == document;
}

// What load() finds may have been replaced by another process as soon as it returns.
bool persistListing(const QByteArray &content)
{
    PersistedListing listing(lcWorker, toListing);
    (void)listing.load();
    listing.hash = idOf(content, QCryptographicHash::Md5).toLatin1();
    listing.dataFile.path = place("listing-%1"_s.arg(QCoreApplication::applicationPid()));
    const bool written = writeFile(listing.dataFile.path, content);
    listing.persist();
    return written;
}

// As if half a minute had passed: that long others respect a lock that is empty, since the process that made
// it was killed before it wrote down who it is.
void ageEmptyLocks()
{
    QDirIterator it(place("packages"_s), {"*lock"_s}, QDir::Files | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile lock(it.next());
        if (lock.open(QIODevice::ReadWrite) && flock(lock.handle(), LOCK_EX | LOCK_NB) == 0
            && lock.size() == 0)
            lock.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime);
    }
}

// Prints an install root that it holds, then does what applications do to a data location, one step for each
// line of its input. After each it prints "done", or the step that failed.
int work(const QByteArray &document)
{
    const auto root = InstallLocation::createRoot();
    const auto say = [](const QString &line) { return std::puts(qPrintable(line)) + std::fflush(stdout); };
    say(root.directory(false).absolutePath());
    QtConcurrent::run([] {
        while (true)
            cleanup(QDateTime::currentDateTime().addSecs(400)); // takes every root for an old one
    });
    for (int step = 0; std::getchar() != EOF; step = (step + 1) % 3) {
        // All processes want the same at about the same time.
        const qint64 number = QDateTime::currentMSecsSinceEpoch() / 20;
        const QByteArray content = QByteArray(100000, char(number)) + QByteArray::number(number);
        const bool succeeds = step == 0   ? store(content, root)
                              : step == 1 ? persistLedger(document, content.right(20))
                                          : persistListing(content);
        say(succeeds ? "done"_s : "failed: %1"_s.arg(step));
    }
    return 0;
}

} // namespace

/** Several processes with one data location, some of which are killed at any moment. */
class tst_TwoProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (char id = 'a'; id < 'f'; ++id)
            ledger.addPackage(QByteArray(1, id), "tree", "{\"text\":\"" + QByteArray(50000, id) + "\"}");
        QVERIFY(ts::Locations::setDataLocation(QDir(data.path())));
        QVERIFY(writeFile(place("document"_s), ledger.toByteArray()));
    }

    void surviveEachOther()
    {
        // One lives through it all, with a lock as old as that of an application that has run for days.
        const Worker survivor = start();
        const QString root = survivor->nextLine();
        QFile lock(root + "/.lock"_s);
        QVERIFY(lock.open(QIODevice::ReadWrite));
        QVERIFY(
            lock.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
        std::array<Worker, 2> victims{start(), start()};
        constexpr int kills = 30;
        for (int i = 0; i < kills; ++i) {
            survivor->write("\n\n");
            Worker &victim = victims.at(i % 2);
            victim->write(QByteArray(20, '\n'));
            QVERIFY(!victim->nextLine().isEmpty()); // its root
            for (int lines = i * 7 % 10; lines > 0; --lines)
                QCOMPARE(victim->nextLine(), "done"_s);
            victim = start(); // and the one before is killed
            ageEmptyLocks();
        }
        victims = {};
        ageEmptyLocks();
        for (int i = 0; i < 2 * kills; ++i)
            QCOMPARE(survivor->nextLine(), "done"_s);

        // It goes on sweeping.
        const QStringList itsOwn{QFileInfo(root).fileName()};
        QTRY_COMPARE_WITH_TIMEOUT(_installDir().entryList(QDir::Dirs | QDir::NoDotAndDotDot), itsOwn, 60000);
        QVERIFY(holdsWholeFiles(QDir(root), QCryptographicHash::Sha224));
        survivor->end();
        ageEmptyLocks();
        ts::pm::cleanup(QDateTime::currentDateTime().addSecs(400));
        QVERIFY(_installDir().isEmpty());
        leaveWholeFiles();
    }

private:
    using Worker = std::unique_ptr<ChildProcess>;

    Worker start() const
    {
        auto worker = std::make_unique<ChildProcess>();
        worker->start(QCoreApplication::applicationFilePath(), {"--work"_s, data.path()});
        return worker;
    }

    // Under its final name every file is whole. What a process was writing when it was killed has a dot in
    // its name.
    void leaveWholeFiles()
    {
        int files = 0;
        for (QDirIterator it(place("packages/files"_s), QDir::Files, QDirIterator::Subdirectories);
             it.hasNext();) {
            const QByteArray content = readFile(it.next());
            if (it.fileName().contains(QLatin1Char('.')))
                continue;
            QCOMPARE(it.fileInfo().dir().dirName() + it.fileName(), idOf(content));
            ++files;
        }
        QVERIFY(files > 0);
        QCOMPARE(PackageLedger(QDir(place(toLedger))).data, ledger.toByteArray());
        QVERIFY(holdsWholeFiles(QDir(place(toListing)), QCryptographicHash::Md5));
    }

    const QTemporaryDir data;
    SignedLedger ledger;
};

// The test, or with "--work" and a data location one of its processes.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--work"_s)
        return ts::Locations::setDataLocation(QDir(arguments.value(2))) ? work(readFile(place("document"_s)))
                                                                        : 1;
    tst_TwoProcesses test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_twoprocesses.moc"
