/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why no camera was found, and what to do about it
 */
#pragma once

#include <string>
#include <vector>

#include "cameras/Enumeration.h"

namespace tools {

/// One cause and its remedy, a sentence or more each.
struct Reason {
    std::string cause;
    std::string remedy;
};

std::vector<Reason> WhyNoCamera(const TransportLayer& layer, const Enumeration& enumeration);

}  // namespace tools
