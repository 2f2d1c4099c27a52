/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What checking a description costs when its nodes depend on one another as deep as they can
 *
 * The counter "ratio" is the seconds that it took, "limit" how many they may be.
 */

#include <benchmark/benchmark.h>

#include <string>

#include "description/Linter.h"

namespace {

constexpr int kNodes = 100000;

/// A chain of nodes, each made of the name of the next one; the last one leads on to \a last.
template <class Make>
std::string Chain(Make&& make, const std::string& last) {
    std::string xml =
        "<RegisterDescription ModelName='M' VendorName='V' SchemaMajorVersion='1' SchemaMinorVersion='1' "
        "SchemaSubMinorVersion='0' xmlns='http://www.genicam.org/GenApi/Version_1_1'>"
        "<Category Name='Root'><pFeature>N0</pFeature></Category><Integer Name='End'><Value>1</Value></Integer>";
    for (int i = 0; i < kNodes; ++i)
        xml += make("N" + std::to_string(i), i + 1 < kNodes ? "N" + std::to_string(i + 1) : last);
    return xml + "</RegisterDescription>";
}

std::string Value(const std::string& name, const std::string& next) {
    return "<Integer Name='" + name + "'><pValue>" + next + "</pValue></Integer>";
}
std::string Rule(const std::string& name, const std::string& next) {
    return "<Integer Name='" + name + "'><pIsAvailable>" + next + "</pIsAvailable><pValue>" + next +
           "</pValue></Integer>";
}
std::string Formula(const std::string& name, const std::string& next) {
    return "<IntSwissKnife Name='" + name + "'><pVariable Name='X'>" + next +
           "</pVariable><Formula>X + 0</Formula></IntSwissKnife>";
}

void Lint(benchmark::State& state, const std::string& xml) {
    std::size_t findings = 0;
    for (auto step : state)
        benchmark::DoNotOptimize(findings = tools::LintDescription(xml).size());
    state.counters["findings"] = static_cast<double>(findings);
    state.counters["ratio"] =
        benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["limit"] = 1;
}

BENCHMARK_CAPTURE(Lint, ChainOfValues, Chain(Value, "End"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Lint, ChainOfRules, Chain(Rule, "End"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Lint, ChainOfFormulas, Chain(Formula, "End"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Lint, CircleOfValues, Chain(Value, "N0"))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Lint, CircleOfFormulas, Chain(Formula, "N0"))->Unit(benchmark::kMillisecond);

}  // namespace
