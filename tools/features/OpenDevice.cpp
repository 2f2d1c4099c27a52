/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenDevice: a camera that is open as long as this object lives
 */
#include "features/OpenDevice.h"

#include <fmt/format.h>

#include <optional>

#include "cameras/BaudRates.h"
#include "cameras/DeviceChoice.h"
#include "cameras/LogTexts.h"
#include "error/ExitCode.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Interruptible.h"
#include "vanto/DeviceRemovalCallback.h"
#include "vanto/LogListener.h"

namespace tools {

/**
 * \brief Find and open a camera
 * \param[in] device What the user calls it
 * \param[in] output For progress, and for warnings about the camera's baud rate and about a close that failed
 * \param[in] use What becomes of the camera's baud rate
 * \throw ToolError There is no such camera (kNoDevice), or the user asked to end meanwhile
 * \throw GenericException It can't be opened
 */
OpenDevice::OpenDevice(const std::string& device, Output& output, Use use)
    : m_output(output), m_ownLayer(std::in_place), m_layer(*m_ownLayer) {
    std::optional<Progress> progress(std::in_place, output, "Looking for cameras");
    const Vanto::CDeviceInfo camera = FindDevice(m_layer, device);
    progress.reset();
    ThrowIfInterrupted();
    Create(camera, use);
}

/**
 * \brief Open a camera that was found
 * \param[in] layer Must outlive this
 * \param[in] camera Its record
 */
OpenDevice::OpenDevice(const TransportLayer& layer, const Vanto::CDeviceInfo& camera, Output& output, Use use)
    : m_output(output), m_layer(layer) {
    Create(camera, use);
}

void OpenDevice::Create(const Vanto::CDeviceInfo& camera, Use use) {
    m_name = Printable(PropertyOf(camera, "FriendlyName"));
    m_portId = PropertyOf(camera, "PortID");
    std::optional<Progress> progress(std::in_place, m_output, "Opening " + m_name);
    m_device = m_layer.Require().CreateDevice(camera);
    try {
        if (m_device->GetNodeMap() == nullptr)
            throw ToolError(m_name + " has no features");
        if (use != Use::kConnect)
            Open();
        ThrowIfInterrupted();
    } catch (...) {
        progress.reset();
        Release();
        throw;
    }
    progress.reset();
    if (use == Use::kOpen)
        WarnOfRate();
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
    const Vanto::tracelog::LogRecorder log(log_texts::kDeviceWarnings);
    m_device->Open();
    for (const auto& message : log.GetMessages())
        if (log_texts::IsRefusedRate(message.format) && !message.arguments.empty())
            m_rateRefusal = message.arguments.back();
    Vanto::RegisterRemovalCallback(*m_device, [this](Vanto::IVantoDevice*) { m_gone = true; });
}

std::uint32_t OpenDevice::FoundBaudRate() const {
    const auto news = m_layer.Ports().Of(m_portId);
    return news ? news->baudRate : 0;
}

// An application that ends without closing its camera leaves it at the rate that it used, and each one that comes after
// gives that rate back.
void OpenDevice::WarnOfRate() const {
    if (FoundBaudRate() > kFirstBaudRate)
        m_output.Warn(StrandedText(m_name, m_portId, FoundBaudRate()));
    if (m_rateRefusal)
        m_output.Warn(fmt::format("{} does not take its baud rate: {} 'vanto-cl doctor' says which one works.", m_name,
                                  *m_rateRefusal));
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

}  // namespace tools
