/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a feature is not available, or only to be read
 */
#pragma once

#include <string>

#include "GenApi/GenApi.h"

namespace tools {

/// Which condition of the description keeps a feature from being used at present, with the values that it looks at:
/// "pIsLocked is TLParamsLocked, because TLParamsLocked=1". Empty where nothing is found. Asks the camera.
std::string WhyRestricted(GenApi::INode& node);

}  // namespace tools
