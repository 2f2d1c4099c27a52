/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the module's log messages go
 */
#pragma once

#include <functional>

#include "CLProtocol/CLException.h"
#include "CLProtocol/CLProtocolTypes.h"

namespace CLProtocol {

inline constexpr char kLogCategory[] = "GenICam.CLProtocol";               ///< the module's own messages
inline constexpr char kDriverLogCategory[] = "GenICam.CLProtocol.Driver";  ///< what drivers log

/// Takes one message: its level (CLP_LOG_LEVELS: lower is more severe), category and text. The text is data and may
/// hold anything, '%' included. Called by any thread, several at once; must not use a port.
using LogSink = std::function<void(CLINT32 level, const char* category, const char* message)>;

/// Sets where messages go, up to a level; an empty sink switches them off, which is the state at the start. Drivers
/// that are loaded later are given the level as well. Returns when nothing uses the previous sink any more, unless
/// called by that very sink. Thread-safe.
CLPROTOCOL_API void SetLogSink(LogSink sink, CLINT32 level = CLP_LOG_INFO);

}  // namespace CLProtocol
