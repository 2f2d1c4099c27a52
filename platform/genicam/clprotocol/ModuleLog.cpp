/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's log: hands messages to the sink that the host has set
 */

#include "ModuleLog.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>

#include "CallbackHolder.h"
#include "ForeignCall.h"
#include "base/Immortal.h"

namespace CLProtocol {

namespace {

constexpr CLINT32 kNothing = CLP_LOG_FATAL - 1;
constexpr std::size_t kMaxMessage = 4096;

std::atomic<CLINT32> g_level{kNothing};

using SinkHolder = CallbackHolder<CLINT32, const char*, const char*>;

SinkHolder& Holder() {
    static base::Immortal<SinkHolder> holder;
    return holder.Get();
}

}  // namespace

void SetLogSink(LogSink sink, CLINT32 level) {
    Holder().Set(std::move(sink), [level](bool isThere) { g_level = isThere ? level : kNothing; });
}

bool IsLogged(CLINT32 level) noexcept {
    return level <= g_level.load(std::memory_order_relaxed) && !SinkHolder::IsInside();
}

CLINT32 GetLogLevel() noexcept {
    return std::max<CLINT32>(g_level, CLP_LOG_FATAL);
}

void WriteLog(CLINT32 level, const char* category, const std::string& message) noexcept {
    try {
        Holder().Call(level, category, message.c_str());
    } catch (const std::exception&) {  // no memory, no message
    }
}

/**
 * \brief Log a driver's message, with the driver's path in front
 * \param[in] level One of CLP_LOG_LEVELS
 * \param[in] format A printf text for \a arguments; messages beyond 4095 bytes are cut
 */
void LogFromDriver(CLINT32 level, const char* format, va_list arguments) noexcept {
    if (format == nullptr || !IsLogged(level))
        return;
    std::array<char, kMaxMessage> text{};
    if (std::vsnprintf(text.data(), text.size(), format, arguments) < 0)
        return;
    try {
        std::string message = text.data();
        message.erase(message.find_last_not_of("\r\n") + 1);
        const std::string library = CurrentForeignLibrary();
        WriteLog(level, kDriverLogCategory, library.empty() ? message : library + ": " + message);
    } catch (const std::exception&) {  // no memory, no message
    }
}

}  // namespace CLProtocol
