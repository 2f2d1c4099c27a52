/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A simulated camera's registers as the port of a node map
 */
#pragma once

#include <cstring>

#include "Base/GCException.h"
#include "GenApi/GenApi.h"
#include "camera/Firmware.h"
#include "gencp/BaudRate.h"
#include "gencp/Protocol.h"

namespace MarlowSim {

/// A camera without a line; the driver's own register is played by a variable.
class FirmwarePort final : public GenApi::IPort {
public:
    explicit FirmwarePort(const CameraOptions& options) : m_firmware(options, Clock::now()) {
        m_firmware.PowerOn(1, Clock::now());
    }
    virtual ~FirmwarePort() = default;

    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }

    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        gencp::Bytes bytes = NumberBytes(m_baudRate, 4);
        if (!IsBaudRate(address)) {
            Require(m_firmware.Read(static_cast<std::uint64_t>(address), static_cast<std::size_t>(length), bytes,
                                    Clock::now()));
        }
        std::memcpy(buffer, bytes.data(), static_cast<std::size_t>(length));
    }

    void Write(const void* buffer, std::int64_t address, std::int64_t length) override {
        const gencp::ByteView bytes(static_cast<const std::uint8_t*>(buffer), static_cast<std::size_t>(length));
        if (IsBaudRate(address)) {
            m_baudRate = gencp::Load32(bytes, 0);
        } else {
            Require(m_firmware.Write(static_cast<std::uint64_t>(address), bytes, Clock::now()));
        }
    }

private:
    static bool IsBaudRate(std::int64_t address) {
        return static_cast<std::uint64_t>(address) == gencp::kBaudRateRegister.address;
    }

    static void Require(std::uint16_t status) {
        if (gencp::IsError(status))
            throw RUNTIME_EXCEPTION("The camera refuses (%d).", static_cast<int>(status));
    }

    Firmware m_firmware;
    std::uint32_t m_baudRate = 15;
};

}  // namespace MarlowSim
