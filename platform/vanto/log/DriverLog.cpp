/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What CLProtocol and the camera drivers tell, as log messages
 */

#include "CLProtocol/Log.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

std::uint32_t LevelOf(CLINT32 level) {
    if (level <= CLProtocol::CLP_LOG_ERROR)
        return tracelog::kError;
    if (level <= CLProtocol::CLP_LOG_WARN)
        return tracelog::kWarning;
    return level <= CLProtocol::CLP_LOG_INFO ? tracelog::kInfo : tracelog::kDebug;
}

void LogMessage(CLINT32 level, const char* category, const char* message) {
    LogTrace(tracelog::LogGetCatID(category), LevelOf(level), "%s", message);
}

// Connects CLProtocol's messages with the log for as long as this library is loaded. Drivers format their debugging
// messages only when somebody wants to read them.
class Connection {
public:
    Connection() {
        const tracelog::CategoryId drivers = tracelog::LogGetCatID(CLProtocol::kDriverLogCategory);
        CLProtocol::SetLogSink(LogMessage,
                               drivers->IsOn(tracelog::kDebug) ? CLProtocol::CLP_LOG_DEBUG : CLProtocol::CLP_LOG_INFO);
    }
    ~Connection() { CLProtocol::SetLogSink({}); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
};

const Connection g_connection;

}  // namespace

}  // namespace Vanto
