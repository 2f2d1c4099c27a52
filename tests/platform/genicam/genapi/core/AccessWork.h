/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the work of one access have in common
 */
#pragma once

#include <functional>
#include <string>

#include "Support.h"

namespace genapitest {

/// A register that is read whenever it is asked for.
inline std::string Uncached(const std::string& name, int address = 0) {
    return "<IntReg Name='" + name + "'><Address>" + std::to_string(address) + "</Address><Length>4</Length>" +
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable></IntReg>";
}

using Maker = std::function<std::string(const std::string& name, const std::string& next)>;

/// Nodes N0 to N(count), each made from the name of the next one; the last one is \a end.
inline std::string Chain(int count, const Maker& make, const std::string& end) {
    std::string nodes;
    for (int i = 0; i < count; ++i)
        nodes += make("N" + std::to_string(i), "N" + std::to_string(i + 1));
    return nodes + end;
}

/// Counts what an access reads.
class AccessWork : public NodeMapTest {
protected:
    int ReadsOf(const std::function<void()>& access) {
        port.accesses.clear();
        access();
        return port.Reads();
    }
};

}  // namespace genapitest
