/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial ports that the library offers: which, under which names, in which order
 */
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ClSerTty {

struct PortInfo {
    std::string name;  ///< what an application sees
    std::string path;  ///< what is opened; a link is followed only then

    bool operator==(const PortInfo&) const = default;
};

using PortList = std::vector<PortInfo>;

bool ComesBefore(std::string_view left, std::string_view right);
PortList MergePorts(const std::vector<PortList>& sources);

/// \brief Look for the machine's ports now. Thread-safe.
PortList FindPorts();

/// \brief Look for the ports and let the calling thread's indices mean that list from now on
std::size_t RefreshPorts();
PortInfo PortAt(std::size_t index);

}  // namespace ClSerTty
