/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the frame that transport layers share logs and throws with
 */
#pragma once

#include <source_location>
#include <string>

#include "vanto/TraceLog.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

/// Log category and source name, the same whichever file a message comes from: logs are parsed by them.
struct TransportLayerMessages {
    static constexpr char kSource[] = "include/vanto/internal/TransportLayerPrivateImpl";

    static tracelog::CategoryId Log() {
        static const tracelog::CategoryId category = tracelog::LogGetCatID("vanto.base.TL");
        return category;
    }

    /// The line is that of whoever calls it.
    [[noreturn]] static void LogAndThrow(const std::string& message,
                                         std::source_location where = std::source_location::current()) {
        tracelog::LogTrace(Log(), tracelog::kError, "%s", message);
        throw VANTO_EXCEPTION_AT(RuntimeException, kSource, where)("%s", message);
    }
};

}  // namespace Vanto
