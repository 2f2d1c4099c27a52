/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenDevice: a camera that is open as long as this object lives
 */
#include "features/OpenDevice.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <thread>

#include "cameras/DeviceChoice.h"
#include "error/ExitCode.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "vanto/DeviceRemovalCallback.h"

namespace tools {

/**
 * \brief Find and open a camera
 * \param[in] device What the user calls it
 * \param[in] output For progress, and for a warning when the camera can't be closed
 * \throw ToolError There is no such camera (kNoDevice), or the user asked to end meanwhile
 * \throw GenericException It can't be opened
 */
OpenDevice::OpenDevice(const std::string& device, Output& output) : m_output(output) {
    std::optional<Progress> progress(std::in_place, output, "Looking for cameras");
    const Vanto::CDeviceInfo camera = FindDevice(m_layer, device);
    m_name = Printable(PropertyOf(camera, "FriendlyName"));
    progress.reset();
    ThrowIfInterrupted();
    progress.emplace(output, "Opening " + m_name);
    m_device = m_layer.Require().CreateDevice(camera);
    try {
        Open();
        ThrowIfInterrupted();
    } catch (...) {
        progress.reset();
        Release();
        throw;
    }
}

OpenDevice::~OpenDevice() {
    Release();
}

/// Throws ToolError when the camera went away: what it refused since then says nothing.
void OpenDevice::ThrowIfGone() const {
    if (m_gone)
        throw ToolError(m_name + " is gone", "Is its cable plugged in, and is it switched on?");
}

void OpenDevice::Open() {
    m_device->Open();
    Vanto::RegisterRemovalCallback(*m_device, [this](Vanto::IVantoDevice*) { m_gone = true; });
    if (m_device->GetNodeMap() == nullptr)
        throw ToolError(m_name + " has no features");
}

void OpenDevice::Release() noexcept {
    try {
        if (m_device->IsOpen())
            m_device->Close();
    } catch (const std::exception& error) {
        if (!m_gone)
            m_output.Warn(fmt::format("{} was not closed as it should be: {}", m_name, error.what()));
    }
    try {
        m_layer.Require().DestroyDevice(m_device);
    } catch (const std::exception& error) {
        m_output.Warn(error.what());
    }
}

/// Ends the command when somebody asked for it: throws a ToolError with kInterrupted.
void ThrowIfInterrupted() {
    if (Interruption::Requested())
        throw ToolError("interrupted", {}, ExitCode::kInterrupted);
}

bool SleepUninterrupted(std::chrono::milliseconds duration) {
    constexpr std::chrono::milliseconds kStep{20};
    const auto end = std::chrono::steady_clock::now() + duration;
    while (!Interruption::Requested()) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= end)
            return true;
        std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(kStep, end - now));
    }
    return false;
}

}  // namespace tools
