/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is wrong with a file, and where
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Place.h"

namespace tools {

using base::Place;

/// An error keeps something from working; a warning points at what was probably not meant; a note is a matter of taste
/// or of a standard.
enum class Severity { kError, kWarning, kNote };

struct Finding {
    Severity severity = Severity::kError;
    Place place;
    std::string text;
    std::string hint;    ///< what to do about it; may be empty
    std::string rule{};  ///< which rule it breaks; empty where there are no rules with names
};

/// Findings of one file. All are kept within reason, as programs read them; people are shown the first ones.
class Findings {
public:
    static constexpr std::size_t kMost = 100'000;
    static constexpr std::size_t kMostShown = 100;

    void Add(Finding finding);
    void SortByPlace();

    bool HasErrors() const noexcept { return m_errors > 0; }
    std::uint64_t Errors() const noexcept { return m_errors; }
    std::uint64_t Warnings() const noexcept { return m_warnings; }
    std::uint64_t Notes() const noexcept { return m_notes; }
    std::uint64_t LeftOut() const noexcept { return m_errors + m_warnings + m_notes - m_kept.size(); }

    std::size_t size() const noexcept { return m_kept.size(); }
    bool empty() const noexcept { return m_kept.empty(); }
    const Finding& operator[](std::size_t index) const { return m_kept[index]; }
    const Finding& front() const { return m_kept.front(); }
    const Finding& back() const { return m_kept.back(); }
    auto begin() const noexcept { return m_kept.begin(); }
    auto end() const noexcept { return m_kept.end(); }

private:
    std::vector<Finding> m_kept;
    std::uint64_t m_errors = 0;
    std::uint64_t m_warnings = 0;
    std::uint64_t m_notes = 0;
};

}  // namespace tools
