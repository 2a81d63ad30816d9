#include "support/ratioreporter.h"

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace ts::pm::bench {

void RatioReporter::ReportRuns(const std::vector<Run> &runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run &run : runs) {
        // With repetitions the median counts, without them the only run.
        const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
        // The flag of a failed run is named differently from version to version; that it took no time is not.
        const bool hasFailed = run.real_accumulated_time <= 0;
        if (hasFailed || (run.run_type == Run::RT_Aggregate && !isMedian))
            continue;
        std::istringstream name(run.run_name.function_name + "/" + run.run_name.args);
        std::string subject;
        std::string variant;
        std::string size;
        std::getline(name, subject, '/');
        std::getline(name, variant, '/');
        std::getline(name, size, '/');
        if (size.empty())
            continue;
        Result &result = subjects[subject][variant][std::stol(size)];
        const double scale = benchmark::GetTimeUnitMultiplier(benchmark::kMillisecond)
                             / benchmark::GetTimeUnitMultiplier(run.time_unit);
        result.milliseconds = run.GetAdjustedRealTime() * scale;
        for (const auto &counter : run.counters)
            result.counters[counter.first] = counter.second.value;
    }
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
        for (const auto &[counter, value] : result.counters)
            std::printf("  %s %.1f", counter.c_str(), value);
        std::printf("\n");
        smaller = &result;
    }
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
