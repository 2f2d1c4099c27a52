/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The rules of the linter that look at the text of a description alone
 */
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "description/DescriptionModel.h"

namespace tools {

/// One thing that may be wrong. docs/linter.md shows each by its name, which never changes.
struct Rule {
    std::string_view id;
    Severity severity;
    std::string_view meaning;  ///< one line for lists
};

/// Takes what the rules find.
class RuleReport {
public:
    explicit RuleReport(const DescriptionModel& model) : m_model(model) {}

    const DescriptionModel& Model() const noexcept { return m_model; }
    void Add(std::string_view rule, const Place& place, std::string text, std::string hint = {});
    std::vector<Finding> Take() { return std::move(m_findings); }

private:
    const DescriptionModel& m_model;
    std::vector<Finding> m_findings;
};

std::span<const Rule> AllRules();
const Rule& RuleOf(std::string_view id);

void CheckRegisters(RuleReport& report);
void CheckValues(RuleReport& report);
void CheckEnumerations(RuleReport& report);
void CheckFormulas(RuleReport& report);
void CheckStructure(RuleReport& report);
void CheckStandard(RuleReport& report);

std::vector<Finding> FindBrokenRules(const DescriptionModel& model);

/// A name of a node for messages, with its kind.
std::string Label(const DescribedNode& node);

}  // namespace tools
