// Index build from records in memory, on one thread, against the floor: one pass that copies every id, type
// and string into one QString, enters every node in a QHash, and appends every link to two vectors by
// looked-up ids.

#include "support/ratioreporter.h"
#include "support/syntheticcatalogue.h"

#include <Tamsel/Locations>

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QLocale>
#include <QTemporaryDir>
#include <QThreadPool>

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

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly();
}

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
    return runBenchmarks(argc, argv);
}
