/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything of a camera that its registers reach
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "Time.h"
#include "camera/CameraModel.h"
#include "camera/Description.h"
#include "camera/Features.h"
#include "camera/RegisterFile.h"
#include "simulator/CameraOptions.h"

namespace MarlowSim {

/// Thread-bound.
class Firmware {
public:
    /// What a write asks of the serial line, from when its acknowledge has left.
    struct LineRequest {
        std::optional<std::uint32_t> baudRateFlag;
        bool isReleased = false;  ///< the host gave up its control
        bool isReset = false;
    };

    Firmware(const CameraOptions& options, TimePoint now);
    Firmware(const Firmware&) = delete;

    std::uint16_t Read(std::uint64_t address, std::size_t length, gencp::Bytes& out, TimePoint now);
    std::uint16_t Write(std::uint64_t address, gencp::ByteView data, TimePoint now);
    bool IsSlow(std::uint64_t address) const { return m_features.IsSlow(address); }
    LineRequest TakeLineRequest();

    void PowerOn(std::uint32_t baudRateFlag, TimePoint now);
    void SetBaudRateFlag(std::uint32_t flag);
    std::optional<std::chrono::milliseconds> HeartbeatTimeout() const;
    void ReleaseControl();
    const gencp::Bytes& Description() const { return m_description.bytes; }

private:
    void WatchLineRegisters(std::uint32_t supportedRates);
    std::uint32_t Temperature() const;

    const CameraModel& m_model;
    TimePoint m_powerOn;
    TimePoint m_now;
    LineRequest m_request;
    DescriptionFile m_description;
    RegisterFile m_file;
    Features m_features;
};

}  // namespace MarlowSim
