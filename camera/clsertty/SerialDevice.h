/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One open serial line of the operating system, at the level of bytes
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "PortList.h"

namespace ClSerTty {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

/**
 * Every operation throws SerialError: CL_ERR_INVALID_REFERENCE when the line has gone (unplugged, hung up). Used by
 * three threads at once at most: one waits for input and takes it, one writes or is about the rate, and one counts or
 * discards input, but while none is taken. Cancel may be called beside all of them.
 */
class SerialDevice {
public:
    virtual ~SerialDevice() = default;

    /// Opens a port for exclusive use: raw, 8 data bits, no parity, 1 stop bit, no flow control, 9600 baud. Throws
    /// SerialError with CL_ERR_PORT_IN_USE when somebody has it, CL_ERR_INVALID_INDEX when it cannot be opened at all.
    static std::unique_ptr<SerialDevice> Open(const PortInfo& port);

    /// Waits until TakeInput has something to take; false at the deadline. It may have nothing after all.
    virtual bool WaitForInput(Deadline deadline) = 0;
    /// Takes what has arrived, at most \a buffer; 0 when nothing has.
    virtual std::size_t TakeInput(std::span<char> buffer) = 0;
    /// Waits until the line takes bytes and gives it as many as it takes; 0 at the deadline.
    virtual std::size_t WriteSome(std::span<const char> bytes, Deadline deadline) = 0;
    /// What TakeInput can take.
    virtual std::size_t BytesAvailable() = 0;
    virtual void DiscardInput() = 0;
    /// Flags of the rates that the line can do.
    virtual std::uint32_t SupportedBaudRates() = 0;
    /// Changes the rate after what was written has left; CL_ERR_BAUD_RATE_NOT_SUPPORTED when the line refuses it.
    virtual void SetBaudRate(std::uint32_t bitsPerSecond) = 0;
    /// Ends a wait of another thread, now and ever after, with CL_ERR_INVALID_REFERENCE.
    virtual void Cancel() noexcept = 0;
};

}  // namespace ClSerTty
