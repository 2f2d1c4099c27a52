/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a node map knows of the register space: bytes by port, address and length
 */

#include "core/RegisterCache.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <tuple>

#include "core/RegisterCore.h"
#include "schema/NameIndex.h"

namespace GenApi {

namespace {

// Addresses are 64 bits of any value: their sum is computed without a sign.
bool Overlap(const RegisterBlock& left, const RegisterBlock& right) noexcept {
    const auto distance = [](std::int64_t from, std::int64_t to) {
        return static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from);
    };
    return distance(left.address, right.address) < static_cast<std::uint64_t>(left.length) ||
           distance(right.address, left.address) < static_cast<std::uint64_t>(right.length);
}

std::size_t SizeClass(std::int64_t length) noexcept {
    return static_cast<std::size_t>(std::bit_width(static_cast<std::uint64_t>(length)));
}

}  // namespace

void RegisterBlock::Prepare() {
    if (length > static_cast<std::int64_t>(sizeof(m_small)) && !m_large)
        m_large = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(length));
}

std::size_t RegisterCache::KeyHash::operator()(const Key& key) const noexcept {
    std::uint64_t hash = (static_cast<std::uint64_t>(key.address) ^ HashSeed()) * 0x9E3779B97F4A7C15U;
    hash ^= (hash >> 29) ^ static_cast<std::uint64_t>(key.length);
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(key.port)) * 0xBF58476D1CE4E5B9U;
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

/**
 * \brief The block of a piece of register space, made when there is none yet
 * \param[in] length At least 1 and within the bound of registers
 */
RegisterBlock& RegisterCache::Get(CPort& port, std::int64_t address, std::int64_t length) {
    const Key key{&port, address, length};
    if (const auto found = m_blocks.find(key); found != m_blocks.end())
        return found->second;
    if (m_blocks.size() >= m_limit)
        DropUnused();
    RegisterBlock& block = m_blocks[key];
    block.port = &port;
    block.address = address;
    block.length = length;
    // Before the first write nobody asks for overlaps: all blocks that there are by then are sorted at once.
    if (m_sortedGeneration == m_generation)
        Insert(block);
    return block;
}

// A selector may lead through millions of addresses: blocks that nobody points to any more go when there are many.
void RegisterCache::DropUnused() {
    std::erase_if(m_blocks, [](const auto& held) { return held.second.users == nullptr; });
    ++m_generation;
    m_places.clear();
    m_limit = std::max(m_limit, m_blocks.size() * 2);
}

std::span<RegisterBlock* const> RegisterCache::OverlapsOf(RegisterBlock& block) {
    if (block.overlapGeneration == m_generation)
        return block.overlaps;
    if (m_sortedGeneration != m_generation)
        Sort();
    block.overlaps.clear();
    for (std::size_t sizeClass = 0; sizeClass < m_places.size(); ++sizeClass)
        CollectOverlaps(block, sizeClass, block.overlaps);
    block.overlapGeneration = m_generation;
    return block.overlaps;
}

void RegisterCache::Sort() {
    m_places.assign(65, {});
    for (auto& [key, block] : m_blocks)
        m_places[SizeClass(key.length)].push_back({key.port, key.address, &block});
    for (std::vector<Place>& places : m_places)
        std::sort(places.begin(), places.end(), IsBefore);
    m_sortedGeneration = m_generation;
}

// A selector brings up one block after the other: only those that share bytes with a new one hear of it.
void RegisterCache::Insert(RegisterBlock& block) {
    std::vector<Place>& places = m_places[SizeClass(block.length)];
    const Place place{block.port, block.address, &block};
    places.insert(std::upper_bound(places.begin(), places.end(), place, IsBefore), place);
    for (std::size_t sizeClass = 0; sizeClass < m_places.size(); ++sizeClass)
        CollectOverlaps(block, sizeClass, block.overlaps);
    block.overlapGeneration = m_generation;
    for (RegisterBlock* other : block.overlaps)
        other->overlapGeneration = 0;
}

bool RegisterCache::IsBefore(const Place& left, const Place& right) noexcept {
    return left.port != right.port ? std::less<>()(left.port, right.port) : left.address < right.address;
}

// Blocks of this class are shorter than 2^sizeClass: none that begins further below can reach the block.
void RegisterCache::CollectOverlaps(const RegisterBlock& block, std::size_t sizeClass,
                                    std::vector<RegisterBlock*>& result) const {
    const std::vector<Place>& places = m_places[sizeClass];
    if (places.empty())
        return;
    const std::int64_t reach = sizeClass >= 63 ? INT64_MAX : (std::int64_t{1} << sizeClass);
    const std::int64_t lowest = block.address < INT64_MIN + reach ? INT64_MIN : block.address - reach;
    auto place = std::lower_bound(places.begin(), places.end(), lowest, [&](const Place& held, std::int64_t address) {
        return held.port != block.port ? std::less<>()(held.port, block.port) : held.address < address;
    });
    for (; place != places.end() && place->port == block.port; ++place) {
        if (place->address >= block.address && !Overlap(block, *place->block))
            break;
        if (place->block != &block && Overlap(block, *place->block))
            result.push_back(place->block);
    }
}

void RegisterCache::InvalidateAll() {
    for (auto& [key, block] : m_blocks)
        block.valid = false;
}

void RegisterCache::ForgetSettings() {
    for (auto& [key, block] : m_blocks)
        block.settings = {};
}

void RegisterCache::Attach(RegisterBlock& block, RegisterCore& core) noexcept {
    core.m_block = &block;
    core.m_previousUser = nullptr;
    core.m_nextUser = block.users;
    if (block.users != nullptr)
        block.users->m_previousUser = &core;
    block.users = &core;
}

void RegisterCache::Detach(RegisterCore& core) noexcept {
    if (core.m_block == nullptr)
        return;
    (core.m_previousUser != nullptr ? core.m_previousUser->m_nextUser : core.m_block->users) = core.m_nextUser;
    if (core.m_nextUser != nullptr)
        core.m_nextUser->m_previousUser = core.m_previousUser;
    core.m_block = nullptr;
}

}  // namespace GenApi
