/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The comparison that counts: each figure from processes that do nothing else
 */

#include "Table.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>
#include <vector>

#include "Descriptions.h"
#include "Report.h"

namespace genapibench {

namespace {

constexpr int kRounds = 5;
constexpr int kLoads = 21;
constexpr int kMaps = 31;  // more of the same description

/// Nanoseconds and bytes of one engine with one description.
struct Figures {
    double load = 0.0;
    double free = 0.0;
    double peak = 0.0;  ///< of the first load
    double kept = 0.0;  ///< by the first map
    double nextLoad = 0.0;
    double nextKept = 0.0;  ///< by each further map of the same description
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

template <class Work>
double TimeOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return static_cast<double>(std::chrono::nanoseconds(std::chrono::steady_clock::now() - start).count());
}

/// Kilobytes that the system states of this process.
double StatusOf(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (std::string_view(line).starts_with(name))
            return std::stod(line.substr(name.size()));
    }
    return 0.0;
}

// What was the most memory begins anew.
void ForgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// XML alone, without nodes: the floor. In place, with the fewest options that read the same texts: sections and
/// references to characters count, as they do for the node maps.
class ParsedXml final : public Kept {
public:
    explicit ParsedXml(std::string& xml) {
        m_document.load_buffer_inplace(xml.data(), xml.size(), pugi::parse_cdata | pugi::parse_escapes,
                                       pugi::encoding_utf8);
    }

private:
    pugi::xml_document m_document;
};

std::string Source(const std::string& name) {
    return name.starts_with("generated:") ? Generated(std::stoi(name.substr(10))) : RealOrGenerated(name);
}

/// A description in the form that an engine takes it in; pugixml writes into it.
struct Text {
    explicit Text(const std::string& xml) : whole(xml), inPlace(xml) {}

