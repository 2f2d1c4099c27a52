/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of caching have in common
 */
#pragma once

#include <string>

#include "Support.h"

namespace genapitest {

class Caching : public NodeMapTest {
protected:
    static std::string Reg(const std::string& name, const std::string& address, const std::string& more = "",
                           const std::string& kind = "IntReg") {
        return "<" + kind + " Name='" + name + "'>" + address + "<Length>4</Length><AccessMode>RW</AccessMode>" +
               "<pPort>Device</pPort>" + more + "</" + kind + ">";
    }
};

}  // namespace genapitest
