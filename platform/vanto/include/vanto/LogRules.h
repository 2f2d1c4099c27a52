/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogRules: which messages of which categories are wanted, as VANTO_LOG says it
 */
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vanto/VantoTypes.h"

namespace Vanto::tracelog {

/// Rules like "Vanto.CLSer.*:debug,*:warning": the first whose pattern matches a category decides. Immutable.
class VANTOBASE_API LogRules {
public:
    LogRules() = default;
    explicit LogRules(std::string_view text);

    std::uint32_t ThresholdOf(std::string_view category) const noexcept;
    /// Whether there are no rules.
    bool IsEmpty() const noexcept { return m_rules.empty(); }
    /// The entries that could not be understood and are ignored.
    const std::vector<std::string>& GetBadEntries() const noexcept { return m_badEntries; }

private:
    struct Rule {
        std::string pattern;
        std::uint32_t threshold;
    };
    void AddEntry(std::string_view entry);

    std::vector<Rule> m_rules;
    std::vector<std::string> m_badEntries;
};

/// "error", "warning", "info", "debug" or "trace".
VANTOBASE_API const char* GetLevelName(std::uint32_t level) noexcept;

}  // namespace Vanto::tracelog
