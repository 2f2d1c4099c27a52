/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The descriptions that node maps use now
 */

#include "load/DescriptionStore.h"

#include <utility>

namespace GenApi {

DescriptionStore& DescriptionStore::Instance() {
    static DescriptionStore store;
    return store;
}

std::shared_ptr<const Description> DescriptionStore::Find(const DescriptionKey& key) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_descriptions.find(key);
    return found != m_descriptions.end() ? found->second.lock() : nullptr;
}

std::shared_ptr<const Description> DescriptionStore::Keep(const DescriptionKey& key,
                                                          std::shared_ptr<const Description> description) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_descriptions, [](const auto& held) { return held.second.expired(); });
    std::weak_ptr<const Description>& held = m_descriptions[key];
    if (std::shared_ptr<const Description> other = held.lock())
        return other;
    held = description;
    return description;
}

}  // namespace GenApi
