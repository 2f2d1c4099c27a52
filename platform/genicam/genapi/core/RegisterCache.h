/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a node map knows of the register space: bytes by port, address and length
 */
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace GenApi {

class CPort;
class RegisterCore;

/// A piece of register space. All registers of this address and length share it.
struct RegisterBlock {
    CPort* port = nullptr;
    std::int64_t address = 0;
    std::int64_t length = 0;
    bool valid = false;                      ///< the bytes are those of the device
    bool hasData = false;                    ///< the bytes were read or written at some time
    std::uint64_t round = 0;                 ///< when they were
    std::array<std::uint8_t, 8> settings{};  ///< of an integer that can't be read: what was set last, 0 at first
    RegisterCore* users = nullptr;
    std::uint64_t overlapGeneration = 0;
    std::vector<RegisterBlock*> overlaps;

    std::uint8_t* Data() noexcept { return m_large ? m_large.get() : m_small; }
    /// Makes room for the bytes; the length has been checked.
    void Prepare();

private:
    std::uint8_t m_small[8] = {};
    std::unique_ptr<std::uint8_t[]> m_large;
};

/// All blocks of a node map. Wants the node map's lock.
class RegisterCache {
public:
    RegisterBlock& Get(CPort& port, std::int64_t address, std::int64_t length);
    /// The other blocks that share a byte with this one.
    std::span<RegisterBlock* const> OverlapsOf(RegisterBlock& block);
    void InvalidateAll();
    /// Another device was connected: it does not have what was set in registers that can't be read.
    void ForgetSettings();
    void Attach(RegisterBlock& block, RegisterCore& core) noexcept;
    void Detach(RegisterCore& core) noexcept;
    /// What is read now is read in this round.
    std::uint64_t Round() const noexcept { return m_round; }
    /// Ends the round; returns the one that ended. What was read in it or before is older than what comes.
    std::uint64_t NextRound() noexcept { return m_round++; }

private:
    struct Key {
        const CPort* port;
        std::int64_t address;
        std::int64_t length;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };
    struct Place {
        const CPort* port;
        std::int64_t address;
        RegisterBlock* block;
    };

    void Sort();
    void Insert(RegisterBlock& block);
    static bool IsBefore(const Place& left, const Place& right) noexcept;
    void DropUnused();
    void CollectOverlaps(const RegisterBlock& block, std::size_t sizeClass, std::vector<RegisterBlock*>& result) const;

    std::unordered_map<Key, RegisterBlock, KeyHash> m_blocks;
    // Blocks by address, one list for each power of two of their length, so that a search looks at few that don't
    // match.
    std::vector<std::vector<Place>> m_places;
    std::uint64_t m_generation = 1;
    std::uint64_t m_sortedGeneration = 0;
    std::size_t m_limit = 16384;
    std::uint64_t m_round = 1;
};

}  // namespace GenApi
