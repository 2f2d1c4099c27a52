/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is made of a description once, for all its maps
 */
#pragma once

#include <mutex>
#include <unordered_map>
#include <utility>

#include "os/LockName.h"
#include "schema/Arena.h"
#include "schema/Property.h"

namespace GenApi {

/// Keeps what was made of elements, such as compiled formulas, as long as the description lives. Thread-safe: no lock
/// is held while something is made, so that making one may need another.
class SharedParts {
public:
    /// What was made of an element, null when nothing was. Each element has one type of parts.
    template <class Part>
    const Part* Find(const Property& element) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_parts.find(&element);
        return found != m_parts.end() ? static_cast<const Part*>(found->second) : nullptr;
    }
    /// Keeps what \a copy puts into an arena; of two threads that made the same the first one is heard.
    template <class Part, class Copy>
    const Part& Keep(const Property& element, Copy&& copy) {
        const std::lock_guard lock(m_mutex);
        const auto [place, isNew] = m_parts.try_emplace(&element, nullptr);
        if (isNew) {
            try {
                place->second = static_cast<const void*>(copy(m_arena));
            } catch (...) {
                m_parts.erase(place);
                throw;
            }
        }
        return *static_cast<const Part*>(place->second);
    }

private:
    std::mutex m_mutex;
    [[no_unique_address, maybe_unused]] const os::LockName m_mutexName{&m_mutex, "parts of a description"};
    std::unordered_map<const Property*, const void*> m_parts;
    Arena m_arena;
};

}  // namespace GenApi
