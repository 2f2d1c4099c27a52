/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The descriptions that the build embeds
 */
#pragma once

#include <string_view>

namespace MarlowSim {

/// descriptions/Heron.xml, a template for all models
std::string_view HeronDescription();

}  // namespace MarlowSim
