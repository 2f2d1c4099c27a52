/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logger: the host's log function, called by one thread at a time
 */
#pragma once

#include <fmt/format.h>

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

#include "CLProtocol/CLProtocolC.h"
#include "os/LockName.h"

namespace marlow {

/// Thread-safe. After Set returned, the function that was set before is not called again.
class Logger {
public:
    void Set(CLProtocol::CLP_LOGGER function) noexcept;
    CLProtocol::CLP_LOGGER Function() const noexcept;
    void SetLevel(CLINT32 level) noexcept { m_level = level; }
    CLINT32 Level() const noexcept { return m_level; }

    /// Write a message if its level is wanted; a host function that throws is ignored.
    template <typename... Arguments>
    void Log(CLINT32 level, fmt::format_string<Arguments...> format, Arguments&&... arguments) noexcept {
        if (!IsOn(level))
            return;
        try {
            Write(level, fmt::format(format, std::forward<Arguments>(arguments)...));
        } catch (...) {
            return;  // a message that can't be written must not fail what it tells of
        }
    }

private:
    bool IsOn(CLINT32 level) const noexcept { return m_isSet && level <= m_level; }
    void Write(CLINT32 level, const std::string& text);

    // Recursive: the host's function may ask for a parameter of the driver.
    mutable std::recursive_mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "driver's log"};
    CLProtocol::CLP_LOGGER m_function = nullptr;
    std::atomic<bool> m_isSet{false};
    std::atomic<CLINT32> m_level{CLProtocol::CLP_LOG_NOTSET};
};

}  // namespace marlow
