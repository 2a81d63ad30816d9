// The worker's half of a list update: finding the steps, moves included, against sorting as many numbers.

#include "support/ratioreporter.h"

#include "presentation/moveplanner_p.h"

#include <QVector>

#include <algorithm>
#include <numeric>
#include <random>

namespace {

using namespace ts::pm;
using namespace ts::pm::bench;

constexpr unsigned seed = 20260502;

QVector<int> rows(int count)
{
    QVector<int> rows(count);
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

QVector<int> reversed(int count)
{
    QVector<int> targets = rows(count);
    std::reverse(targets.begin(), targets.end());
    return targets;
}

// Row 0 stays where it is, since nothing can be moved there.
QVector<int> shuffled(int count)
{
    QVector<int> targets = rows(count);
    std::mt19937 engine(seed);
    for (int i = count - 1; i > 1; --i)
        std::swap(targets[i], targets[1 + int(engine() % unsigned(i))]);
    return targets;
}

void sortNumbers(benchmark::State &state, const QVector<int> &targets)
{
    for (auto _ : state) {
        QVector<int> sorted = targets;
        std::sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    }
}

void planMoves(benchmark::State &state, const QVector<int> &targets)
{
    int moves = 0;
    for (auto _ : state) {
        MovePlanner planner(targets);
        moves = 0;
        for (MovePlanner::Move move = planner.next(); move.from != move.to && move.to > 0;
             move = planner.next()) {
            planner.apply(move);
            ++moves;
        }
    }
    state.counters["moves"] = moves;
}

void reversedBaseline(benchmark::State &state)
{
    sortNumbers(state, reversed(int(state.range(0))));
}

void reversedMoves(benchmark::State &state)
{
    planMoves(state, reversed(int(state.range(0))));
}

void shuffledBaseline(benchmark::State &state)
{
    sortNumbers(state, shuffled(int(state.range(0))));
}

void shuffledMoves(benchmark::State &state)
{
    planMoves(state, shuffled(int(state.range(0))));
}

void allSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : {10000, 63000, 250000})
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly();
}

BENCHMARK(reversedBaseline)->Name("reversed/baseline")->Apply(allSizes);
BENCHMARK(reversedMoves)->Name("reversed/moves")->Apply(allSizes);
BENCHMARK(shuffledBaseline)->Name("shuffled/baseline")->Apply(allSizes);
BENCHMARK(shuffledMoves)->Name("shuffled/moves")->Apply(allSizes);

} // namespace

int main(int argc, char **argv)
{
    return runBenchmarks(argc, argv);
}
