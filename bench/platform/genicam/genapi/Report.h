/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names and targets of the comparison with the other engine
 */
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Base/GCString.h"

namespace genapibench {

/// Something loaded whose memory is measured.
class Kept {
public:
    virtual ~Kept() = default;
};

/// How each engine loads a description. The text comes as each takes it: none has to copy it first.
using MemoryMeter = std::function<std::unique_ptr<Kept>(const GenICam::gcstring& xml)>;
std::map<std::string, MemoryMeter>& MemoryMeters();

/// Shows results as they come and, at the end, how many times as fast as the other engine each is.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    double TimeOf(const char* name) const;  // 0 for one that did not run
    static void PrintLimit(const char* name, double time, double other, double limit, const char* what);

    std::map<std::string, double> m_times;  // nanoseconds of the processor
};

}  // namespace genapibench
