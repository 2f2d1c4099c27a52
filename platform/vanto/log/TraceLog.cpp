/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Logging: categories, levels and messages whose arguments are typed
 */

#include "vanto/TraceLog.h"

#include "log/LogRegistry.h"

namespace Vanto::tracelog {

/**
 * \brief The category of a name, made on first use; it lives as long as the process
 * \context Thread-safe
 */
CategoryId LogGetCatID(const char* name) {
    return LogRegistry::Instance().GetCategory(name != nullptr ? name : "");
}

/**
 * \brief Write a message that is switched on: to the sinks, then to the subscribers
 *
 * Whoever logs is in the middle of something else, so a message that can't be written is lost without a word.
 *
 * \context Thread-safe
 */
void WriteMessage(CategoryId category, std::uint32_t level, const char* format,
                  const GenICam::FormatArguments& arguments) noexcept {
    try {
        LogRegistry::Instance().Write(*category, level, format, arguments);
    } catch (...) {  // see above
    }
}

}  // namespace Vanto::tracelog
