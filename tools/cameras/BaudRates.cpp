/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The baud rates of a Camera Link serial line, in words
 */
#include "cameras/BaudRates.h"

#include <fmt/format.h>

namespace tools {

std::string StrandedText(const std::string& camera, const std::string& device, std::uint32_t bitsPerSecond,
                         std::uint32_t restBitsPerSecond) {
    return fmt::format("{} stands at {} baud: a program left it there. 'vanto-cl rate {} {}' brings it back.", camera,
                       bitsPerSecond, device, restBitsPerSecond);
}

}  // namespace tools
