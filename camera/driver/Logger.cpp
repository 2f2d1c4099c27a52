/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logger: the host's log function, called by one thread at a time
 */

#include "Logger.h"

namespace marlow {

namespace {

// The host's function takes a va_list, which only a function with variable arguments can make.
void Call(CLProtocol::CLP_LOGGER function, CLINT32 level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    try {
        function(level, format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}

}  // namespace

/// The function that takes messages from now on; null for none.
void Logger::Set(CLProtocol::CLP_LOGGER function) noexcept {
    const std::lock_guard lock(m_mutex);
    m_function = function;
    m_isSet = function != nullptr;
}

CLProtocol::CLP_LOGGER Logger::Function() const noexcept {
    const std::lock_guard lock(m_mutex);
    return m_function;
}

void Logger::Write(CLINT32 level, const std::string& text) {
    const std::lock_guard lock(m_mutex);
    if (m_function)
        Call(m_function, level, "%s", text.c_str());
}

}  // namespace marlow
