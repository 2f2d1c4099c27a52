/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values and texts of a configuration ROM (IEEE 1212): quadlets, big endian
 */

#include "nodes/ConfigurationRom.h"

#include <algorithm>
#include <vector>

namespace GenApi {

namespace {

constexpr std::size_t kQuadlet = 4;
// Directories below directories: a ROM that names more is not one.
constexpr std::size_t kMaxDirectories = 64;

enum class EntryType : std::uint8_t { Immediate = 0, Offset = 1, Leaf = 2, Directory = 3 };

/// An entry of a directory: 2 bits type, 6 bits key, 24 bits value or distance.
struct Entry {
    EntryType type;
    std::int64_t key;  // with the type bits, as descriptions write it
    std::uint32_t value;
    std::size_t place;  // of the entry itself, in quadlets
};

std::uint32_t QuadletAt(std::span<const std::uint8_t> rom, std::size_t place) {
    const std::size_t at = place * kQuadlet;
    return (std::uint32_t{rom[at]} << 24) | (std::uint32_t{rom[at + 1]} << 16) | (std::uint32_t{rom[at + 2]} << 8) |
           rom[at + 3];
}

// The number of quadlets that follow the header at a place and lie within the ROM.
std::size_t LengthAt(std::span<const std::uint8_t> rom, std::size_t place) {
    const std::size_t count = rom.size() / kQuadlet;
    return place < count ? std::min<std::size_t>(QuadletAt(rom, place) >> 16, count - place - 1) : 0;
}

// All entries of the root directory and of the directories below it.
std::vector<Entry> EntriesOf(std::span<const std::uint8_t> rom) {
    std::vector<Entry> entries;
    if (rom.size() < kQuadlet)
        return entries;
    // The first quadlet begins with the length of the bus information block.
    std::vector<std::size_t> directories{1 + std::size_t{rom[0]}};
    for (std::size_t next = 0; next < directories.size(); ++next) {
        const std::size_t directory = directories[next];
        for (std::size_t i = 1; i <= LengthAt(rom, directory); ++i) {
            const std::uint32_t quadlet = QuadletAt(rom, directory + i);
            const Entry entry{static_cast<EntryType>(quadlet >> 30), quadlet >> 24, quadlet & 0xFFFFFF, directory + i};
            entries.push_back(entry);
            const std::size_t target = entry.place + entry.value;
            const bool isNew = std::find(directories.begin(), directories.end(), target) == directories.end();
            if (entry.type == EntryType::Directory && isNew && directories.size() < kMaxDirectories)
                directories.push_back(target);
        }
    }
    return entries;
}

// Descriptions give keys with or without the bits of the type.
bool HasKey(const Entry& entry, std::int64_t key) {
    return entry.key == key || (entry.key & 0x3F) == key;
}

}  // namespace

std::optional<std::int64_t> FindRomValue(std::span<const std::uint8_t> rom, std::int64_t key) {
    for (const Entry& entry : EntriesOf(rom)) {
        if (entry.type == EntryType::Immediate && HasKey(entry, key))
            return entry.value;
    }
    return std::nullopt;
}

std::optional<std::string> FindRomText(std::span<const std::uint8_t> rom, std::int64_t key) {
    for (const Entry& entry : EntriesOf(rom)) {
        if (entry.type != EntryType::Leaf || !HasKey(entry, key))
            continue;
        // A textual descriptor: the header, two quadlets of specifier and language, then the characters.
        const std::size_t leaf = entry.place + entry.value;
        const std::size_t length = LengthAt(rom, leaf);
        if (length < 2)
            continue;
        const auto characters = rom.subspan((leaf + 3) * kQuadlet, (length - 2) * kQuadlet);
        return std::string(characters.begin(), std::find(characters.begin(), characters.end(), std::uint8_t{0}));
    }
    return std::nullopt;
}

}  // namespace GenApi
