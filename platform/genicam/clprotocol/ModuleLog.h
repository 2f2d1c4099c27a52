/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's log
 */
#pragma once

#include <string>

#include "Base/GCFormat.h"
#include "CLProtocol/Log.h"

namespace CLProtocol {

bool IsLogged(CLINT32 level) noexcept;
CLINT32 GetLogLevel() noexcept;
void WriteLog(CLINT32 level, const char* category, const std::string& message) noexcept;

/// The logger that drivers are given.
extern "C" void CLP_CC LogFromDriver(CLINT32 level, const char* format, va_list arguments) noexcept;

/// Logs a message of the module itself.
template <class... Arguments>
void Log(CLINT32 level, const char* format, const Arguments&... arguments) noexcept {
    try {
        if (IsLogged(level))
            WriteLog(level, kLogCategory, GenICam::FormatText(format, arguments...));
    } catch (const std::exception&) {  // no memory, no message
    }
}

}  // namespace CLProtocol
