// The file store and the installs from it, each against the bare operations of the system: libcrypto's
// SHA-224 with a QSaveFile of the same bytes, looks at the disk, symbolic links. Sizes are bytes for the
// commits, files for the rest. TMPDIR tells on which file system.

#include "support/ratioreporter.h"

#include "storage/downloadinstaller.h"
#include "storage/filestore.h"
#include "storage/filestoretarget.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QMap>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QThreadPool>

#include <openssl/evp.h>

#include <memory>
#include <unistd.h>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

constexpr int digestSize = 28;

QByteArray sha224(const QByteArray &bytes)
{
    QByteArray digest(digestSize, '\0');
    EVP_Digest(bytes.constData(), size_t(bytes.size()), reinterpret_cast<unsigned char *>(digest.data()),
               nullptr, EVP_sha224(), nullptr);
    return digest;
}

struct Content
{
    explicit Content(int size)
        : bytes(size, 'x')
        , id(QString::fromLatin1(sha224(bytes).toHex()))
    {
    }

    QByteArray bytes;
    QString id;
};

void bareCommit(benchmark::State &state)
{
    const Content content(int(state.range(0)));
    const QString path = FileStore::defaultStore()->pathForId(content.id);
    for (auto _ : state) {
        QSaveFile file(path);
        if (sha224(content.bytes).toHex() != content.id.toLatin1() || !file.open(QIODevice::WriteOnly)
            || file.write(content.bytes) != content.bytes.size() || !file.commit())
            state.SkipWithError("not committed");
        state.PauseTiming();
        QFile::remove(path);
        state.ResumeTiming();
    }
}

void storeCommit(benchmark::State &state)
{
    const Content content(int(state.range(0)));
    const QSharedPointer<FileStore> store = FileStore::defaultStore();
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<FileStoreTarget> target(
            store->getTarget(content.id, QCryptographicHash::Sha224));
        target->write(content.bytes);
        state.ResumeTiming();
        if (target->commit() != 0)
            state.SkipWithError("not committed");
        state.PauseTiming();
        QFile::remove(store->pathForId(content.id));
        state.ResumeTiming();
    }
}

struct StoredFile
{
    QString name;
    QString id;
    QByteArray path;
};

// So many different files in the store; what they hold does not matter here.
const QVector<StoredFile> &storedFiles(int count)
{
    static QMap<int, QVector<StoredFile>> known;
    QVector<StoredFile> &files = known[count];
    for (int i = files.size(); i < count; ++i) {
        const QString id = QString::fromLatin1(sha224(QByteArray::number(i)).toHex());
        const QString path = FileStore::defaultStore()->pathForId(id);
        if (!QFile(path).open(QIODevice::WriteOnly))
            qFatal("Cannot write %s", qPrintable(path));
        files.append({QStringLiteral("picture-%1.png").arg(i), id, QFile::encodeName(path)});
    }
    return files;
}

void bareContains(benchmark::State &state)
{
    const QVector<StoredFile> &files = storedFiles(int(state.range(0)));
    for (auto _ : state) {
        for (const StoredFile &file : files)
            benchmark::DoNotOptimize(access(file.path.constData(), F_OK));
    }
}

void storeContains(benchmark::State &state)
{
    const QVector<StoredFile> &files = storedFiles(int(state.range(0)));
    const QSharedPointer<FileStore> store = FileStore::defaultStore();
    for (auto _ : state) {
        for (const StoredFile &file : files)
            benchmark::DoNotOptimize(store->contains(file.id));
    }
}

// Runs "install" for one fresh location after the other. What it has made there is taken away in the end
// only: ext4 is slow in making files for seconds after others have been removed.
template<typename Install>
void installInto(benchmark::State &state, const Install &install)
{
    const QSharedPointer<FileStore> store = FileStore::defaultStore();
    const QVector<StoredFile> &files = storedFiles(int(state.range(0)));
    const InstallLocation root = InstallLocation::createRoot();
    QThreadPool::globalInstance()->waitForDone();
    static int number = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const InstallLocation location = root.subLocation(QStringLiteral("birds/owl-%1").arg(++number));
        state.ResumeTiming();
        install(files, *store, location);
        state.PauseTiming();
        if (!location.contains(files.constFirst().name) || !location.contains(files.constLast().name))
            state.SkipWithError("not installed");
        state.ResumeTiming();
    }
}

void bareInstall(benchmark::State &state)
{
    installInto(
        state, [&](const QVector<StoredFile> &files, const FileStore &, const InstallLocation &location) {
            state.PauseTiming();
            const QDir directory = location.directory(true);
            QVector<QByteArray> targets;
            for (const StoredFile &file : files)
                targets.append(QFile::encodeName(directory.absoluteFilePath(file.name)));
            state.ResumeTiming();
            for (int i = 0; i < files.size(); ++i)
                benchmark::DoNotOptimize(symlink(files.at(i).path.constData(), targets.at(i).constData()));
        });
}

void locationInstall(benchmark::State &state)
{
    installInto(
        state, [](const QVector<StoredFile> &files, const FileStore &store, const InstallLocation &location) {
            for (const StoredFile &file : files)
                benchmark::DoNotOptimize(location.installFile(store.pathForId(file.id), file.name));
        });
}

// A package of which the store has all files.
class StoredPackage : public DownloadInstaller
{
public:
    StoredPackage(const QVector<StoredFile> &files, const InstallLocation &location)
        : DownloadInstaller(FileStore::defaultStore(), QCryptographicHash::Sha224, 1, location)
    {
        for (const StoredFile &file : files) {
            if (addFile(file.name, file.id))
                qFatal("Not in the store");
        }
        start();
    }
};

void jobInstall(benchmark::State &state)
{
    installInto(state,
                [](const QVector<StoredFile> &files, const FileStore &, const InstallLocation &location) {
                    StoredPackage package(files, location);
                    QEventLoop loop;
                    QObject::connect(&package, &PackageInstaller::statusChanged, &loop, &QEventLoop::quit);
                    loop.exec();
                });
}

template<typename... Sizes>
void configure(benchmark::internal::Benchmark *benchmark, int repetitions, Sizes... sizes)
{
    (benchmark->Arg(sizes), ...);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(repetitions)->ReportAggregatesOnly();
}

void bytes(benchmark::internal::Benchmark *benchmark)
{
    configure(benchmark, 7, 64 << 10, 1 << 20, 50 << 20);
}

// One at a time, since the speed of a file system changes from one second to the next; and so few, since each
// leaves its links behind.
void files(benchmark::internal::Benchmark *benchmark)
{
    configure(benchmark, 35, 100, 1000, 10000);
    benchmark->Iterations(1);
}

BENCHMARK(bareCommit)->Name("commit/baseline")->Apply(bytes);
BENCHMARK(storeCommit)->Name("commit/store")->Apply(bytes);
BENCHMARK(bareContains)->Name("contains/baseline")->Apply(files);
BENCHMARK(storeContains)->Name("contains/store")->Apply(files);
BENCHMARK(bareInstall)->Name("install/baseline")->Apply(files);
BENCHMARK(locationInstall)->Name("install/location")->Apply(files);
BENCHMARK(jobInstall)->Name("install/job")->Apply(files);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir data;
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    const QCoreApplication application(argc, argv);
    const QSharedPointer<FileStore> store = FileStore::defaultStore(); // made once, not by each benchmark
    return runBenchmarks(argc, argv);
}
