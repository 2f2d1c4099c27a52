/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A queue of buffer handles that allocates only where it is told to
 */
#pragma once

#include <cstddef>
#include <vector>

#include "vanto/GrabResult.h"

namespace Vanto {

/// First in, first out. Not thread-safe.
class CHandleQueue {
public:
    bool IsEmpty() const noexcept { return m_count == 0; }
    std::size_t Size() const noexcept { return m_count; }
    bool Contains(StreamBufferHandle handle) const noexcept;

    void Reserve(std::size_t capacity);
    void PushBack(StreamBufferHandle handle);
    /// There must be one.
    StreamBufferHandle First() const noexcept { return At(0); }
    StreamBufferHandle PopFront() noexcept;
    void Clear() noexcept { m_count = 0; }

private:
    StreamBufferHandle At(std::size_t position) const noexcept {
        return m_slots[(m_first + position) % m_slots.size()];
    }

    std::vector<StreamBufferHandle> m_slots;  // a ring
    std::size_t m_first = 0;
    std::size_t m_count = 0;
};

}  // namespace Vanto
