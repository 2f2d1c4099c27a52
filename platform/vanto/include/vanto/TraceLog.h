/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logging: categories, levels and messages whose arguments are typed
 */
#pragma once

#include <atomic>
#include <string>
#include <utility>

#include "Base/GCFormat.h"
#include "vanto/VantoTypes.h"

namespace Vanto::tracelog {

/// Levels of messages; a higher number is more severe.
enum Level : std::uint32_t { kTrace = 16, kDebug = 32, kInfo = 64, kWarning = 128, kError = 256 };

/// A threshold that no message reaches.
inline constexpr std::uint32_t kOff = ~std::uint32_t{0};

/// One log category. It lives as long as the process; its threshold may change at any time.
class Category {
public:
    /// A category that is switched off; LogGetCatID makes those that count.
    explicit Category(std::string name) : m_name(std::move(name)) {}
    /// The name, "Vanto.CLSer.Port" for instance.
    const std::string& GetName() const noexcept { return m_name; }
    /// Whether messages of a level are wanted at present.
    bool IsOn(std::uint32_t level) const noexcept { return level >= m_threshold.load(std::memory_order_relaxed); }

private:
    friend class LogRegistry;
    std::atomic<std::uint32_t> m_threshold{kOff};
    const std::string m_name;
};

using CategoryId = const Category*;

/// The category of a name, made on first use. Thread-safe.
VANTOBASE_API CategoryId LogGetCatID(const char* name);

VANTOBASE_API void WriteMessage(CategoryId category, std::uint32_t level, const char* format,
                                const GenICam::FormatArguments& arguments) noexcept;

/// Writes a message; one that is switched off costs one relaxed atomic load. Never throws. Thread-safe.
template <class... Arguments>
void LogTrace(CategoryId category, std::uint32_t level, const char* format, const Arguments&... arguments) noexcept {
    if (!category->IsOn(level))
        return;
    if constexpr (sizeof...(arguments) == 0) {
        WriteMessage(category, level, format, {});
    } else {
        const GenICam::FormatArgument typed[] = {GenICam::FormatArgument(arguments)...};
        WriteMessage(category, level, format, typed);
    }
}

}  // namespace Vanto::tracelog
