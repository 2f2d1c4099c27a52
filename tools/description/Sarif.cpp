/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Findings of the linter in the Static Analysis Results Interchange Format (SARIF) 2.1.0
 */
#include "description/Sarif.h"

#include "description/rules/Rules.h"
#include "findings/FindingPrinter.h"

namespace tools {

namespace {

Json RuleList() {
    Json rules = Json::array();
    for (const Rule& rule : AllRules())
        rules.push_back({{"id", rule.id},
                         {"shortDescription", {{"text", rule.meaning}}},
                         {"defaultConfiguration", {{"level", NameOf(rule.severity)}}}});
    return rules;
}

Json ResultOf(const std::string& file, const Finding& finding) {
    Json location{{"artifactLocation", {{"uri", file}}}};
    // What concerns the file as a whole has no place in it.
    if (finding.place.line > 0)
        location["region"] = {{"startLine", finding.place.line}, {"startColumn", finding.place.column}};
    const std::string text = finding.hint.empty() ? finding.text : finding.text + " (" + finding.hint + ")";
    return {{"ruleId", finding.rule},
            {"level", NameOf(finding.severity)},
            {"message", {{"text", text}}},
            {"locations", Json::array({{{"physicalLocation", std::move(location)}}})}};
}

}  // namespace

Json SarifOf(const std::string& file, const Findings& findings) {
    Json results = Json::array();
    for (const Finding& finding : findings)
        results.push_back(ResultOf(file, finding));
    const Json run{{"tool", {{"driver", {{"name", "vanto-cl describe"}, {"rules", RuleList()}}}}},
                   {"columnKind", "unicodeCodePoints"},
                   {"results", std::move(results)}};
    return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
            {"version", "2.1.0"},
            {"runs", Json::array({run})}};
}

}  // namespace tools
