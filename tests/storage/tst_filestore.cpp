#include "storage/digest_p.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/Locations>

#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using namespace ts::pm;
using namespace ts::pm::test;

namespace {

using Hash = QCryptographicHash;

QString idOf(const QByteArray &content, Hash::Algorithm algorithm = Hash::Sha224)
{
    return QString::fromLatin1(Hash::hash(content, algorithm).toHex());
}

// Content whose digest begins with a zero digit.
QByteArray contentWithZero()
{
    for (int i = 0;; ++i) {
        const QByteArray content = QByteArray::number(i);
        if (idOf(content).startsWith(QLatin1Char('0')))
            return content;
    }
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
}

int commit(FileStore &store, const QString &id, const QByteArray &content,
           Hash::Algorithm algorithm = Hash::Sha224)
{
    const std::unique_ptr<FileStoreTarget> target(store.getTarget(id, algorithm));
    target->write(content);
    return target->commit();
}

// No file can grow beyond so many bytes: a full disk, without one.
class SizeLimit
{
public:
    explicit SizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &previous);
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &previous); }

private:
    Q_DISABLE_COPY(SizeLimit)
    rlimit previous{};
};

} // namespace

class tst_FileStore : public QObject
{
    Q_OBJECT

    QTemporaryDir scratch;
    QString packages = scratch.filePath("data/packages"_s);

