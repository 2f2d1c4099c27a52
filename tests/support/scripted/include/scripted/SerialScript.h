/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a scripted Camera Link serial library does: its ports, the cameras on them, and hooks for each function
 */
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "clser/ClSerial.h"

namespace scripted {

/// One port. Lock SerialScript::mutex to use it while the library may be at work.
struct PortScript {
    std::string name;
    std::string camera;  ///< short DeviceID of the camera on the cable; empty: nobody answers
    std::string input;   ///< bytes that the port has received and nobody has read yet
    std::string output;  ///< bytes that were written to the port
    bool isOpen = false;
    std::uint32_t rate = 0;            ///< the last rate that was set, as a flag
    std::vector<std::uint32_t> rates;  ///< all rates that were set, in order
    int opened = 0;                    ///< successful clSerialInit
    int closed = 0;                    ///< clSerialClose
};

/// The state of one scripted serial library. Without hooks it is a correct library of version 2.1 with one port
/// "Port0" of the maker "Scripted", on which there is no camera.
///
/// A text that begins with '?' and is written to a port is the scripted driver's question which camera is there: the
/// port answers with 128 bytes, the camera's DeviceID padded with NUL, or not at all. Everything else only goes to
/// PortScript::output. A read waits for its time-out; what a test wants to be read it puts into PortScript::input.
///
/// A hook that is set replaces its function. Hooks run without the mutex held, on the thread that calls the library,
/// and may throw. Set them before the library is used or while nothing uses it, and clear them (Reset) afterwards.
class SerialScript {
public:
    using Text = std::function<std::int32_t(char*, std::uint32_t*)>;
    using Transfer = std::function<std::int32_t(PortScript&, char*, std::uint32_t*, std::uint32_t timeoutMs)>;

    std::mutex mutex;
    std::string maker;
    std::uint32_t version;
    std::vector<PortScript> ports;
    std::uint32_t supportedRates;
    std::map<std::int32_t, std::string> errorTexts;
    int calls;  ///< of all functions together

    std::function<std::int32_t(char*, std::uint32_t*, std::uint32_t*)> onGetManufacturerInfo;
    std::function<std::int32_t(std::uint32_t*)> onGetNumSerialPorts;
    std::function<std::int32_t(std::uint32_t, char*, std::uint32_t*)> onGetSerialPortIdentifier;
    std::function<std::int32_t(std::uint32_t, hSerRef*)> onInit;  ///< CL_ERR_NO_ERR with an untouched ref: go on
    std::function<void(PortScript&)> onClose;                     ///< before the port is closed
    Transfer onRead;
    Transfer onWrite;
    std::function<std::int32_t(std::uint32_t*)> onGetSupportedBaudRates;
    std::function<std::int32_t(PortScript&, std::uint32_t)> onSetBaudRate;
    std::function<std::int32_t(std::int32_t, char*, std::uint32_t*)> onGetErrorText;

    SerialScript() { Reset(); }

    /// The state that a library begins with. Closes nothing that a host has open.
    void Reset() {
        const std::lock_guard lock(mutex);
        maker = "Scripted";
        version = CL_DLL_VERSION_2_1;
        ports.assign(1, PortScript{});
        ports.reserve(kMaxPorts);
        ports[0].name = "Port0";
        supportedRates = 0xff;
        errorTexts.clear();
        calls = 0;
        onGetManufacturerInfo = nullptr;
        onGetNumSerialPorts = nullptr;
        onGetSerialPortIdentifier = nullptr;
        onInit = nullptr;
        onClose = nullptr;
        onRead = onWrite = nullptr;
        onGetSupportedBaudRates = nullptr;
        onSetBaudRate = nullptr;
        onGetErrorText = nullptr;
    }

    /// Makes it \a count ports "Port0", "Port1", ... with a camera on each whose text is given (empty: none).
    void SetPorts(std::size_t count, const std::vector<std::string>& cameras = {}) {
        const std::lock_guard lock(mutex);
        ports.assign(count, PortScript{});
        for (std::size_t index = 0; index < count; ++index) {
            ports[index].name = "Port" + std::to_string(index);
            ports[index].camera = index < cameras.size() ? cameras[index] : std::string();
        }
    }

    /// Plugs a camera on a port (empty: pulls the cable).
    void SetCamera(std::size_t port, const std::string& deviceId) {
        const std::lock_guard lock(mutex);
        ports.at(port).camera = deviceId;
    }

    PortScript Port(std::size_t index) {
        const std::lock_guard lock(mutex);
        return ports.at(index);
    }

    static constexpr std::size_t kMaxPorts = 64;  ///< more would move ports that are open
};

}  // namespace scripted
