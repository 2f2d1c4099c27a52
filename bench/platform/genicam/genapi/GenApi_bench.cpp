/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the node-map engine costs
 */

#include <benchmark/benchmark.h>

#include <memory>
#include <unordered_map>

#include "Descriptions.h"
#include "GenApi/GenApi.h"
#include "Report.h"

using namespace GenApi;

namespace genapibench {

namespace {

class BenchPort final : public IPort {
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        m_registers.Read(static_cast<std::uint64_t>(address), buffer, static_cast<std::size_t>(length));
    }
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override {
        m_registers.Write(static_cast<std::uint64_t>(address), buffer, static_cast<std::size_t>(length));
    }

private:
    Registers m_registers;
};

/// A loaded map over registers.
struct Loaded {
    explicit Loaded(const std::string& xml) {
        map._LoadXMLFromString(xml);
        NodeList_t nodes;
        map._GetNodes(nodes);
        for (INode* node : nodes) {
            if (node->GetPrincipalInterfaceType() == intfIPort)
                map._Connect(&port, node->GetName());
        }
    }
    BenchPort port;
    CNodeMapRef map;
};

void Load(benchmark::State& state, const std::string& xml) {
    const int nodes = CountNodes(xml);
    const GenICam::gcstring text(xml);
    for (auto step : state) {
        CNodeMapRef map;
        map._LoadXMLFromString(text);
        benchmark::DoNotOptimize(map._GetNodeMap());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(xml.size()) * state.iterations());
    state.counters["ns/node"] =
        benchmark::Counter(nodes * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void CachedInteger(benchmark::State& state) {
    Loaded loaded(Features());
    CIntegerPtr node = loaded.map._GetNode("Cached");
    for (auto step : state)
        benchmark::DoNotOptimize(node->GetValue());
}

void EnumerationSymbolic(benchmark::State& state) {
    Loaded loaded(Features());
    CEnumerationPtr node = loaded.map._GetNode("Format");
    node->SetIntValue(7);
    for (auto step : state)
        benchmark::DoNotOptimize(node->ToString());
}

// With the cache passed over, so that the formula is evaluated each time.
void SwissKnifeEvaluation(benchmark::State& state) {
    Loaded loaded(Features());
    CFloatPtr node = loaded.map._GetNode("Knife");
    for (auto step : state)
        benchmark::DoNotOptimize(node->GetValue(false, true));
}

void SwissKnifeCached(benchmark::State& state) {
    Loaded loaded(Features());
    CFloatPtr node = loaded.map._GetNode("Knife");
    for (auto step : state)
        benchmark::DoNotOptimize(node->GetValue());
}

void UncachedRead(benchmark::State& state) {
    Loaded loaded(Features());
    CIntegerPtr node = loaded.map._GetNode("Uncached");
    for (auto step : state)
        benchmark::DoNotOptimize(node->GetValue());
}

void CheckedWrite(benchmark::State& state) {
    Loaded loaded(Features());
    CIntegerPtr node = loaded.map._GetNode("Checked");
    std::int64_t value = 0;
    for (auto step : state)
        node->SetValue(value++ % 1000);
}

void SelectorWrite(benchmark::State& state) {
    Loaded loaded(Selection(500));
    CIntegerPtr node = loaded.map._GetNode("Selector");
    std::int64_t value = 0;
    for (auto step : state)
        node->SetValue(value++ % 8);
}

// As programs that list features do: a node says what it is.
int WalkCategory(ICategory& category) {
    int count = 0;
    FeatureList_t features;
    category.GetFeatures(features);
    for (IValue* feature : features) {
        ++count;
        if (feature->GetNode()->GetPrincipalInterfaceType() == intfICategory) {
            count += WalkCategory(dynamic_cast<ICategory&>(*feature));
        } else if (IsReadable(feature)) {
            try {
                benchmark::DoNotOptimize(feature->ToString());
            } catch (const GenICam::GenericException&) {
                continue;
            }
        }
    }
    return count;
}

void Walk(benchmark::State& state, const std::string& xml) {
    Loaded loaded(xml);
    CCategoryPtr root = loaded.map._GetNode("Root");
    int features = WalkCategory(*root);
    for (auto step : state)
        benchmark::DoNotOptimize(features = WalkCategory(*root));
    state.counters["ns/feature"] = benchmark::Counter(
        features * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::vector<GenICam::gcstring> NamesOf(const CNodeMapRef& map) {
    NodeList_t nodes;
    map._GetNodes(nodes);
    std::vector<GenICam::gcstring> names;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        names.push_back(nodes[(i * 7919) % nodes.size()]->GetName());
    return names;
}

void Lookup(benchmark::State& state) {
    Loaded loaded(Generated(5000));
    const std::vector<GenICam::gcstring> names = NamesOf(loaded.map);
    const INodeMap* map = loaded.map._GetNodeMap();
    std::size_t next = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(map->GetNode(names[next]));
        next = next + 1 < names.size() ? next + 1 : 0;
    }
}

void UnorderedMapLookup(benchmark::State& state) {
    Loaded loaded(Generated(5000));
    const std::vector<GenICam::gcstring> names = NamesOf(loaded.map);
    std::unordered_map<std::string, INode*> map;
    for (const GenICam::gcstring& name : names)
        map.emplace(name.str(), loaded.map._GetNode(name));
    std::size_t next = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(map.find(names[next].str())->second);
        next = next + 1 < names.size() ? next + 1 : 0;
    }
}

/// A map that stays loaded while its memory is measured.
class KeptMap final : public Kept {
public:
    explicit KeptMap(const GenICam::gcstring& xml) { m_map._LoadXMLFromString(xml); }

private:
    CNodeMapRef m_map;
};

const bool kRegistered = [] {
    for (const int nodes : {100, 2000, 20000})
        benchmark::RegisterBenchmark(("Ours/Load/" + std::to_string(nodes)).c_str(), Load, Generated(nodes));
    benchmark::RegisterBenchmark("Ours/Load/Imperx", Load, RealOrGenerated("imperx_b1020.xml"));
    benchmark::RegisterBenchmark("Ours/Load/Vieworks", Load, RealOrGenerated("vieworks_vnp604.xml"));
    benchmark::RegisterBenchmark("Ours/CachedInteger", CachedInteger);
    benchmark::RegisterBenchmark("Ours/EnumerationSymbolic", EnumerationSymbolic);
    benchmark::RegisterBenchmark("Ours/SwissKnifeEvaluation", SwissKnifeEvaluation);
    benchmark::RegisterBenchmark("Ours/SwissKnifeCached", SwissKnifeCached);
    benchmark::RegisterBenchmark("Ours/UncachedRead", UncachedRead);
    benchmark::RegisterBenchmark("Ours/CheckedWrite", CheckedWrite);
    benchmark::RegisterBenchmark("Ours/SelectorWrite", SelectorWrite);
    benchmark::RegisterBenchmark("Ours/Walk/Imperx", Walk, RealOrGenerated("imperx_b1020.xml"));
    benchmark::RegisterBenchmark("Ours/Walk/2000", Walk, Generated(2000));
    benchmark::RegisterBenchmark("Ours/Lookup", Lookup);
    benchmark::RegisterBenchmark("UnorderedMap/Lookup", UnorderedMapLookup);
    MemoryMeters()["Ours"] = [](const GenICam::gcstring& xml) -> std::unique_ptr<Kept> {
        return std::make_unique<KeptMap>(xml);
    };
    return true;
}();

}  // namespace

}  // namespace genapibench
