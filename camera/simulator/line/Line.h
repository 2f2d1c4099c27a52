/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One end of a serial line, whatever the system makes it of
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "Time.h"
#include "gencp/ByteOrder.h"

namespace MarlowSim {

/// The camera's end of a line whose other end a link names. Destruction hangs the line up.
class Line {
public:
    virtual ~Line() = default;

    /// \throw std::system_error The system refuses a line or the link
    static std::unique_ptr<Line> Create(const std::filesystem::path& link);

    /// Takes what has come, at most \a buffer; does not wait.
    virtual std::size_t Receive(std::span<std::uint8_t> buffer) = 0;
    /// Hands bytes to the host; what does not fit is lost, as on any line without flow control.
    virtual void Send(gencp::ByteView bytes) = 0;
    /// The rate that the host has set, bit/s; 0 for one that no camera has.
    virtual std::uint32_t HostBitsPerSecond() const = 0;
    /// Whether the host has read all that was sent.
    virtual bool IsRead() const = 0;
    /// What the system knows the line by, for LineWaiter.
    virtual int Handle() const = 0;
};

/// Waits for bytes on any of several lines. Wait belongs to one thread, Wake to all.
class LineWaiter {
public:
    virtual ~LineWaiter() = default;
    static std::unique_ptr<LineWaiter> Create();

    /// Returns when a line has bytes, at the time given, or after Wake; at times for no reason.
    virtual void Wait(std::span<Line* const> lines, std::optional<TimePoint> until) = 0;
    virtual void Wake() noexcept = 0;
    /// Has the calling thread, which is the one that waits, run as punctually as the system allows.
    virtual void BePunctual() noexcept = 0;
};

}  // namespace MarlowSim
