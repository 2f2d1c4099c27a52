/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Baud rates that the ports of a serial library claim and then refuse
 */

#include "RefusedRates.h"

namespace CLProtocol {

void RefusedRates::Note(std::uint32_t port, std::uint32_t flag) {
    const std::lock_guard lock(m_mutex);
    m_masks[port] |= flag;
}

/// All that were noted; 0 for a port that has refused none.
std::uint32_t RefusedRates::Of(std::uint32_t port) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_masks.find(port);
    return found == m_masks.end() ? 0 : found->second;
}

}  // namespace CLProtocol
