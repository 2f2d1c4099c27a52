/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The module's log: hands messages to the sink that the host has set
 */

#include "ModuleLog.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>

#include "ForeignCall.h"
#include "Immortal.h"

namespace CLProtocol {

namespace {

constexpr CLINT32 kNothing = CLP_LOG_FATAL - 1;
constexpr std::size_t kMaxMessage = 4096;

std::atomic<CLINT32> g_level{kNothing};

// How often this thread is inside a sink. A sink that logs would otherwise call itself for ever.
thread_local int t_inSink = 0;

class SinkHolder {
public:
    void Set(LogSink sink, CLINT32 level) {
        std::shared_ptr<const LogSink> previous = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
        std::unique_lock lock(m_mutex);
        g_level = previous ? level : kNothing;
        m_sink.swap(previous);
        const long own = t_inSink > 0 ? 2 : 1;
        m_returned.wait(lock, [&] { return previous.use_count() <= own; });
    }

    void Write(CLINT32 level, const char* category, const char* message) {
        std::unique_lock lock(m_mutex);
        std::shared_ptr<const LogSink> sink = m_sink;
        lock.unlock();
        if (!sink)
            return;
        ++t_inSink;
        try {
            (*sink)(level, category, message);
        } catch (...) {  // what a sink throws is no reason to fail
        }
        --t_inSink;
        lock.lock();
        sink.reset();
        m_returned.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_returned;
    std::shared_ptr<const LogSink> m_sink;
};

SinkHolder& Holder() {
    static Immortal<SinkHolder> holder;
    return holder.Get();
}

}  // namespace

void SetLogSink(LogSink sink, CLINT32 level) {
    Holder().Set(std::move(sink), level);
}

bool IsLogged(CLINT32 level) noexcept {
    return level <= g_level.load(std::memory_order_relaxed) && t_inSink == 0;
}

CLINT32 GetLogLevel() noexcept {
    return std::max<CLINT32>(g_level, CLP_LOG_FATAL);
}

void WriteLog(CLINT32 level, const char* category, const std::string& message) noexcept {
    try {
        Holder().Write(level, category, message.c_str());
    } catch (const std::exception&) {  // no memory, no message
    }
}

/**
 * \brief Logs a driver's message, with the driver's path in front
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
