/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogRules: which messages of which categories are wanted, as VANTO_LOG says it
 */

#include "vanto/LogRules.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/Text.h"
#include "base/Wildcard.h"
#include "vanto/TraceLog.h"

namespace Vanto::tracelog {

namespace {

struct LevelName {
    const char* name;
    std::uint32_t threshold;
};

constexpr std::array<LevelName, 6> kLevels{
    {{"error", kError}, {"warning", kWarning}, {"info", kInfo}, {"debug", kDebug}, {"trace", kTrace}, {"off", kOff}}};

std::optional<std::uint32_t> ThresholdByName(std::string_view name) {
    for (const LevelName& level : kLevels) {
        if (base::EqualsIgnoringCase(level.name, name))
            return level.threshold;
    }
    return std::nullopt;
}

}  // namespace

/**
 * \brief Read rules
 * \param[in] text Entries "pattern:level", separated by commas; a level alone counts for every category. A pattern may
 * hold * and ?; a level is error, warning, info, debug, trace or off, and stands for itself and what is more severe.
 *
 * Blanks around entries and empty entries are ignored; entries that can't be understood end up in GetBadEntries.
 */
LogRules::LogRules(std::string_view text) {
    while (!text.empty()) {
        const std::size_t comma = std::min(text.find(','), text.size());
        AddEntry(base::Trimmed(text.substr(0, comma)));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
}

void LogRules::AddEntry(std::string_view entry) {
    if (entry.empty())
        return;
    const std::size_t colon = entry.rfind(':');
    const bool isLevelAlone = colon == std::string_view::npos;
    const std::string_view pattern = isLevelAlone ? "*" : base::Trimmed(entry.substr(0, colon));
    const auto threshold = ThresholdByName(isLevelAlone ? entry : base::Trimmed(entry.substr(colon + 1)));
    if (pattern.empty() || !threshold)
        m_badEntries.emplace_back(entry);
    else
        m_rules.push_back({std::string(pattern), *threshold});
}

/**
 * \brief The lowest level that is wanted of a category; kOff when no rule matches it
 */
std::uint32_t LogRules::ThresholdOf(std::string_view category) const noexcept {
    for (const Rule& rule : m_rules) {
        if (base::MatchesWildcard(rule.pattern, category))
            return rule.threshold;
    }
    return kOff;
}

const char* GetLevelName(std::uint32_t level) noexcept {
    for (const LevelName& known : kLevels) {
        if (level >= known.threshold)
            return known.name;
    }
    return "trace";
}

}  // namespace Vanto::tracelog
