/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes of descriptions, as texts
 */
#pragma once

#include <string>

namespace genapitest {

inline std::string Reg(const std::string& name, const std::string& mode = "RW") {
    return "<IntReg Name='" + name + "'><Address>0</Address><Length>4</Length><AccessMode>" + mode +
           "</AccessMode><pPort>Device</pPort></IntReg>";
}

inline std::string Entry(const std::string& name, int value, const std::string& more = "") {
    return "<EnumEntry Name='" + name + "'><Value>" + std::to_string(value) + "</Value>" + more + "</EnumEntry>";
}

}  // namespace genapitest