    QStringList filesBeside(const QString &path) const
    {
        return QFileInfo(path).dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    // What a process says that makes a store below "directory".
    static QString storeProcess(const QString &directory)
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {"--store"_s, directory});
        if (!process.waitForFinished())
            return "did not end"_s;
        const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        return process.exitStatus() == QProcess::CrashExit ? said : "went on"_s;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(ts::Locations::setDataLocation(QDir(scratch.filePath("data"_s)))); }

    void init()
    {
        QDirIterator files(packages, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            QVERIFY(QFile::remove(files.next()));
    }

    // "6x" stands for a number of hexadecimal digits.
    void idsNameFiles()
    {
        FileStore store;
        for (const Row &row : rows(R"(
            abcdef01   | ab/cdef01
            ABCDEF0123 | ab/cdef0123
            abcdef012  | ab/cdef012
            128x       | 128
            129x       | invalid
            abcdef0    | invalid
            abcdefg1   | invalid
            abcdef0/   | invalid
            ../../etc  | invalid
            abcdef0ı   | invalid
            abcdef0１  | invalid
                       | invalid)")) {
            const bool counted = row[0].endsWith(QLatin1Char('x'));
            const QString id = counted ? QString(row[0].chopped(1).toInt(), QLatin1Char('a')) : row[0];
            const std::unique_ptr<FileStoreTarget> target(store.getTarget(id, Hash::Md5));
            const QString path = store.pathForId(id);
            const QString shown = path.isEmpty() ? "invalid"_s
                                  : counted      ? QString::number(QString(path).remove(packages).size() - 8)
                                                 : QDir(packages + "/files"_s).relativeFilePath(path);
            QCOMPARE(row.with(shown), row.text());
            QCOMPARE(store.isValidId(id), !path.isEmpty());
            QVERIFY(path.isEmpty() ? !target : target->isWritable() && !target->parent());
            QVERIFY(!store.contains(id));
        }
    }

    void storesWhatMatchesItsId()
    {
        FileStore store;
        const QByteArray big(3000000, 'x');
        for (const Hash::Algorithm algorithm : {Hash::Sha224, Hash::Md5, Hash::Keccak_256}) {
            for (const QByteArray &content : {QByteArray("owl"), QByteArray(), big}) {
                const QString id = idOf(content, algorithm);
                QCOMPARE(commit(store, id.toUpper(), content, algorithm), 0);
                QVERIFY(store.contains(id));
                QCOMPARE(read(store.pathForId(id)), content);
                QCOMPARE(commit(store, id, "another", algorithm), 0); // a file that is there is taken as good
                QCOMPARE(read(store.pathForId(id)), content);
                QCOMPARE(filesBeside(store.pathForId(id)).size(), 1);
            }
        }
    }

    void refusesWhatDoesNot()
    {
        FileStore store;
        const QByteArray zero = contentWithZero();
        const QString owl = idOf("owl");
        for (const QString &id :
             {idOf(zero).mid(1), owl, owl.chopped(1), owl.chopped(2), idOf(zero, Hash::Md5)}) {
            LogCapture log("tamsel.package.filestore"_s);
            QCOMPARE(commit(store, id, zero), 2);
            QCOMPARE(log.lines(),
                     QStringList{"critical: Checksum verification of file ID \"%1\" failed"_s.arg(id)});
            QVERIFY(filesBeside(store.pathForId(id)).isEmpty());
        }
        QCOMPARE(commit(store, owl, "owl"), 0);

        FileStoreTarget target(&store, idOf("dove"), Hash::Sha224);
        QCOMPARE(target.commit(), 1);
        QVERIFY(target.open() && target.write("dove") == 4);
        QCOMPARE(target.commit(), 0);
        QCOMPARE(target.commit(), 1);
    }

    void twoTargetsForOneFile()
    {
        FileStore store;
        const QString id = idOf("owl");
        const std::unique_ptr<FileStoreTarget> first(store.getTarget(id, Hash::Sha224));
        const std::unique_ptr<FileStoreTarget> second(store.getTarget(id, Hash::Sha224));
        first->write("owl");
        second->write("ow");
        QVERIFY(!store.contains(id));
        QCOMPARE(first->commit(), 0);
        QCOMPARE(second->commit(), 0);
        QCOMPARE(read(store.pathForId(id)), QByteArray("owl"));
    }

    // The small file fails when its buffer is flushed, the large one when it is written.
    void survivesAFullDisk()
    {
        FileStore store;
        for (const Row &row : rows(R"(
            10000   | 5000  | 5 Failed to commit target file for ID
            10000   | 0     | 5 Failed to commit target file for ID
            1000000 | 50000 | 4 Failed to write data to target file for ID
            1000000 | 0     | 4 Failed to write data to target file for ID
            10000   | gone  | 3 Failed to open storage file for ID)")) {
            const QByteArray content(row[0].toInt(), 'x');
            const QString id = idOf(content);
            const QString shard = QFileInfo(store.pathForId(id)).path();
            QString outcome;
            {
                LogCapture log("tamsel.package.filestore"_s);
                if (row[1] == "gone"_s)
                    QVERIFY(QDir(shard).removeRecursively());
                const SizeLimit limit(row[1] == "gone"_s ? RLIM_INFINITY : row[1].toULongLong());
                const int result = commit(store, id, content);
                QCOMPARE(log.lines().size(), 1);
                const QString line = log.lines().constFirst();
                QVERIFY(line.startsWith("critical: "_s));
                QVERIFY(QRegularExpression("^ \"[^\"]+\" \\d+$"_s)
                            .match(line.section(id + "\""_s, 1))
                            .hasMatch());
                outcome = "%1 %2"_s.arg(result).arg(line.mid(10).section(" \""_s, 0, 0));
            }
            QCOMPARE(row.with(outcome), row.text());
            QVERIFY(filesBeside(store.pathForId(id)).isEmpty());
            QVERIFY(QDir().mkpath(shard));
            QCOMPARE(commit(store, id, content), 0);
            QVERIFY(QFile::remove(store.pathForId(id)));
        }
    }

    void makesItsDirectoriesOrEndsTheProcess()
    {
        const QString files = packages + "/files"_s;
        for (const QString &shard : {"00"_s, "5a"_s, "ff"_s})
            QVERIFY(!QFile::exists(files) || QDir(files).rmdir(shard));
        QVERIFY(QDir().mkpath(files + "/7f"_s) && QFile(files + "/7f/owl"_s).open(QIODevice::WriteOnly));
        const FileStore store;
        QStringList shards;
        for (int i = 0; i < 256; ++i)
            shards.append(QString::number(256 + i, 16).mid(1));
        QCOMPARE(QDir(files).entryList(QDir::Dirs | QDir::NoDotAndDotDot), shards);
        QVERIFY(QFile::exists(files + "/7f/owl"_s));

        const QString blocked = scratch.filePath("blocked"_s);
        QVERIFY(QFile(blocked).open(QIODevice::WriteOnly));
        QCOMPARE(storeProcess(blocked),
                 "Failed to access writable location %1/packages/files"_s.arg(blocked));
        const QString fixed = scratch.filePath("fixed"_s); // where nobody can make a directory
        QVERIFY(QDir().mkpath(fixed + "/packages"_s) && QFile::link("/proc"_s, fixed + "/packages/files"_s));
        QCOMPARE(storeProcess(fixed), "Failed to access writable location %1/packages/files/00"_s.arg(fixed));
        QCOMPARE(storeProcess(scratch.filePath("new"_s)), "went on"_s);
    }

    void oneStoreWhileHeld()
    {
        QSharedPointer<FileStore> store = FileStore::defaultStore();
        QCOMPARE(FileStore::defaultStore(), store);
        const QPointer<FileStore> first(store.data());
        store.reset();
        QVERIFY(!first && FileStore::defaultStore());
    }

    void digestsAreThoseOfQt()
    {
        const auto algorithms = QMetaEnum::fromType<Hash::Algorithm>();
        QVERIFY(algorithms.keyCount() > 10);
        for (int i = 0; i < algorithms.keyCount(); ++i) {
            const auto algorithm = Hash::Algorithm(algorithms.value(i));
            for (const QByteArray &data : {QByteArray(), QByteArray(1, '\0'), QByteArray(1001, 'x')})
                QCOMPARE(digest(data, algorithm), Hash::hash(data, algorithm));
        }
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--store") == 0) {
        if (!ts::Locations::setDataLocation(QDir(QFile::decodeName(argv[2]))))
            return 1;
        const FileStore store;
        return 0;
    }
    tst_FileStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filestore.moc"
