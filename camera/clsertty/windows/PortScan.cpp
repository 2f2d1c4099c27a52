/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds the machine's COM ports
 */

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "PortList.h"

namespace ClSerTty {

namespace {

/// The key in which each driver enters its ports, open or not.
class SerialMap {
public:
    SerialMap() {
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &m_key) !=
            ERROR_SUCCESS) {
            m_key = nullptr;
        }
    }
    ~SerialMap() {
        if (m_key != nullptr)
            RegCloseKey(m_key);
    }
    SerialMap(const SerialMap&) = delete;
    SerialMap& operator=(const SerialMap&) = delete;

    HKEY Get() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

PortList Look(const SerialMap& map) {
    PortList ports;
    for (DWORD index = 0; map.Get() != nullptr; ++index) {
        char valueName[256];
        DWORD valueNameSize = sizeof(valueName);
        char port[256] = {};
        DWORD portSize = sizeof(port) - 1;
        DWORD type = 0;
        const LONG result = RegEnumValueA(map.Get(), index, valueName, &valueNameSize, nullptr, &type,
                                          reinterpret_cast<BYTE*>(port), &portSize);
        if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA)
            break;
        if (result == ERROR_SUCCESS && type == REG_SZ && std::strlen(port) > 0)
            ports.push_back({port, std::string("\\\\.\\") + port});
    }
    return ports;
}

bool AreSame(const PortList& left, const PortList& right) {
    return std::ranges::equal(left, right, {}, &PortInfo::name, &PortInfo::name);
}

}  // namespace

/// The entries have numbers, which move while a port comes or goes: a look that the next one does not confirm may have
/// missed one that was there all the time.
PortList FindPorts() {
    constexpr int kMostLooks = 20;
    const SerialMap map;
    PortList ports = Look(map);
    for (int look = 1; look < kMostLooks; ++look) {
        PortList again = Look(map);
        const bool isConfirmed = AreSame(ports, again);
        ports = std::move(again);
        if (isConfirmed)
            break;
    }
    return MergePorts({ports});
}

}  // namespace ClSerTty
