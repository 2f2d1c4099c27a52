/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A program that logs, for tests of what the environment makes of it
 */

#include "vanto/TraceLog.h"

// With an argument one line of each level as well.
int main(int argc, char**) {
    using namespace Vanto::tracelog;
    const CategoryId one = LogGetCatID("Probe.One");
    const CategoryId two = LogGetCatID("Probe.Two");
    LogTrace(one, kError, "one error %d", 1);
    LogTrace(one, kDebug, "one debug");
    LogTrace(two, kWarning, "two warning '%s'", "line\nforged\x1b[31m {} %n");
    LogTrace(two, kTrace, "two trace");
    const CategoryId levels = LogGetCatID("Probe.Levels");
    for (const std::uint32_t level : {257u, 256u, 255u, 128u, 127u, 64u, 63u, 32u, 31u, 16u}) {
        if (argc > 1)
            LogTrace(levels, level, "level %u", level);
    }
    return 0;
}
