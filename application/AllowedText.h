/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a feature takes at present, as people read it
 */
#pragma once

#include <string>

namespace GenApi {
struct INode;
}

namespace Vanto {

std::string AllowedText(GenApi::INode* node) noexcept;

}  // namespace Vanto
