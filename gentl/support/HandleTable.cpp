/* SPDX-License-Identifier: Apache-2.0 */
/*
 * HandleTable: what the consumer's handles stand for
 */
#include "support/HandleTable.h"

#include <mutex>

namespace gentl {

namespace {

// Far from 0, and told apart from small numbers that somebody passes by mistake.
constexpr std::uintptr_t kStep = 16;
constexpr std::uintptr_t kBase = 0x56430000;

}  // namespace

/// Gives an object its handle.
void* HandleTable::Add(const std::shared_ptr<Object>& object) {
    const std::unique_lock lock(m_mutex);
    const std::uintptr_t number = kBase + kStep * m_next++;
    m_objects.emplace(number, object);
    object->m_handle = reinterpret_cast<void*>(number);
    return object->m_handle;
}

/// Forgets the handle; the object itself lives on with whoever holds it.
void HandleTable::Remove(const Object& object) noexcept {
    std::shared_ptr<Object> removed;  // destroyed behind the lock
    const std::unique_lock lock(m_mutex);
    if (const auto found = m_objects.find(reinterpret_cast<std::uintptr_t>(object.Handle()));
        found != m_objects.end()) {
        removed = std::move(found->second);
        m_objects.erase(found);
    }
}

void HandleTable::RemoveAll() noexcept {
    std::unordered_map<std::uintptr_t, std::shared_ptr<Object>> removed;
    const std::unique_lock lock(m_mutex);
    removed.swap(m_objects);
}

/// Null for a handle that stands for nothing.
std::shared_ptr<Object> HandleTable::Find(void* handle) const noexcept {
    const std::shared_lock lock(m_mutex);
    const auto found = m_objects.find(reinterpret_cast<std::uintptr_t>(handle));
    return found != m_objects.end() ? found->second : nullptr;
}

}  // namespace gentl
