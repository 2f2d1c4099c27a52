/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds nodes by name
 */
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "schema/Property.h"

namespace GenApi {

/// A number that differs from process to process, so that nobody can prepare keys that collide.
std::uint64_t HashSeed() noexcept;

/// From names to node numbers. The names themselves are kept by the nodes.
class NameIndex {
public:
    /// The hash of a name; differs from process to process, so that no description can be made to collide.
    static std::uint32_t Hash(std::string_view name) noexcept;

    void Reserve(std::size_t count);

    /// The node for which \a matches is true among those of this hash, kNoNode when there is none.
    template <class Matches>
    std::uint32_t Find(std::uint32_t hash, Matches&& matches) const {
        if (m_slots.empty())
            return kNoNode;
        for (std::size_t slot = hash & m_mask; m_slots[slot].node != kNoNode; slot = (slot + 1) & m_mask) {
            if (m_slots[slot].hash == hash && matches(m_slots[slot].node))
                return m_slots[slot].node;
        }
        return kNoNode;
    }

    void Insert(std::uint32_t hash, std::uint32_t node);
    /// Lets the entry of \a before stand for \a after, which has the same name.
    void Replace(std::uint32_t hash, std::uint32_t before, std::uint32_t after) noexcept;

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t node = kNoNode;
    };

    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    std::size_t m_count = 0;
};

}  // namespace GenApi
