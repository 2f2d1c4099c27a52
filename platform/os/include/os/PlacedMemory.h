/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory at an address of which one half is given
 */
#pragma once

#include <cstddef>
#include <cstdint>

namespace os {

/// Zeroed memory whose address has a given number as its lower 32 bits: a value that passes for the number where an
/// address is taken for one, and can be read and written where the number is taken for an address.
class PlacedMemory {
public:
    /// Throws std::bad_alloc when the process has no room of 4 GiB, for a moment, in its addresses.
    PlacedMemory(std::uint32_t lowerHalf, std::size_t size);
    ~PlacedMemory();
    PlacedMemory(const PlacedMemory&) = delete;
    PlacedMemory& operator=(const PlacedMemory&) = delete;

    char* Data() const noexcept { return m_data; }

private:
    void* m_begin;  // of the whole pages
    std::size_t m_length;
    char* m_data;
};

}  // namespace os
