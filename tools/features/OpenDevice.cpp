/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenDevice: a camera that is open as long as this object lives
 */
#include "features/OpenDevice.h"

#include <fmt/format.h>

#include "cameras/BaudRates.h"
#include "cameras/CameraSearch.h"
#include "cameras/DescriptionTrouble.h"
#include "cameras/Fetching.h"
#include "cameras/LogTexts.h"
#include "cameras/Records.h"
#include "error/ExitCode.h"
#include "features/FeatureWords.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/Interruptible.h"
#include "vanto/LogListener.h"

namespace tools {

/**
 * \brief Find and open a camera
 * \param[in] device What the user calls it
 * \param[in] output For progress, and for warnings about the camera's baud rate and about a close that failed
 * \param[in] use What becomes of the camera's baud rate
 * \throw ToolError There is no such camera (kNoDevice), or the user asked to end meanwhile
 * \throw CameraError It can't be opened
 */
OpenDevice::OpenDevice(const std::string& device, Output& output, Use use)
    : m_output(output), m_ownLayer(std::in_place), m_layer(*m_ownLayer) {
    CameraSearch(m_layer, output).Find(device, [&](const Vanto::CDeviceInfo& camera) { Open(camera, use); });
    Prepare(use);
}

/**
 * \brief Open a camera that was found
 * \param[in] layer Must outlive this
 * \param[in] camera Its record
 */
OpenDevice::OpenDevice(const TransportLayer& layer, const Vanto::CDeviceInfo& camera, Output& output, Use use)
    : m_output(output), m_layer(layer) {
    Open(camera, use);
    Prepare(use);
}

// Connects to the camera, fetches its description where it is not known, and brings it to its rate.
void OpenDevice::Open(const Vanto::CDeviceInfo& camera, Use use) {
    m_name = NameOf(camera);
    m_address = AddressOf(camera);
    const Fetching progress(m_layer.Ports(), m_output, "Opening " + m_name);
    const Vanto::tracelog::LogRecorder log(log_texts::kDeviceWarnings);
    ReadDescription(m_name, [&] {
        if (use == Use::kConnect)
            m_device = m_layer.Require().CreateDevice(camera);
        else
            m_device = &m_camera.emplace(camera).Device();
    });
    for (const auto& message : log.GetMessages())
        if (log_texts::IsRefusedRate(message.format) && !message.arguments.empty())
            m_rateRefusal = message.arguments.back();
}

void OpenDevice::Prepare(Use use) {
    try {
        ThrowIfInterrupted();
        if (m_device->GetNodeMap() == nullptr)
            throw ToolError(m_name + " has no features");
        KeepFeatureWords(Nodes(), m_address.deviceId);
    } catch (...) {
        Release();
        throw;
    }
    if (m_camera)
        m_camera->SetStopCheck(&Interruption::Requested);
    if (use == Use::kOpen)
        WarnOfRate();
}

OpenDevice::~OpenDevice() {
    Release();
}

std::string OpenDevice::WithoutName(std::string_view sentence) const {
    const std::string begin = m_name + ": ";
    if (sentence.starts_with(begin))
        sentence.remove_prefix(begin.size());
    return std::string(sentence);
}

/// Throws ToolError when the camera went away: what it refused since then says nothing.
void OpenDevice::ThrowIfGone() const {
    if (IsGone())
        throw ToolError(m_name + " is gone", "Is its cable plugged in, and is it switched on?");
}

// An application that ends without closing its camera leaves it at the rate that it used, and each one that comes after
// gives that rate back.
std::optional<std::string> OpenDevice::Stranded() const {
    const auto news = m_layer.Ports().Of(m_address.portId);
    const KnownCameras known = LoadKnownCameras(m_output);
    const KnownCamera* const camera = known.At(m_address);
    const std::uint32_t rest = camera != nullptr && camera->restBaudRate != 0 ? camera->restBaudRate : kFirstBaudRate;
    if (!news || news->baudRate <= rest)
        return std::nullopt;
    return StrandedText(m_name, m_address.portId, news->baudRate, rest);
}

void OpenDevice::WarnOfRate() const {
    if (const std::optional<std::string> stranded = Stranded())
        m_output.Warn(*stranded);
    if (m_rateRefusal)
        m_output.Warn(fmt::format("{} does not take its baud rate: {} 'vanto-cl doctor' says which one works.", m_name,
                                  *m_rateRefusal));
}

void OpenDevice::Release() noexcept {
    try {
        if (m_camera)
            m_camera->Close();
        else
            m_layer.Require().DestroyDevice(m_device);
    } catch (const std::exception& error) {
        m_output.Warn(error.what());
    }
}

}  // namespace tools
