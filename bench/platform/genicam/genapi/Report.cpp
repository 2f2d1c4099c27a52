/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The comparison with the other engine, and the program
 */

#include "Report.h"

#include <cstdio>
#include <utility>
#include <vector>

#include "Descriptions.h"

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
        std::map<std::string, double> used;
        for (const auto& [engine, load] : MemoryMeters()) {
            const std::size_t before = HeapInUse();
            kept.push_back(load(xml));
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
    const auto lookup = m_times.find("Ours/Lookup");
    const auto map = m_times.find("UnorderedMap/Lookup");
    if (lookup != m_times.end() && map != m_times.end())
        std::printf("%-24s %12.1f %12.1f %8.2f %8.1f (std::unordered_map, at most)\n", "Lookup", lookup->second,
                    map->second, lookup->second / map->second, 2.0);
}

}  // namespace genapibench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    genapibench::MeasureMemory();
    genapibench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
