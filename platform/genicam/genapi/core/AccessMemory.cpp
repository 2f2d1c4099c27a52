/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What an access has found out up to now
 */

#include "core/AccessMemory.h"

#include <utility>

namespace GenApi {

namespace {
std::uint64_t KeyOf(std::uint32_t node, EPart part) noexcept {
    return (std::uint64_t{node} << 8) | static_cast<std::uint64_t>(part);
}
}  // namespace

void AccessMemory::KeepFailure(std::uint32_t node, EPart part, std::exception_ptr failure) {
    m_isUsed = true;
    m_failures.insert_or_assign(KeyOf(node, part), std::move(failure));
}

void AccessMemory::FindAndThrow(std::uint32_t node, EPart part) const {
    const auto found = m_failures.find(KeyOf(node, part));
    if (found != m_failures.end())
        std::rethrow_exception(found->second);
}

}  // namespace GenApi
