/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Both engines over one description and one memory: what they say about each node
 */
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "AravisEngine.h"
#include "GenApi/GenApi.h"

namespace aravistest {

/// Registers for both engines: every address has a byte that follows from it, and what is written stays.
class SharedMemory final : public IMemory, public GenApi::IPort {
public:
    explicit SharedMemory(unsigned pattern) : m_pattern(pattern) {}

    void ReadMemory(std::uint64_t address, void* buffer, std::size_t size) override;
    void WriteMemory(std::uint64_t address, const void* buffer, std::size_t size) override;
    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

    const std::map<std::uint64_t, std::uint8_t>& Written() const { return m_written; }

private:
    unsigned m_pattern;
    std::map<std::uint64_t, std::uint8_t> m_written;
};

/// What one engine says about a node; nothing where it answers with an error or not at all.
struct Answer {
    std::optional<std::string> value;
    std::string refusal;  ///< why there is no value
    std::optional<std::string> min;
    std::optional<std::string> max;
    std::optional<bool> implemented;
    std::optional<bool> available;
};

/// A node about which the engines disagree.
struct Difference {
    std::string node;
    std::string kind;
    std::string what;  ///< value, min, max, implemented or available
    std::string ours;
    std::string theirs;
    bool needsWhatIsNotThere;  ///< a node that this one refers to can't be read
    std::string Text() const { return kind + " " + node + " " + what + ": ours " + ours + ", theirs " + theirs; }
};

/// All differences between both engines over a description.
std::vector<Difference> Compare(const std::string& xml, unsigned pattern);

/// Differences after both engines wrote the same values into all integer registers, each into memory of its own.
std::vector<Difference> CompareWrites(const std::string& xml, unsigned pattern);

/// A random description with registers, references, formulas and selectors, all of it valid.
std::string RandomDescription(unsigned seed);

}  // namespace aravistest
