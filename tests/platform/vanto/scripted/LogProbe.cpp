/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A program that logs, for tests of what the environment makes of it
 */

#include "vanto/TraceLog.h"

int main() {
    using namespace Vanto::tracelog;
    const CategoryId one = LogGetCatID("Probe.One");
    const CategoryId two = LogGetCatID("Probe.Two");
    LogTrace(one, kError, "one error %d", 1);
    LogTrace(one, kDebug, "one debug");
    LogTrace(two, kWarning, "two warning '%s'", "line\nforged\x1b[31m {} %n");
    LogTrace(two, kTrace, "two trace");
    return 0;
}
