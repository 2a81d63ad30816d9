#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include "support/diskfaults.h"
#include "support/files.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/Locations>

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using Hash = QCryptographicHash;

namespace {

int storageError = 0; // what the storage says when it is asked for a file's bytes

} // namespace

// Stands before the function of the C library for every library of the process.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
    if (storageError == 0)
        return int(syscall(SYS_fsync, descriptor));
    errno = storageError;
    return -1;
}

namespace {

int commit(FileStore &store, const QString &id, const QByteArray &content,
           Hash::Algorithm algorithm = Hash::Sha224, bool isCheckedAhead = false)
{
    const std::unique_ptr<FileStoreTarget> target(store.getTarget(id, algorithm));
    target->write(content);
    if (isCheckedAhead)
        target->discardUnlessGenuine();
    return target->commit();
}

QStringList filesBeside(const QString &path)
{
    return QFileInfo(path).dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class tst_FileStore : public QObject
{
    Q_OBJECT

    QTemporaryDir scratch;
    QString files = scratch.filePath("data/packages/files"_s);

private Q_SLOTS:
    void initTestCase() { QVERIFY(ts::Locations::setDataLocation(QDir(scratch.filePath("data"_s)))); }

    void makesItsDirectories()
    {
        QVERIFY(!ts::Locations::setDataLocation(QDir(files))); // the first call decides
        QVERIFY(QDir().mkpath(files + "/7f/kept"_s));
        const QSharedPointer<FileStore> store = FileStore::defaultStore();
        QStringList shards;
        for (int i = 256; i < 512; ++i)
            shards.append(QString::number(i, 16).mid(1));
        QCOMPARE(QDir(files).entryList(QDir::Dirs | QDir::NoDotAndDotDot), shards);
        QVERIFY(QFile::exists(files + "/7f/kept"_s));
        QCOMPARE(FileStore::defaultStore(), store);
        QVERIFY(QDir(files).removeRecursively());
        const QScopedPointer<FileStoreTarget> target(
            store->getTarget("0123456789"_s, QCryptographicHash::Md5));
        QCOMPARE(QDir(files).entryList(QDir::Dirs | QDir::NoDotAndDotDot), shards);
    }

    // The directory that cannot be written at first, and what the process says at its end.
    void endsTheProcessWithoutThem()
    {
        for (const Row &row : rows(R"(
            a                | Failed to access writable location %1/packages/files
            b/packages/files | Failed to access writable location %1/packages/files/00)")) {
            const QString data = scratch.filePath(row[0].section(QLatin1Char('/'), 0, 0));
            const QString directory = scratch.filePath(row[0]);
            QVERIFY(QDir().mkpath(directory));
            for (const bool isWritable : {false, true}) {
                if (!setWritable(directory, isWritable))
                    QSKIP("permissions do not bind here");
                QProcess process;
                process.start(QCoreApplication::applicationFilePath(), {"--store"_s, data});
                QVERIFY(process.waitForFinished());
                QCOMPARE(process.exitStatus() == QProcess::NormalExit, isWritable);
                const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
                QCOMPARE(said.section(QLatin1Char('\n'), 0, 0),
                         isWritable ? QString() : QString(row[1]).replace("%1"_s, data));
            }
        }
    }

    void idsNameFiles()
    {
        FileStore store;
        const QString longest(128, QLatin1Char('a'));
        const QVector<QPair<QString, QString>> cases{
            {"ABCDEF01"_s, "ab/cdef01"_s},
            {"abcdef012"_s, "ab/cdef012"_s},
            {longest, "aa/"_s + longest.mid(2)},
            {longest + "a"_s, QString()},
            {"abcdef0"_s, QString()},
            {"abcdefg1"_s, QString()},
            {"abcdef0１"_s, QString()},
            {QString(), QString()},
        };
        for (const auto &[id, name] : cases) {
            QCOMPARE(store.pathForId(id), name.isEmpty() ? QString() : files + "/"_s + name);
            QCOMPARE(store.isValidId(id), !name.isEmpty());
            const std::unique_ptr<FileStoreTarget> target(store.getTarget(id, Hash::Md5));
            QVERIFY(name.isEmpty() ? !target : target->isWritable() && !target->parent());
            QVERIFY(!store.contains(id));
        }
    }

    void storesWhatMatchesItsId()
    {
        FileStore store;
        for (const Hash::Algorithm algorithm : {Hash::Md5, Hash::Sha1, Hash::Sha224, Hash::Keccak_256}) {
            for (const QByteArray &content : {QByteArray("owl"), QByteArray(), QByteArray(300000, 'x')}) {
                const QString id = idOf(content, algorithm);
                QCOMPARE(commit(store, id.toUpper(), content, algorithm, algorithm != Hash::Md5), 0);
                QVERIFY(store.contains(id));
                for (const bool isCheckedAhead : {false, true}) // a file that is there is taken as good
                    QCOMPARE(commit(store, id, "another", algorithm, isCheckedAhead), 0);
                QCOMPARE(readFile(store.pathForId(id)), content);
            }
        }
        FileStoreTarget target(&store, idOf("dove"), Hash::Sha224);
        QCOMPARE(target.commit(), 1);
        QVERIFY(target.open() && target.write("dove") == 4 && !store.contains(idOf("dove")));
        QCOMPARE(target.commit(), 0);
        QCOMPARE(target.commit(), 1);
    }

    void refusesWhatDoesNot()
    {
        FileStore store;
        int number = 0; // whose digest begins with a zero, which an id of odd length could stand for
        while (!idOf(QByteArray::number(number)).startsWith(QLatin1Char('0')))
            ++number;
        const QByteArray content = QByteArray::number(number);
        const QString id = idOf(content);
        for (const QString &wrong :
             {id.mid(1), id.mid(2), id.chopped(2), idOf("a"), idOf(content, Hash::Md5)}) {
            LogCapture log("tamsel.package.filestore"_s);
            QCOMPARE(commit(store, wrong, content), 2);
            QCOMPARE(commit(store, wrong, content, Hash::Sha224, true), 2);
            const auto line = "critical: Checksum verification of file ID \"%1\" failed"_s.arg(wrong);
            QCOMPARE(log.lines(), QStringList({line, line}));
            QVERIFY(filesBeside(store.pathForId(wrong)).isEmpty());
        }
        QCOMPARE(commit(store, idOf({}, Hash::Sha256), content, Hash::Sha256, true), 2);
        QCOMPARE(commit(store, id, content), 0);
    }

    // Full disks: a small file fails when its buffer is flushed, a large one when it is written. And a
    // directory that can only be read.
    void survivesFailures()
    {
        FileStore store;
        for (const Row &row : rows(R"(
            10000   | 5000      | 5 critical: Failed to commit target file for ID
            1000000 | 50000     | 4 critical: Failed to write data to target file for ID
            10002   | read-only | 3 critical: Failed to open storage file for ID)")) {
            const QByteArray content(row[0].toInt(), 'x');
            const QString id = idOf(content);
            const QString shard = QFileInfo(store.pathForId(id)).path();
            const bool isReadOnly = row[1] == "read-only"_s;
            if (!setWritable(shard, !isReadOnly))
                QSKIP("permissions do not bind here");
            {
                LogCapture log("tamsel.package.filestore"_s);
                const int result = [&] {
                    const FileSizeLimit limit(isReadOnly ? RLIM_INFINITY : row[1].toULongLong());
                    return commit(store, id, content);
                }();
                const QStringList line = log.lines().join(QLatin1Char('\n')).split(" \"%1\" "_s.arg(id));
                QCOMPARE(row.with("%1 %2"_s.arg(result).arg(line.first())), row.text());
                QVERIFY(QRegularExpression("^\"[^\"\n]+\" \\d+$"_s).match(line.last()).hasMatch());
            }
            QVERIFY(filesBeside(store.pathForId(id)).isEmpty() && setWritable(shard, true));
            QCOMPARE(commit(store, id, content), 0);
        }
    }

    // Over a network or within a quota that is full, only the storage knows.
    void asksTheStorage()
    {
        FileStore store;
        const auto restore = qScopeGuard([] { storageError = 0; });
        for (const int error : {ENOSPC, EDQUOT, EIO, EINVAL}) {
            storageError = error;
            const QString id = idOf(QByteArray::number(error));
            const bool isStored = commit(store, id, QByteArray::number(error)) == 0;
            QCOMPARE(isStored, error == EINVAL); // which says nothing about the bytes
            QCOMPARE(filesBeside(store.pathForId(id)).size(), int(isStored));
        }
    }
};

// With "--store" it makes a store at the data location of that argument.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Unprivileged unprivileged;
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--store"_s)
        return ts::Locations::setDataLocation(QDir(arguments.value(2))) && FileStore::defaultStore() ? 0 : 1;
    tst_FileStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filestore.moc"
