#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include "support/filesizelimit.h"
#include "support/literals.h"
#include "support/logcapture.h"
#include "support/table.h"

#include <Tamsel/Locations>

#include <QtTest>

using namespace ts::pm;
using namespace ts::pm::test;
using Hash = QCryptographicHash;

namespace {

QString idOf(const QByteArray &content, Hash::Algorithm algorithm = Hash::Sha224)
{
    return QString::fromLatin1(Hash::hash(content, algorithm).toHex());
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
    void makesItsDirectories()
    {
        QVERIFY(ts::Locations::setDataLocation(QDir(scratch.filePath("data"_s))));
        QVERIFY(QDir().mkpath(files + "/7f"_s) && QFile(files + "/7f/owl"_s).open(QIODevice::WriteOnly));
        const QSharedPointer<FileStore> store = FileStore::defaultStore();
        QStringList shards;
        for (int i = 256; i < 512; ++i)
            shards.append(QString::number(i, 16).mid(1));
        QCOMPARE(QDir(files).entryList(QDir::Dirs | QDir::NoDotAndDotDot), shards);
        QVERIFY(QFile::exists(files + "/7f/owl"_s));
        QCOMPARE(FileStore::defaultStore(), store);
    }

    // "links" leads to where nobody can make a directory.
    void endsTheProcessWithoutThem()
    {
        QVERIFY(QFile(scratch.filePath("blocked"_s)).open(QIODevice::WriteOnly));
        QVERIFY(QDir(scratch.path()).mkpath("links/packages"_s));
        QVERIFY(QFile::link("/proc"_s, scratch.filePath("links/packages/files"_s)));
        for (const Row &row : rows(R"(
            blocked | Failed to access writable location %1/packages/files
            links   | Failed to access writable location %1/packages/files/00
            free    |)")) {
            const QString data = scratch.filePath(row[0]);
            QProcess process;
            process.start(QCoreApplication::applicationFilePath(), {"--store"_s, data});
            QVERIFY(process.waitForFinished());
            const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
            QCOMPARE(said.section(QLatin1Char('\n'), 0, 0), QString(row[1]).replace("%1"_s, data));
            QCOMPARE(process.exitStatus() == QProcess::NormalExit, row[1].isEmpty());
        }
    }

    // "128x" is so many hexadecimal digits.
    void idsNameFiles()
    {
        FileStore store;
        for (const Row &row : rows(R"(
            abcdef01   | ab/cdef01
            abcdef012  | ab/cdef012
            128x       | aa/126x
            129x       | invalid
            abcdef0    | invalid
            abcdefg1   | invalid
            abcdef0１  | invalid
                       | invalid)")) {
            const QString id = row[0].endsWith(QLatin1Char('x'))
                                   ? QString(row[0].leftRef(3).toInt(), QLatin1Char('a'))
                                   : row[0];
            const QString path = store.pathForId(id);
            const QString name =
                QString(path).remove(files + "/"_s).replace(QString(126, QLatin1Char('a')), "126x"_s);
            QCOMPARE(row.with(path.isEmpty() ? "invalid"_s : name), row.text());
            QCOMPARE(store.isValidId(id), !path.isEmpty());
            const std::unique_ptr<FileStoreTarget> target(store.getTarget(id, Hash::Md5));
            QVERIFY(path.isEmpty() ? !target : target->isWritable() && !target->parent());
            QVERIFY(!store.contains(id));
        }
    }

    void storesWhatMatchesItsId()
    {
        FileStore store;
        for (const Hash::Algorithm algorithm : {Hash::Md5, Hash::Sha1, Hash::Sha224, Hash::Sha256,
                                                Hash::Sha384, Hash::Sha512, Hash::Keccak_256}) {
            for (const QByteArray &content : {QByteArray("owl"), QByteArray(), QByteArray(300000, 'x')}) {
                const QString id = idOf(content, algorithm);
                QCOMPARE(commit(store, id.toUpper(), content, algorithm), 0);
                QVERIFY(store.contains(id));
                const QStringList beside = filesBeside(store.pathForId(id));
                QCOMPARE(commit(store, id, "another", algorithm), 0); // a file that is there is taken as good
                QCOMPARE(read(store.pathForId(id)), content);
                QCOMPARE(filesBeside(store.pathForId(id)), beside);
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
            QCOMPARE(log.lines().join(QLatin1Char('\n')),
                     "critical: Checksum verification of file ID \"%1\" failed"_s.arg(wrong));
            QVERIFY(filesBeside(store.pathForId(wrong)).isEmpty());
        }
        QCOMPARE(commit(store, id, content), 0);
    }

    // A small file fails when its buffer is flushed, a large one when it is written.
    void survivesAFullDisk()
    {
        FileStore store;
        for (const Row &row : rows(R"(
            10000   | 5000  | 5 critical: Failed to commit target file for ID
            1000000 | 50000 | 4 critical: Failed to write data to target file for ID
            10002   | gone  | 3 critical: Failed to open storage file for ID)")) {
            const QByteArray content(row[0].toInt(), 'x');
            const QString id = idOf(content);
            const QString shard = QFileInfo(store.pathForId(id)).path();
            const bool gone = row[1] == "gone"_s && QDir(shard).removeRecursively();
            {
                LogCapture log("tamsel.package.filestore"_s);
                const int result = [&] {
                    const FileSizeLimit limit(gone ? RLIM_INFINITY : row[1].toULongLong());
                    return commit(store, id, content);
                }();
                const QStringList line = log.lines().join(QLatin1Char('\n')).split(" \"%1\" "_s.arg(id));
                QCOMPARE(row.with("%1 %2"_s.arg(result).arg(line.first())), row.text());
                QVERIFY(QRegularExpression("^\"[^\"\n]+\" \\d+$"_s).match(line.last()).hasMatch());
            }
            QVERIFY(filesBeside(store.pathForId(id)).isEmpty() && QDir().mkpath(shard));
            QCOMPARE(commit(store, id, content), 0);
        }
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--store") == 0)
        return ts::Locations::setDataLocation(QDir(QFile::decodeName(argv[2]))) && FileStore::defaultStore()
                   ? 0
                   : 1;
    tst_FileStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filestore.moc"
