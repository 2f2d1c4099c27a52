/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenDevice: a camera that is open as long as this object lives
 */
#pragma once

#include <atomic>
#include <chrono>
#include <string>

#include "GenApi/GenApi.h"
#include "cameras/TransportLayer.h"
#include "system/Interruption.h"

namespace tools {

class Output;

/// Finds a camera and opens it; closes it and gives its baud rate back at the end, whatever ends the command. While it
/// lives, Ctrl-C only sets a flag: ThrowIfInterrupted() between two accesses turns it into an end. Thread-bound.
class OpenDevice {
public:
    OpenDevice(const std::string& device, Output& output);
    ~OpenDevice();
    OpenDevice(const OpenDevice&) = delete;
    OpenDevice& operator=(const OpenDevice&) = delete;

    Vanto::IVantoDevice& Device() const noexcept { return *m_device; }
    GenApi::INodeMap& Nodes() const { return *m_device->GetNodeMap(); }
    /// The name that people read, fit for a terminal.
    const std::string& Name() const noexcept { return m_name; }
    /// Whether the camera went away since it was opened.
    bool IsGone() const noexcept { return m_gone; }
    void ThrowIfGone() const;

private:
    void Open();
    void Release() noexcept;

    Output& m_output;
    TransportLayer m_layer;
    Interruption::Watch m_watch;
    std::atomic<bool> m_gone{false};
    std::string m_name;
    Vanto::IVantoDevice* m_device = nullptr;
};

void ThrowIfInterrupted();
/// Sleeps; false when somebody asked to end meanwhile.
bool SleepUninterrupted(std::chrono::milliseconds duration);

}  // namespace tools
