/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A queue of buffer handles that allocates only where it is told to
 */

#include "VantoCLSer/stream/HandleQueue.h"

#include <algorithm>

namespace Vanto {

bool CHandleQueue::Contains(StreamBufferHandle handle) const noexcept {
    for (std::size_t position = 0; position < m_count; ++position) {
        if (At(position) == handle)
            return true;
    }
    return false;
}

/**
 * \brief Make room: up to \a capacity handles are pushed without an allocation
 */
void CHandleQueue::Reserve(std::size_t capacity) {
    if (capacity <= m_slots.size())
        return;
    std::vector<StreamBufferHandle> slots(std::max(capacity, 2 * m_slots.size()));
    for (std::size_t position = 0; position < m_count; ++position)
        slots[position] = At(position);
    m_slots.swap(slots);
    m_first = 0;
}

/**
 * \brief Append a handle; allocates when there is no room
 */
void CHandleQueue::PushBack(StreamBufferHandle handle) {
    Reserve(m_count + 1);
    m_slots[(m_first + m_count) % m_slots.size()] = handle;
    ++m_count;
}

/**
 * \brief Take the first handle out; there must be one
 */
StreamBufferHandle CHandleQueue::PopFront() noexcept {
    const StreamBufferHandle handle = m_slots[m_first];
    m_first = (m_first + 1) % m_slots.size();
    --m_count;
    return handle;
}

}  // namespace Vanto