    GenICam::gcstring whole;
    std::string inPlace;
};

std::unique_ptr<Kept> Load(const std::string& engine, Text& text) {
    if (engine == "pugixml")
        return std::make_unique<ParsedXml>(text.inPlace);
    const auto meter = MemoryMeters().find(engine);
    return meter != MemoryMeters().end() ? meter->second(text.whole) : nullptr;
}

Figures Measure(const std::string& engine, const std::string& xml) {
    Figures figures;
    Text copy(xml);
    TrimHeap();
    ForgetPeak();
    const double before = StatusOf("VmRSS:");
    const std::size_t heap = HeapInUse();
    std::vector<std::unique_ptr<Kept>> maps(1);
    maps[0] = Load(engine, copy);
    figures.peak = 1024.0 * (StatusOf("VmHWM:") - before);
    figures.kept = static_cast<double>(HeapInUse() - heap);
    std::vector<double> loads;
    std::vector<double> frees;
    for (int i = 0; i < kMaps && engine == "Ours"; ++i)
        loads.push_back(TimeOf([&] { maps.push_back(Load(engine, copy)); }));
    figures.nextLoad = Median(loads);
    figures.nextKept = (static_cast<double>(HeapInUse() - heap) - figures.kept) / kMaps;
    maps.clear();
    loads.clear();
    for (int i = 0; i < kLoads; ++i) {
        copy.inPlace = xml;
        std::unique_ptr<Kept> map;
        loads.push_back(TimeOf([&] { map = Load(engine, copy); }));
        frees.push_back(TimeOf([&] { map.reset(); }));
    }
    figures.load = Median(loads);
    figures.free = Median(frees);
    return figures;
}

// What a child prints.
std::string OutputOf(const std::string& command) {
    std::string output;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    char piece[256];
    while (pipe && std::fgets(piece, sizeof piece, pipe.get()) != nullptr)
        output += piece;
    return output;
}

Figures FiguresOf(const std::string& program, const std::string& engine, const std::string& name) {
    std::istringstream text(OutputOf("'" + program + "' --one=" + engine + "/" + name));
    Figures figures;
    text >> figures.load >> figures.free >> figures.peak >> figures.kept >> figures.nextLoad >> figures.nextKept;
    return figures;
}

double MedianOf(const std::vector<Figures>& rounds, double Figures::*figure) {
    std::vector<double> values;
    for (const Figures& round : rounds)
        values.push_back(round.*figure);
    return Median(values);
}

void PrintRow(const char* what, double ours, double other, double ratio, double limit, bool isAtMost) {
    const bool isReached = isAtMost ? ratio <= limit : ratio >= limit;
    std::printf("  %-34s %12.0f %12.0f ratio %6.2f limit %5.1f %s\n", what, ours, other, ratio, limit,
                isReached ? "" : "MISSED");
}

void PrintDescription(const std::string& program, const std::string& name) {
    std::vector<Figures> ours;
    std::vector<Figures> aravis;
    std::vector<Figures> xml;
    for (int round = 0; round < kRounds; ++round) {
        ours.push_back(FiguresOf(program, "Ours", name));
        aravis.push_back(FiguresOf(program, "Aravis", name));
        xml.push_back(FiguresOf(program, "pugixml", name));
    }
    std::printf("%s (%zu bytes)\n", name.c_str(), Source(name).size());
    const double load = MedianOf(ours, &Figures::load);
    const double kept = MedianOf(ours, &Figures::kept);
    const auto row = [&](const char* what, double Figures::*figure, double limit) {
        const double mine = MedianOf(ours, figure);
        const double other = MedianOf(aravis, figure);
        PrintRow(what, mine, other, other / std::max(mine, 1.0), limit, false);
    };
    if (MedianOf(aravis, &Figures::load) > 0.0) {
        row("load alone, ns", &Figures::load, 10.0);
        row("free alone, ns", &Figures::free, 1.0);
        row("peak memory of the first load", &Figures::peak, 4.0);
        row("map kept, bytes", &Figures::kept, 8.0);
    }
    const double parsed = MedianOf(xml, &Figures::load);
    PrintRow("load against pugixml's parsing, ns", load, parsed, load / std::max(parsed, 1.0), 2.5, true);
    const double next = MedianOf(ours, &Figures::nextLoad);
    PrintRow("2nd to 32nd map against load, ns", next, load, next / std::max(load, 1.0), 0.5, true);
    const double nextKept = MedianOf(ours, &Figures::nextKept);
    PrintRow("2nd to 32nd map kept, bytes", nextKept, kept, nextKept / std::max(kept, 1.0), 0.5, true);
}

// The time of one work by the benchmark of that name, in a process of its own; 0 when there is none.
double WorkOf(const std::string& program, const std::string& name) {
    const std::string output = OutputOf("'" + program + "' --benchmark_filter='^" + name +
                                        "$' --benchmark_repetitions=1 --benchmark_min_time=0.1 "
                                        "--benchmark_format=csv --figures-only 2>/dev/null");
    const std::size_t line = output.find('"' + name + '"');
    // name, iterations, real_time, cpu_time
    std::size_t field = line;
    for (int comma = 0; comma < 3 && field != std::string::npos; ++comma)
        field = output.find(',', field) + 1;
    return line != std::string::npos && field != std::string::npos ? std::stod(output.substr(field)) : 0.0;
}

void PrintWork(const std::string& program, const char* ours, const char* aravis, double limit) {
    std::vector<double> mine;
    std::vector<double> other;
    for (int round = 0; round < kRounds; ++round) {
        mine.push_back(WorkOf(program, std::string("Ours/") + ours));
        other.push_back(WorkOf(program, std::string("Aravis/") + aravis));
    }
    PrintRow(ours, Median(mine), Median(other), Median(other) / std::max(Median(mine), 1e-3), limit, false);
}

}  // namespace

int MeasureOne(const std::string& task) {
    const std::size_t slash = task.find('/');
    const Figures figures = Measure(task.substr(0, slash), Source(task.substr(slash + 1)));
    std::printf("%.0f %.0f %.0f %.0f %.0f %.0f\n", figures.load, figures.free, figures.peak, figures.kept,
                figures.nextLoad, figures.nextKept);
    return 0;
}

int PrintTable(const std::string& program) {
    std::printf("  %-34s %12s %12s\n", "medians of fresh processes", "ours", "the other");
    for (const char* name : {"aravis_fakecamera.xml", "aravis_testgenicam.xml", "firstlight_cred2.xml", "pco_1600.xml",
                             "vieworks_vnp604.xml", "imperx_b1020.xml", "generated:40", "generated:400",
                             "generated:4000", "generated:18000"})
        PrintDescription(program, name);
    std::printf("work, ns\n");
    PrintWork(program, "SelectorWrite", "SelectorWrite", 4.0);
    PrintWork(program, "CachedInteger", "CachedInteger", 43.0);
    PrintWork(program, "EnumerationSymbolic", "EnumerationSymbolic", 32.0);
    PrintWork(program, "SwissKnifeCached", "SwissKnifeEvaluation", 66.0);
    PrintWork(program, "UncachedRead", "UncachedRead", 20.0);
    PrintWork(program, "CheckedWrite", "CheckedWrite", 12.0);
    PrintWork(program, "Walk/Imperx", "Walk/Imperx", 10.0);
    PrintWork(program, "Walk/2000", "Walk/2000", 10.0);
    return 0;
}

}  // namespace genapibench
