// Index build from records in memory, on one thread, against the floor: one pass that copies every id, type
// and string into one QString, enters every node in a QHash, and appends every link to two vectors by
// looked-up ids.
//
// "build" repeats builds in one process, as when an index follows another. "first-build" makes each build in
// a process of its own, as when an application starts: all of its memory is fresh, whatever the size, while
// among repeated builds the small ones find again what the C library has kept, and the large ones do not.

#include "support/ratioreporter.h"
#include "support/syntheticcatalogue.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <malloc.h>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

struct FloorLink
{
    int type;
    int node;
};

struct Floor
{
    QString strings;
    QHash<QStringRef, int> nodes;
    QVector<QVector<FloorLink>> outgoing;
    QVector<QVector<FloorLink>> incoming;

    QStringRef copy(const QString &string)
    {
        const int position = strings.size();
        strings += string;
        return QStringRef(&strings, position, string.size());
    }

    void add(const QString &id)
    {
        nodes.insert(copy(id), outgoing.size());
        outgoing.append(QVector<FloorLink>());
        incoming.append(QVector<FloorLink>());
    }
};

void buildFloor(const SyntheticCatalogue &catalogue, Floor &floor)
{
    for (const PackageInfo &package : catalogue.packages) {
        floor.add(package.id);
        floor.copy(package.type);
    }
    for (const KeywordInfo &keyword : catalogue.keywords) {
        floor.add(keyword.id);
        for (const LangString &string : keyword.strings) {
            floor.copy(string.sg);
            floor.copy(string.pl);
        }
    }
    for (const LinkInfo &link : catalogue.links) {
        const int from = floor.nodes.value(QStringRef(&link.from));
        const int to = floor.nodes.value(QStringRef(&link.to));
        floor.outgoing[from].append({link.type, to});
        floor.incoming[to].append({link.type, from});
    }
}

void floorBuild(benchmark::State &state)
{
    const SyntheticCatalogue &catalogue = syntheticCatalogue(int(state.range(0)));
    for (auto _ : state) {
        auto *floor = new Floor;
        buildFloor(catalogue, *floor);
        benchmark::DoNotOptimize(floor);
        state.PauseTiming();
        delete floor;
        state.ResumeTiming();
    }
}

double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

void indexBuild(benchmark::State &state)
{
    SyntheticSource source(int(state.range(0)));
    double bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QThreadPool::globalInstance()->waitForDone(); // the clean-up that the build before has started
        const double before = heapBytes();
        auto *index = new PackageIndex;
        index->addSource(&source);
        state.ResumeTiming();
        index->build();
        state.PauseTiming();
        bytes = heapBytes() - before;
        delete index;
        state.ResumeTiming();
    }
    state.counters["heap_bytes_per_package"] = bytes / double(state.range(0));
}

const char *const firstOption = "--first"; // of a process that makes one build: what, and of which size
const char *const firstFloor = "baseline";
const char *const firstIndex = "index";

// Prints the time in seconds. What was built is left to the end of the process.
void buildOnce(const char *what, int size)
{
    const SyntheticCatalogue &catalogue = syntheticCatalogue(size);
    auto *source = new SyntheticSource(size);
    auto *index = new PackageIndex;
    index->addSource(source);
    auto *floor = new Floor;
    const auto start = std::chrono::steady_clock::now();
    if (std::strcmp(what, firstFloor) == 0)
        buildFloor(catalogue, *floor);
    else
        index->build();
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    std::printf("%.9f\n", duration.count());
    QThreadPool::globalInstance()->waitForDone();
}

void firstBuild(benchmark::State &state, const char *what)
{
    for (auto _ : state) {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      {QLatin1String(firstOption), QLatin1String(what), QString::number(state.range(0))});
        process.waitForFinished(-1);
        bool isNumber = false;
        state.SetIterationTime(process.readAllStandardOutput().trimmed().toDouble(&isNumber));
        if (!isNumber)
            state.SkipWithError("the process has failed");
    }
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly();
    reportFastest(benchmark);
}

void allSizesOnce(benchmark::internal::Benchmark *benchmark)
{
    allSizes(benchmark);
    benchmark->Iterations(1)->UseManualTime();
}

BENCHMARK_CAPTURE(firstBuild, floor, firstFloor)->Name("first-build/baseline")->Apply(allSizesOnce);
BENCHMARK_CAPTURE(firstBuild, index, firstIndex)->Name("first-build/index")->Apply(allSizesOnce);
BENCHMARK(floorBuild)->Name("build/baseline")->Apply(allSizes);
BENCHMARK(indexBuild)->Name("build/index")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir data;
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    if (argc == 4 && std::strcmp(argv[1], firstOption) == 0) {
        buildOnce(argv[2], std::atoi(argv[3]));
        return 0;
    }
    return runBenchmarks(argc, argv);
}
