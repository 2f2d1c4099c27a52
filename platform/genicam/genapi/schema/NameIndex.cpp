/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds nodes by name
 */

#include "schema/NameIndex.h"

#include <bit>
#include <cstring>
#include <random>

namespace GenApi {

std::uint64_t HashSeed() noexcept {
    static const std::uint64_t seed = [] {
        try {
            std::random_device device;
            return (std::uint64_t{device()} << 32) | device();
        } catch (...) {
            return std::uint64_t{0x9E3779B97F4A7C15};  // a system without randomness: nothing better to be had
        }
    }();
    return seed;
}

namespace {

std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) noexcept {
    hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
    return hash ^ (hash >> 32);
}

template <class Word>
Word WordAt(const char* place) noexcept {
    Word word = 0;
    std::memcpy(&word, place, sizeof(word));
    return word;
}

}  // namespace

std::uint32_t NameIndex::Hash(std::string_view name) noexcept {
    std::uint64_t hash = HashSeed() ^ name.size();
    const char* next = name.data();
    std::size_t left = name.size();
    for (; left > 8; left -= 8, next += 8)
        hash = Mix(hash, WordAt<std::uint64_t>(next));
    // The last word overlaps the one before, or is of two parts that overlap: no character is taken by itself.
    if (name.size() >= 8)
        hash = Mix(hash, WordAt<std::uint64_t>(next + left - 8));
    else if (left >= 4)
        hash = Mix(hash, std::uint64_t{WordAt<std::uint32_t>(next)} << 32 | WordAt<std::uint32_t>(next + left - 4));
    else if (left > 0)
        hash = Mix(hash, std::uint64_t{WordAt<std::uint8_t>(next)} << 16 |
                             std::uint64_t{WordAt<std::uint8_t>(next + left / 2)} << 8 |
                             WordAt<std::uint8_t>(next + left - 1));
    return static_cast<std::uint32_t>(hash ^ (hash >> 29));
}

void NameIndex::Reserve(std::size_t count) {
    const std::size_t wanted = std::bit_ceil(count + count / 2 + 8);
    if (wanted <= m_slots.size())
        return;
    std::vector<Slot> slots(wanted);
    slots.swap(m_slots);
    m_mask = wanted - 1;
    m_count = 0;
    for (const Slot& slot : slots) {
        if (slot.node != kNoNode)
            Insert(slot.hash, slot.node);
    }
}

void NameIndex::Insert(std::uint32_t hash, std::uint32_t node) {
    if ((m_count + 1) * 4 > m_slots.size() * 3)
        Reserve(m_count + 1);
    std::size_t slot = hash & m_mask;
    while (m_slots[slot].node != kNoNode)
        slot = (slot + 1) & m_mask;
    m_slots[slot] = {hash, node};
    ++m_count;
}

void NameIndex::Replace(std::uint32_t hash, std::uint32_t before, std::uint32_t after) noexcept {
    for (std::size_t slot = hash & m_mask; m_slots[slot].node != kNoNode; slot = (slot + 1) & m_mask) {
        if (m_slots[slot].node == before)
            m_slots[slot].node = after;
    }
}

}  // namespace GenApi
