/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The log category of the factory
 */
#pragma once

#include "vanto/TraceLog.h"

namespace Vanto {

inline tracelog::CategoryId FactoryLog() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("vanto.base.Factory");
    return category;
}

}  // namespace Vanto
