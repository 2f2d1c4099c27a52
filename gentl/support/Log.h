/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The producer's log category
 */
#pragma once

#include "vanto/TraceLog.h"

namespace gentl {

/// Category "Vanto.GenTL".
inline Vanto::tracelog::CategoryId LogCategory() {
    static const Vanto::tracelog::CategoryId category = Vanto::tracelog::LogGetCatID("Vanto.GenTL");
    return category;
}

}  // namespace gentl
