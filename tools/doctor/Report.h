/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the doctor found, ready to be printed
 */
#pragma once

#include <string>
#include <vector>

#include "output/Json.h"

namespace tools {

class Output;

enum class Health { kFine, kRemark, kWarning, kBad };

/// One thing that was looked at.
struct Observation {
    Health health = Health::kFine;
    std::string subject;  ///< a name: a variable, a folder, a library, a port
    std::string state;
    std::string advice;  ///< what to do about it; empty when nothing
};

/// Things that belong together.
struct Section {
    std::string title;
    std::vector<Observation> observations;
};

/// All of it, with the verdict.
struct Report {
    std::vector<Section> sections;
    bool healthy = false;
    std::string verdict;
    std::string nextStep;
};

void Print(Output& output, const Report& report);
Json ToJson(const Report& report);

}  // namespace tools
