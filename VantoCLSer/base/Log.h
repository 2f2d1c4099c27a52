/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The plug-in's log categories
 */
#pragma once

#include "vanto/TraceLog.h"

namespace Vanto {

using tracelog::LogTrace;

/// Transport layer, configuration, enumeration and the port's probe.
inline tracelog::CategoryId TlLog() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("Vanto.CLSer.TL");
    return category;
}

inline tracelog::CategoryId PortLog() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("Vanto.CLSer.Port");
    return category;
}

inline tracelog::CategoryId DeviceLog() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("Vanto.CLSer.Device");
    return category;
}

inline tracelog::CategoryId StreamLog() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("Vanto.CLSer.Stream");
    return category;
}

/// Fetches all of them, so that nobody who has to go on without memory does it.
inline void FetchLogCategories() {
    TlLog();
    PortLog();
    DeviceLog();
    StreamLog();
}

}  // namespace Vanto
