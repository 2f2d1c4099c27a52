/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Baud rates that the ports of a serial library claim and then refuse
 */
#pragma once

#include <cstdint>
#include <map>
#include <mutex>

#include "os/LockName.h"

namespace CLProtocol {

/// Rates as flags, ports by their index. Forgotten with the library. Thread-safe.
class RefusedRates {
public:
    void Note(std::uint32_t port, std::uint32_t flag);
    std::uint32_t Of(std::uint32_t port) const;

private:
    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "refused rates"};
    std::map<std::uint32_t, std::uint32_t> m_masks;
};

}  // namespace CLProtocol
