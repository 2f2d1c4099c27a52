/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls functions of the producer with arguments that are made up
 */
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <mutex>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/gentl/Functions.h"

namespace gentl_test {

/// Handles that were ever given out, stale ones among them, and memory for buffers. Thread-safe.
class Findings {
public:
    static constexpr std::size_t kMostHandles = 48;
    static constexpr std::size_t kBlock = 4096;

    void Add(void* handle) {
        const std::lock_guard lock(m_mutex);
        if (handle == nullptr || std::ranges::find(m_handles, handle) != m_handles.end())
            return;
        if (m_handles.size() == kMostHandles)
            m_handles.erase(m_handles.begin());
        m_handles.push_back(handle);
    }
    void* Handle(std::uint32_t number) const {
        const std::lock_guard lock(m_mutex);
        return m_handles.empty() ? nullptr : m_handles[number % m_handles.size()];
    }
    /// One of some blocks of kBlock bytes, which stay.
    void* Block(std::uint32_t number) { return m_blocks[number % m_blocks.size()].data(); }

private:
    mutable std::mutex m_mutex;
    std::vector<void*> m_handles;
    std::array<std::array<char, kBlock>, 8> m_blocks{};
};

/// What one thread calls. Sizes are true, so that a function that writes further than it may meets a sanitizer; all
/// else is as it comes: any handle or none, any command, null in the place of any pointer.
class RandomCaller {
public:
    RandomCaller(Findings& findings, std::vector<std::string> texts, std::uint32_t seed)
        : m_findings(findings), m_texts(std::move(texts)), m_random(seed) {}

    /// Begins with other arguments.
    void Reseed(std::uint32_t seed) { m_random.seed(seed); }
    /// Whether something happens that has this chance.
    bool OneIn(std::uint32_t chance) { return Below(chance) == 0; }
    std::uint32_t Below(std::uint32_t end) { return Number() % end; }

    template <class... Args>
    GC_ERROR Call(GC_ERROR (*function)(Args...)) {
        Prepare();
        const GC_ERROR result = Apply<Args...>(function, std::index_sequence_for<Args...>());
        for (void* handle : m_outputs)
            m_findings.Add(handle);
        return result;
    }

private:
    static constexpr std::size_t kMost = 300;  // bytes or entries

    template <class... Args, std::size_t... Index>
    GC_ERROR Apply(GC_ERROR (*function)(Args...), std::index_sequence<Index...>) {
        using Types = std::tuple<Args..., void>;
        return function(
            Make<Index == 0, std::tuple_element_t<Index, Types>, std::tuple_element_t<Index + 1, Types>>()...);
    }

    // Of the exact size, so that what lies behind is nobody's.
    void Prepare() {
        m_size = OneIn(4) ? Below(16) : Below(kMost);
        m_bytes.assign(m_size, static_cast<char>(Number()));
        m_bytes.shrink_to_fit();
        m_outputs.fill(nullptr);
        m_sizes.fill(m_size);
        m_entries.resize(m_size);
        for (PORT_REGISTER_STACK_ENTRY& entry : m_entries)
            entry = {Address(), m_bytes.data(), m_size};
        m_infos.resize(m_size);
        for (DS_BUFFER_INFO_STACKED& info : m_infos)
            info = {.iInfoCmd = Command(), .iType = 0, .pBuffer = m_bytes.data(), .iSize = m_size, .iResult = 0};
        m_parts.assign(m_size, {});
        m_chunks.assign(m_size, {});
    }

    template <bool isFirst, class T, class Next>
    T Make() {
        if constexpr (std::is_same_v<T, void*> && (isFirst || !IsSize<Next>))
            return OneIn(8) ? Nonsense() : m_findings.Handle(Number());
        else if constexpr (std::is_same_v<T, void*> && std::is_same_v<Next, std::size_t>)
            return m_findings.Block(Number());
        else if constexpr (std::is_same_v<T, const char*>)
            return OneIn(8) ? nullptr : m_texts[Below(static_cast<std::uint32_t>(m_texts.size()))].c_str();
        else if constexpr (std::is_pointer_v<T>)
            return OneIn(8) ? nullptr : Pointer(static_cast<T>(nullptr));
        else if constexpr (std::is_same_v<T, std::size_t>)
            return m_size;
        else if constexpr (std::is_same_v<T, std::uint64_t>)
            return std::is_void_v<Next> ? Below(4) : Address();  // at the end stand numbers of frames and ms
        else if constexpr (std::is_same_v<T, std::uint32_t>)
            return OneIn(16) ? 0xFFFFFFFF : Below(4);
        else
            return Command();
    }
    template <class T>
    static constexpr bool IsSize = std::is_same_v<T, std::size_t> || std::is_same_v<T, std::size_t*>;

    std::uint32_t Number() { return static_cast<std::uint32_t>(m_random()); }
    void* Nonsense() { return OneIn(2) ? nullptr : reinterpret_cast<void*>(std::uintptr_t{Number()}); }
    std::int32_t Command() {
        return OneIn(8) ? static_cast<std::int32_t>(Number()) : static_cast<std::int32_t>(Below(40));
    }
    std::uint64_t Address() {
        constexpr std::uint64_t kOwn = 0xFFFF'FFFF'0000'0000;
        const std::uint64_t low = OneIn(2) ? Below(0x1000) : Number();
        return OneIn(4) ? kOwn + low : low;
    }

    void* Pointer(void*) { return m_bytes.data(); }
    const void* Pointer(const void*) { return m_bytes.data(); }
    char* Pointer(char*) { return m_bytes.data(); }
    void** Pointer(void**) { return m_outputs.data(); }
    std::size_t* Pointer(std::size_t*) { return m_sizes.data(); }
    std::uint32_t* Pointer(std::uint32_t*) { return &m_number; }
    std::int32_t* Pointer(std::int32_t*) { return &m_type; }
    bool8_t* Pointer(bool8_t*) { return &m_flag; }
    PORT_REGISTER_STACK_ENTRY* Pointer(PORT_REGISTER_STACK_ENTRY*) { return m_entries.data(); }
    DS_BUFFER_INFO_STACKED* Pointer(DS_BUFFER_INFO_STACKED*) { return m_infos.data(); }
    DS_BUFFER_PART_INFO_STACKED* Pointer(DS_BUFFER_PART_INFO_STACKED*) { return m_parts.data(); }
    SINGLE_CHUNK_DATA* Pointer(SINGLE_CHUNK_DATA*) { return m_chunks.data(); }

    Findings& m_findings;
    const std::vector<std::string> m_texts;
    std::mt19937 m_random;

    std::size_t m_size = 0;
    std::vector<char> m_bytes;
    std::array<void*, kMost> m_outputs{};
    std::array<std::size_t, kMost> m_sizes{};
    std::uint32_t m_number = 0;
    std::int32_t m_type = 0;
    bool8_t m_flag = 0;
    std::vector<PORT_REGISTER_STACK_ENTRY> m_entries;
    std::vector<DS_BUFFER_INFO_STACKED> m_infos;
    std::vector<DS_BUFFER_PART_INFO_STACKED> m_parts;
    std::vector<SINGLE_CHUNK_DATA> m_chunks;
};

}  // namespace gentl_test
