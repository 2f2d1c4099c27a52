/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What GenApi tells about faulty descriptions, as log messages
 */

#include "GenApi/Diagnostics.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

void LogWarning(const GenApi::Warning& warning) {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("GenApi.NodeMap");
    if (warning.Line == 0)
        LogTrace(category, tracelog::kWarning, "%s: node '%s': %s", warning.File, warning.Node, warning.Message);
    else
        LogTrace(category, tracelog::kWarning, "%s(%u,%u): node '%s': %s", warning.File, warning.Line, warning.Column,
                 warning.Node, warning.Message);
}

// Connects GenApi's warnings with the log for as long as this library is loaded.
class Connection {
public:
    Connection() { GenApi::SetWarningSink(LogWarning); }
    ~Connection() { GenApi::SetWarningSink({}); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
};

const Connection g_connection;

}  // namespace

}  // namespace Vanto
