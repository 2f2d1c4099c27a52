/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory of a node map: given out in pieces, given back as a whole
 */

#include "schema/Arena.h"

#include <algorithm>
#include <cstdint>

namespace GenApi {

namespace {
constexpr std::size_t kLargestChunk = 256 * 1024;
}

/**
 * \brief Give out memory
 * \param[in] size Number of bytes
 * \param[in] alignment A power of two, at most that of operator new
 *
 * Chunks grow with the map, so that a small map stays small and a large one takes few chunks.
 */
void* Arena::Allocate(std::size_t size, std::size_t alignment) {
    const std::size_t used = m_next != nullptr ? reinterpret_cast<std::uintptr_t>(m_next) & (alignment - 1) : 0;
    const std::size_t padding = used != 0 ? alignment - used : 0;
    if (size + padding > m_left) {
        const std::size_t chunkSize = std::max(m_chunkSize, size);
        m_chunks.push_back(std::make_unique_for_overwrite<std::byte[]>(chunkSize));
        m_next = m_chunks.back().get();
        m_left = chunkSize;
        m_chunkSize = std::min(m_chunkSize * 2, kLargestChunk);
        std::byte* result = m_next;
        m_next += size;
        m_left -= size;
        return result;
    }
    std::byte* result = m_next + padding;
    m_next = result + size;
    m_left -= size + padding;
    return result;
}

}  // namespace GenApi
