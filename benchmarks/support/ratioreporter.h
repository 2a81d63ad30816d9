#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace ts::pm::bench {

/**
 * Prints Google Benchmark's table, and after it for each subject the ratio to its baseline and the growth.
 *
 * Benchmarks are named "<subject>/<variant>/<size>"; the variant "baseline" of the same subject and size is
 * what the others are compared with. Counters of a variant are printed with its line.
 */
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    struct Result
    {
        double milliseconds = 0;
        double fastest = 0; // milliseconds, if reported
        std::map<std::string, double> counters;
    };
    using Sizes = std::map<long, Result>;
    using Variants = std::map<std::string, Sizes>;

    void enter(const Run &run);
    void printVariant(const std::string &name, const Sizes &sizes, const Sizes &baseline);

    std::map<std::string, Variants> subjects;
};

/**
 * Has the growth of the fastest repetitions printed as well, which says more than that of the median while
 * neighbours on the machine hold up some repetitions and not others.
 */
void reportFastest(benchmark::internal::Benchmark *benchmark);

/** Runs all benchmarks that were registered, with a RatioReporter. The result is that of main(). */
int runBenchmarks(int argc, char **argv);

} // namespace ts::pm::bench
