/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rig: a model camera on a virtual line, and the driver's parts on the other end of it
 */
#pragma once

#include <gtest/gtest.h>

#include "CameraMemory.h"
#include "Connection.h"
#include "DriverError.h"
#include "Exchanger.h"
#include "KnownCameras.h"
#include "Logger.h"
#include "ModelCamera.h"
#include "SerialLine.h"
#include "VirtualClock.h"
#include "VirtualLine.h"
#include "clser/ClSerial.h"

namespace marlow::test {

inline constexpr std::chrono::milliseconds kTimeout{400};

/// What a call throws; fails the test when it throws nothing.
template <typename Function>
CLINT32 CodeOf(Function function) {
    try {
        function();
    } catch (const DriverError& error) {
        return error.Code();
    }
    ADD_FAILURE() << "nothing was thrown";
    return 0;
}

template <typename Function>
std::string TextOf(Function function) {
    try {
        function();
    } catch (const DriverError& error) {
        return error.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

struct Rig {
    VirtualClock clock;
    ModelCamera camera{clock};
    VirtualLine serial{clock, camera};
    Logger logger;
    KnownCameras known;

    std::chrono::milliseconds Elapsed() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(clock.Now().time_since_epoch());
    }
};

/// With the parts below a connection.
struct MemoryRig : Rig {
    SerialLine line{serial, clock};
    Exchanger exchanger{line, logger};
    CameraMemory memory{line, exchanger};

    MemoryRig() {
        memory.SetTimeout(kTimeout);
        memory.SetResponseTime(std::chrono::milliseconds(50));
        gencp::Bytes version(4);
        memory.Read(0, version);  // takes request id 0
        camera.received.clear();
        camera.commandPackets = 0;
        camera.acknowledgePackets = 0;
    }

    void SetRate(std::uint32_t flag) {
        camera.SetRate(flag);
        line.SetRate(*gencp::FindBaudRateByFlag(flag));
    }
};

/// With an open connection.
struct OpenRig : Rig {
    Connection connection{serial, clock, logger, known};

    void Open(const std::string& request = "Marlow") { connection.Open(DeviceRequest(request), kTimeout, nullptr); }

    gencp::Bytes Read(std::uint64_t address, std::size_t length) {
        gencp::Bytes data(length);
        connection.Read(serial, address, data, kTimeout);
        return data;
    }

    bool Write(std::uint64_t address, const gencp::Bytes& data) {
        return connection.Write(serial, address, data, kTimeout);
    }
};

}  // namespace marlow::test
