/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port configuration entries as JSON
 */
#pragma once

#include "configuration/PortConfiguration.h"
#include "output/Json.h"

namespace tools {

Json ToJson(const PortEntry& entry);

}  // namespace tools
