/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The comparison with the other engine, and the program
 */

#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "Descriptions.h"
#include "Table.h"

namespace genapibench {

namespace {

struct Target {
    const char* name;
    double factor;
};

const std::vector<Target> kTargets = {{"Load/Imperx", 6},
                                      {"Load/Vieworks", 6},
                                      {"Load/100", 6},
                                      {"Load/2000", 6},
                                      {"Load/20000", 6},
                                      {"CachedInteger", 15},
                                      {"EnumerationSymbolic", 10},
                                      {"SwissKnifeEvaluation", 8},
                                      {"UncachedRead", 4},
                                      {"CheckedWrite", 4},
                                      {"Walk/Imperx", 5},
                                      {"Walk/2000", 5}};

constexpr double kMemoryTarget = 0.4;
constexpr double kLookupTarget = 2.0;
// Caches of the processor hold a small description and not a large one.
constexpr double kConstantCostTarget = 1.3;
constexpr const char* kRepetitions = "--benchmark_repetitions";

// Before anything else runs, and with everything kept: an allocator that reuses what was freed would hide the rest.
void MeasureMemory() {
    const std::vector<std::pair<const char*, std::string>> descriptions = {
        {"100", Generated(100)},
        {"2000", Generated(2000)},
        {"20000", Generated(20000)},
        {"Imperx", RealOrGenerated("imperx_b1020.xml")},
        {"Vieworks", RealOrGenerated("vieworks_vnp604.xml")}};
    std::vector<std::unique_ptr<Kept>> kept;
    std::printf("%-24s %12s %12s\n", "bytes/node", "ours", "Aravis");
    for (const auto& [name, xml] : descriptions) {
        const int nodes = CountNodes(xml);
        const GenICam::gcstring text(xml);
        std::map<std::string, double> used;
        for (const auto& [engine, load] : MemoryMeters()) {
            const std::size_t before = HeapInUse();
            kept.push_back(load(text));
            used[engine] = static_cast<double>(HeapInUse() - before) / nodes;
        }
        const double part = used["Aravis"] > 0.0 ? used["Ours"] / used["Aravis"] : 0.0;
        std::printf("%-24s %12.0f %12.0f %7.0f%% %7.0f%% %s\n", name, used["Ours"], used["Aravis"], 100 * part,
                    100 * kMemoryTarget, part <= kMemoryTarget ? "" : "MISSED");
    }
}

}  // namespace

std::map<std::string, MemoryMeter>& MemoryMeters() {
    static std::map<std::string, MemoryMeter> meters;
    return meters;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median")
            continue;
        const std::string name =
            run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
        m_times[name] = run.GetAdjustedCPUTime();
    }
}

void RatioReporter::Finalize() {
    ConsoleReporter::Finalize();
    std::printf("\n%-24s %12s %12s %8s %8s\n", "median of CPU time", "ours ns", "Aravis ns", "factor", "target");
    for (const Target& target : kTargets) {
        const auto ours = m_times.find(std::string("Ours/") + target.name);
        const auto other = m_times.find(std::string("Aravis/") + target.name);
        if (ours == m_times.end() || other == m_times.end())
            continue;
        const double factor = other->second / ours->second;
        std::printf("%-24s %12.1f %12.1f %8.1f %8.1f %s\n", target.name, ours->second, other->second, factor,
                    target.factor, factor >= target.factor ? "" : "MISSED");
    }
    PrintLimit("Lookup", TimeOf("Ours/Lookup"), TimeOf("UnorderedMap/Lookup"), kLookupTarget,
               "at most, of std::unordered_map's");
    PrintLimit("ns/node of 20000 and 100", TimeOf("Ours/Load/20000") / CountNodes(Generated(20000)),
               TimeOf("Ours/Load/100") / CountNodes(Generated(100)), kConstantCostTarget, "at most");
}

double RatioReporter::TimeOf(const char* name) const {
    const auto found = m_times.find(name);
    return found != m_times.end() ? found->second : 0.0;
}

void RatioReporter::PrintLimit(const char* name, double time, double other, double limit, const char* what) {
    if (time <= 0.0 || other <= 0.0)
        return;
    const double factor = time / other;
    std::printf("%-24s %12.1f %12.1f %8.2f %8.1f %s %s\n", name, time, other, factor, limit, what,
                factor <= limit ? "" : "MISSED");
}

}  // namespace genapibench

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    const std::string_view task = argc == 2 ? argv[1] : "";
    if (task.starts_with("--one="))
        return genapibench::MeasureOne(std::string(task.substr(6)));
    if (task == "--table")
        return genapibench::PrintTable(argv[0]);
    const bool figuresOnly = argc > 1 && std::string_view(argv[argc - 1]) == "--figures-only";
    if (figuresOnly) {
        --argc;
        arguments.pop_back();
        benchmark::Initialize(&argc, arguments.data());
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    }
    const bool isTold = std::any_of(arguments.begin(), arguments.end(), [](const char* argument) {
        return std::string_view(argument).starts_with(genapibench::kRepetitions);
    });
    // One run is no median.
    std::string repetitions = std::string(genapibench::kRepetitions) + "=5";
    if (!isTold)
        arguments.push_back(repetitions.data());
    argc = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    argv = arguments.data();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    genapibench::MeasureMemory();
    genapibench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
