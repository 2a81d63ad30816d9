// Index build from records in memory, on one thread, against the floor: one pass that copies every id, type
// and string into one QString, enters every node in a QHash, and appends every link to two vectors by
// looked-up ids.
//
// "build" repeats builds in one process, as when an index follows another. "first-build" makes each build in
// a process of its own, as when an application starts: all of its memory is fresh, whatever the size, while
// among repeated builds the small ones find again what the C library has kept, and the large ones do not.
// No process builds more than one thing: on a heap that the millions of vectors of a floor have left in
// pieces, an index takes longer than in any application.

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
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

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

double heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

struct Measurement
{
    double seconds = 0;
    double heapBytes = 0; // of what was built
};

class Stopwatch
{
public:
    /** Since the stopwatch was made. */
    Measurement measurement() const
    {
        const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
        return {duration.count(), heapBytes() - heapAtStart};
    }

private:
    const double heapAtStart = heapBytes();
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

Measurement measureFloor(int size)
{
    const SyntheticCatalogue &catalogue = syntheticCatalogue(size);
    Floor floor;
    const Stopwatch stopwatch;
    buildFloor(catalogue, floor);
    return stopwatch.measurement();
}

Measurement measureIndex(int size)
{
    SyntheticSource source(size);
    PackageIndex index;
    index.addSource(&source);
    const Stopwatch stopwatch;
    index.build();
    return stopwatch.measurement();
}

const char *const builderOption = "--builder"; // of a process that builds: what, and of which size
const char *const floorName = "baseline";
const char *const indexName = "index";

// Builds once for each line of the standard input, until that ends.
void serveBuilds(const char *what, int size)
{
    const auto measure = std::strcmp(what, floorName) == 0 ? measureFloor : measureIndex;
    for (std::string line; std::getline(std::cin, line);) {
        const Measurement result = measure(size);
        QThreadPool::globalInstance()->waitForDone(); // indexes are taken down there
        std::cout << result.seconds << ' ' << result.heapBytes << std::endl;
    }
}

/** A process that builds one thing in one size, as often as it is asked to. */
class Builder
{
public:
    Builder(const char *what, int size)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(),
                      {QLatin1String(builderOption), QLatin1String(what), QString::number(size)});
    }
    ~Builder()
    {
        process.closeWriteChannel();
        process.waitForFinished(-1);
    }

    /** Nothing if the process has failed. */
    std::optional<Measurement> build()
    {
        process.write("\n");
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead(-1))
                return std::nullopt;
        }
        Measurement result;
        std::istringstream line(process.readLine().toStdString());
        if (line >> result.seconds >> result.heapBytes)
            return result;
        return std::nullopt;
    }

private:
    Q_DISABLE_COPY(Builder)

    QProcess process;
};

void report(benchmark::State &state, const std::optional<Measurement> &measurement)
{
    if (!measurement) {
        state.SkipWithError("the process that builds has failed");
        return;
    }
    state.SetIterationTime(measurement->seconds);
    state.counters["heap_bytes_per_package"] = measurement->heapBytes / double(state.range(0));
}

void firstBuild(benchmark::State &state, const char *what)
{
    for (auto _ : state)
        report(state, Builder(what, int(state.range(0))).build());
}

using Builders = std::map<std::pair<std::string, std::int64_t>, std::unique_ptr<Builder>>;

/** The processes that build repeatedly, by what and of which size. */
Builders &builders()
{
    static Builders result;
    return result;
}

void repeatedBuild(benchmark::State &state, const char *what)
{
    std::unique_ptr<Builder> &builder = builders()[{what, state.range(0)}];
    if (!builder) {
        builder = std::make_unique<Builder>(what, int(state.range(0)));
        builder->build(); // the first one is not a repeated one
    }
    for (auto _ : state)
        report(state, builder->build());
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->UseManualTime()->Repetitions(15)->ReportAggregatesOnly();
    reportFastest(benchmark);
}

void allSizesOnce(benchmark::internal::Benchmark *benchmark)
{
    allSizes(benchmark);
    benchmark->Iterations(1);
}

BENCHMARK_CAPTURE(firstBuild, floor, floorName)->Name("first-build/baseline")->Apply(allSizesOnce);
BENCHMARK_CAPTURE(firstBuild, index, indexName)->Name("first-build/index")->Apply(allSizesOnce);
BENCHMARK_CAPTURE(repeatedBuild, floor, floorName)->Name("build/baseline")->Apply(allSizes);
BENCHMARK_CAPTURE(repeatedBuild, index, indexName)->Name("build/index")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir data;
    if (!ts::Locations::setDataLocation(QDir(data.path())))
        return 1;
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    if (argc == 4 && std::strcmp(argv[1], builderOption) == 0) {
        serveBuilds(argv[2], std::atoi(argv[3]));
        return 0;
    }
    const int result = runBenchmarks(argc, argv);
    builders().clear(); // processes end before the application does
    return result;
}
