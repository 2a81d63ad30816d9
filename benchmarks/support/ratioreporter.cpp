#include "support/ratioreporter.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace ts::pm::bench {

namespace {

const char *const fastest = "fastest";

double shortest(const std::vector<double> &times)
{
    return *std::min_element(times.begin(), times.end());
}

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run> &runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
        // The flag of a failed run is named differently from version to version; that it took no time is not.
        if (run.real_accumulated_time > 0)
            enter(run);
    }
}

// With repetitions the median counts, without them the only run.
void RatioReporter::enter(const Run &run)
{
    const bool isFastest = run.run_type == Run::RT_Aggregate && run.aggregate_name == fastest;
    if (run.run_type == Run::RT_Aggregate && !isFastest && run.aggregate_name != "median")
        return;
    std::istringstream name(run.run_name.function_name + "/" + run.run_name.args);
    std::string subject;
    std::string variant;
    std::string size;
    std::getline(name, subject, '/');
    std::getline(name, variant, '/');
    std::getline(name, size, '/');
    if (size.empty())
        return;
    Result &result = subjects[subject][variant][std::stol(size)];
    const double scale = benchmark::GetTimeUnitMultiplier(benchmark::kMillisecond)
                         / benchmark::GetTimeUnitMultiplier(run.time_unit);
    const double milliseconds = run.GetAdjustedRealTime() * scale;
    if (isFastest) {
        result.fastest = milliseconds;
        return;
    }
    result.milliseconds = milliseconds;
    for (const auto &counter : run.counters)
        result.counters[counter.first] = counter.second.value;
}

void RatioReporter::Finalize()
{
    for (const auto &[subject, variants] : subjects) {
        std::printf("\n%s\n", subject.c_str());
        const auto baseline = variants.find("baseline");
        for (const auto &[name, sizes] : variants)
            printVariant(name, sizes, baseline == variants.end() ? Sizes() : baseline->second);
    }
}

void RatioReporter::printVariant(const std::string &name, const Sizes &sizes, const Sizes &baseline)
{
    const Result *smaller = nullptr;
    for (const auto &[size, result] : sizes) {
        std::printf("  %-24s %8ld  %10.3f ms", name.c_str(), size, result.milliseconds);
        const auto base = baseline.find(size);
        if (name != "baseline" && base != baseline.end() && base->second.milliseconds > 0)
            std::printf("  ratio %6.2f", result.milliseconds / base->second.milliseconds);
        if (smaller && smaller->milliseconds > 0)
            std::printf("  growth %5.2f", result.milliseconds / smaller->milliseconds);
        if (smaller && smaller->fastest > 0)
            std::printf("  of the fastest %5.2f", result.fastest / smaller->fastest);
        for (const auto &[counter, value] : result.counters)
            std::printf("  %s %.1f", counter.c_str(), value);
        std::printf("\n");
        smaller = &result;
    }
}

void reportFastest(benchmark::internal::Benchmark *benchmark)
{
    benchmark->ComputeStatistics(fastest, shortest);
}

// The repetitions of all benchmarks are run in one random order, so that a machine that is slower for a while
// does not fall upon one side of a ratio. The command line can turn that off.
int runBenchmarks(int argc, char **argv)
{
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char *> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleaving.data());
    arguments.push_back(nullptr);
    int count = argc + 1;
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}

} // namespace ts::pm::bench
