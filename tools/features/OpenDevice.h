/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenDevice: a camera that is open as long as this object lives
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "GenApi/GenApi.h"
#include "cameras/KnownCameras.h"
#include "cameras/TransportLayer.h"
#include "system/Interruption.h"
#include "vanto/Camera.h"

namespace tools {

class Output;

/// Finds a camera and opens it; closes it and gives its baud rate back at the end, whatever ends the command. While it
/// lives, Ctrl-C only sets a flag: ThrowIfInterrupted() between two accesses turns it into an end. Thread-bound.
class OpenDevice {
public:
    enum class Use {
        kOpen,     ///< as applications do: at the configured rate or the highest, and back to the rate from before
        kExamine,  ///< so, too, without warnings about the rate
        kConnect   ///< leaves the camera at its rate, and where the command brings it
    };

    OpenDevice(const std::string& device, Output& output, Use use = Use::kOpen);
    OpenDevice(const TransportLayer& layer, const Vanto::CDeviceInfo& camera, Output& output, Use use);
    ~OpenDevice();
    OpenDevice(const OpenDevice&) = delete;
    OpenDevice& operator=(const OpenDevice&) = delete;

    /// Not of one that is only connected.
    const Vanto::Camera& Camera() const { return *m_camera; }
    Vanto::IVantoDevice& Device() const noexcept { return *m_device; }
    GenApi::INodeMap& Nodes() const { return *m_device->GetNodeMap(); }
    /// The name that people read, fit for a terminal.
    const std::string& Name() const noexcept { return m_name; }
    /// A sentence that begins with the camera's name, as the library's do, without it: here there is only this one.
    std::string WithoutName(std::string_view sentence) const;
    /// Whether the camera went away since it was opened.
    bool IsGone() const noexcept { return m_camera && m_camera->IsGone(); }
    void ThrowIfGone() const;
    /// That a program left the camera at a rate at which it does not rest, and what to do; nothing when none did.
    std::optional<std::string> Stranded() const;
    /// The camera's port and DeviceID.
    const CameraAddress& Address() const noexcept { return m_address; }
    /// Why the configured baud rate, or the highest, was refused; nothing when it was not.
    const std::optional<std::string>& RateRefusal() const noexcept { return m_rateRefusal; }

private:
    void Open(const Vanto::CDeviceInfo& camera, Use use);
    void Prepare(Use use);
    void WarnOfRate() const;
    void Release() noexcept;

    Output& m_output;
    std::optional<TransportLayer> m_ownLayer;
    const TransportLayer& m_layer;
    Interruption::Watch m_watch;
    std::string m_name;
    CameraAddress m_address;
    std::optional<std::string> m_rateRefusal;
    std::optional<Vanto::Camera> m_camera;
    Vanto::IVantoDevice* m_device = nullptr;  // the camera's, or one that is only connected
};

}  // namespace tools
