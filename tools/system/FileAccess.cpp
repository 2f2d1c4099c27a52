/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The names of ports
 */
#include "system/FileAccess.h"

#include <string_view>

namespace tools {

std::string DeviceNameOf(const std::string& portId) {
    constexpr std::string_view kMaker = "COM_Port#";
    return portId.starts_with(kMaker) ? portId.substr(kMaker.size()) : std::string();
}

}  // namespace tools
