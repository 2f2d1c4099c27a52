/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where in which file calls stand
 */

#include "Places.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace lockorder {

namespace {

constexpr std::size_t kRoom = 1u << 20;

char g_maps[kRoom];

// What the process has mapped, as a text.
void ReadMaps() {
    std::size_t size = 0;
    const int maps = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    for (ssize_t count = 1; maps >= 0 && count > 0 && size + 1 < kRoom; size += static_cast<std::size_t>(count)) {
        count = ::read(maps, g_maps + size, kRoom - 1 - size);
        if (count < 0)
            break;
    }
    g_maps[size] = '\0';
    if (maps >= 0)
        ::close(maps);
}

struct Mapping {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    const char* path = "";
    int pathLength = 0;
};

Mapping Parse(const char* line, const char* lineEnd) {
    Mapping mapping;
    std::sscanf(line, "%zx-%zx", &mapping.begin, &mapping.end);
    if (const auto* const path = static_cast<const char*>(std::memchr(line, '/', lineEnd - line))) {
        mapping.path = path;
        mapping.pathLength = static_cast<int>(lineEnd - path);
    }
    return mapping;
}

bool IsSameFile(const Mapping& one, const Mapping& other) {
    return one.pathLength == other.pathLength && std::memcmp(one.path, other.path, one.pathLength) == 0;
}

void WritePlace(int file, std::uintptr_t call) {
    Mapping first;  // of the file that the line is of
    for (const char* line = g_maps; *line != '\0';) {
        const char* const newline = std::strchr(line, '\n');
        const char* const lineEnd = newline != nullptr ? newline : line + std::strlen(line);
        const Mapping mapping = Parse(line, lineEnd);
        if (!IsSameFile(mapping, first))
            first = mapping;
        if (call >= mapping.begin && call < mapping.end) {
            ::dprintf(file, "\t%.*s(+0x%zx)\n", mapping.pathLength, mapping.path, call - first.begin);
            return;
        }
        line = newline != nullptr ? newline + 1 : lineEnd;
    }
    ::dprintf(file, "\t0x%zx\n", call);
}

}  // namespace

/**
 * \brief Write a line for each call, for `addr2line -e`
 *
 * The system's own function for it takes the lock of the loader, which a library that is being loaded may hold for
 * ever. One thread at a time.
 */
void WritePlaces(int file, void* const* calls, int count) {
    ReadMaps();
    for (int index = 0; index < count; ++index)
        WritePlace(file, reinterpret_cast<std::uintptr_t>(calls[index]));
}

}  // namespace lockorder
