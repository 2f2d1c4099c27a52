/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's serial port, whatever the system makes it of
 */
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include "gencp/ByteOrder.h"

namespace MarlowSimTest {

class HostPort {
public:
    virtual ~HostPort() = default;

    /// \throw std::runtime_error The port can't be opened
    static std::unique_ptr<HostPort> Open(const std::filesystem::path& link);
    /// Whether the machine has a port under that name, open or not.
    static bool IsThere(const std::filesystem::path& link);

    virtual void SetBaudRate(std::uint32_t bitsPerSecond) = 0;
    virtual void SendBytes(gencp::ByteView bytes) = 0;
    /// Waits for bytes and appends them; false at the deadline or when the line hangs up.
    virtual bool Fill(std::chrono::steady_clock::time_point deadline, gencp::Bytes& bytes) = 0;
    virtual bool HasHungUp() const = 0;
    /// Waits until the line hangs up; false when it does not.
    virtual bool WaitForHangUp() const = 0;
};

}  // namespace MarlowSimTest
