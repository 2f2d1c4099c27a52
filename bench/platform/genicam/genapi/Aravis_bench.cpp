/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the same costs with libaravis
 */

#include <benchmark/benchmark.h>

#include <memory>

#include "AravisEngine.h"
#include "Descriptions.h"
#include "Report.h"

using aravistest::AravisEngine;
using aravistest::NodeHandle;

namespace genapibench {

namespace {

class BenchMemory final : public aravistest::IMemory {
public:
    void ReadMemory(std::uint64_t address, void* buffer, std::size_t size) override {
        m_registers.Read(address, buffer, size);
    }
    void WriteMemory(std::uint64_t address, const void* buffer, std::size_t size) override {
        m_registers.Write(address, buffer, size);
    }

private:
    Registers m_registers;
};

void Load(benchmark::State& state, const std::string& xml) {
    BenchMemory memory;
    const int nodes = CountNodes(xml);
    for (auto step : state) {
        AravisEngine engine(xml, memory);
        benchmark::DoNotOptimize(engine.IsLoaded());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(xml.size()) * state.iterations());
    state.counters["ns/node"] =
        benchmark::Counter(nodes * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Ask>
void Run(benchmark::State& state, const char* name, Ask&& ask) {
    BenchMemory memory;
    const AravisEngine engine(Features(), memory);
    NodeHandle node = engine.Node(name);
    for (auto step : state)
        benchmark::DoNotOptimize(ask(node));
}

void CachedInteger(benchmark::State& state) {
    Run(state, "Cached", AravisEngine::Integer);
}
void EnumerationSymbolic(benchmark::State& state) {
    Run(state, "Format", AravisEngine::Symbolic);
}
void SwissKnifeEvaluation(benchmark::State& state) {
    Run(state, "Knife", AravisEngine::Float);
}
void UncachedRead(benchmark::State& state) {
    Run(state, "Uncached", AravisEngine::Integer);
}

void CheckedWrite(benchmark::State& state) {
    std::int64_t value = 0;
    Run(state, "Checked", [&value](NodeHandle node) { return AravisEngine::SetInteger(node, value++ % 1000); });
}

void SelectorWrite(benchmark::State& state) {
    BenchMemory memory;
    const AravisEngine engine(Selection(500), memory);
    NodeHandle node = engine.Node("Selector");
    std::int64_t value = 0;
    for (auto step : state)
        benchmark::DoNotOptimize(AravisEngine::SetInteger(node, value++ % 8));
}

int WalkCategory(const AravisEngine& engine, NodeHandle category) {
    int count = 0;
    for (const char* name : AravisEngine::Features(category)) {
        NodeHandle node = engine.Node(name);
        if (node == nullptr || AravisEngine::IsImplemented(node) != true)
            continue;
        ++count;
        const int inner = WalkCategory(engine, node);
        count += inner;
        if (inner == 0 && AravisEngine::IsAvailable(node) == true)
            benchmark::DoNotOptimize(AravisEngine::AsString(node));
    }
    return count;
}

void Walk(benchmark::State& state, const std::string& xml) {
    BenchMemory memory;
    const AravisEngine engine(xml, memory);
    NodeHandle root = engine.Node("Root");
    int features = WalkCategory(engine, root);
    for (auto step : state)
        benchmark::DoNotOptimize(features = WalkCategory(engine, root));
    state.counters["ns/feature"] = benchmark::Counter(
        features * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// An engine that stays loaded while its memory is measured.
class KeptEngine final : public Kept {
public:
    explicit KeptEngine(const std::string& xml) : m_engine(xml, m_memory) {}

private:
    BenchMemory m_memory;
    AravisEngine m_engine;
};

const bool kRegistered = [] {
    for (const int nodes : {100, 2000, 20000})
        benchmark::RegisterBenchmark(("Aravis/Load/" + std::to_string(nodes)).c_str(), Load, Generated(nodes));
    benchmark::RegisterBenchmark("Aravis/Load/Imperx", Load, RealOrGenerated("imperx_b1020.xml"));
    benchmark::RegisterBenchmark("Aravis/Load/Vieworks", Load, RealOrGenerated("vieworks_vnp604.xml"));
    benchmark::RegisterBenchmark("Aravis/CachedInteger", CachedInteger);
    benchmark::RegisterBenchmark("Aravis/EnumerationSymbolic", EnumerationSymbolic);
    benchmark::RegisterBenchmark("Aravis/SwissKnifeEvaluation", SwissKnifeEvaluation);
    benchmark::RegisterBenchmark("Aravis/UncachedRead", UncachedRead);
    benchmark::RegisterBenchmark("Aravis/CheckedWrite", CheckedWrite);
    benchmark::RegisterBenchmark("Aravis/SelectorWrite", SelectorWrite);
    benchmark::RegisterBenchmark("Aravis/Walk/Imperx", Walk, RealOrGenerated("imperx_b1020.xml"));
    benchmark::RegisterBenchmark("Aravis/Walk/2000", Walk, Generated(2000));
    MemoryMeters()["Aravis"] = [](const GenICam::gcstring& xml) -> std::unique_ptr<Kept> {
        return std::make_unique<KeptEngine>(xml.str());
    };
    return true;
}();

}  // namespace

}  // namespace genapibench
