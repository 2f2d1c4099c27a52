/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as control sequences of terminals: ShowsSixels never says that one takes them
 */
#include "images/Sixel.h"

namespace tools {

std::string SixelsOf(std::vector<std::uint8_t>, std::size_t, std::size_t) {
    return {};
}

}  // namespace tools
