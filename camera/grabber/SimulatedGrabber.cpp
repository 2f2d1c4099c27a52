/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A frame grabber whose frames are drawn
 */

#include "SimulatedGrabber.h"

#include <algorithm>
#include <stdexcept>

namespace grabber {

namespace {

void FailIfAsked(const std::optional<std::string>& text) {
    if (text)
        throw std::runtime_error(*text);
}

}  // namespace

// Nothing is thrown at the caller: a failure leaves its text.
template <class Action>
bool SimulatedGrabber::Succeeds(const Action& action) noexcept {
    try {
        action();
        return true;
    } catch (const std::exception& error) {
        const std::lock_guard lock(m_lock);
        m_errorText = error.what();
        return false;
    }
}

bool SimulatedGrabber::Init(const char* parameters, Vanto::FgCallee* callee) {
    return Succeeds([&] {
        if (callee == nullptr)
            throw std::invalid_argument("There is nobody to deliver frames to.");
        m_settings = ParseSettings(parameters != nullptr ? parameters : "");
        FailIfAsked(m_settings.failInit);
        m_callee = callee;
        m_poCL = m_settings.poCL;
        NodeWatch::TriggerFunction onTrigger;
        if (m_settings.triggered)
            onTrigger = [this](std::int64_t count) { m_acquisition.SetTriggerCount(count); };
        m_nodes.Begin(*callee, std::move(onTrigger));
    });
}

void SimulatedGrabber::Shutdown() {
    m_acquisition.Stop();
    m_nodes.End();
}

bool SimulatedGrabber::StartGrab() {
    return Succeeds([&] {
        FailIfAsked(m_settings.failStart);
        if (m_callee == nullptr)
            throw std::logic_error("The grabber is not initialised.");
        m_acquisition.Start(MakeGeometry(m_nodes.Values()), m_settings, *m_callee);
    });
}

bool SimulatedGrabber::StopGrab() {
    m_acquisition.Stop();
    return Succeeds([&] { FailIfAsked(m_settings.failStop); });
}

std::uint32_t SimulatedGrabber::GetLastErrorText(char* buffer, std::uint32_t size) {
    const std::lock_guard lock(m_lock);
    if (buffer != nullptr)
        m_errorText.copy(buffer, std::min<std::size_t>(size, m_errorText.size()));
    return static_cast<std::uint32_t>(m_errorText.size());
}

std::uint64_t SimulatedGrabber::GetValue(std::uint32_t parameter) {
    return parameter == Vanto::kFgPixelClockDetected ? m_settings.pixelClock : 0;
}

std::int32_t SimulatedGrabber::PoCLControl(std::uint32_t command) {
    const std::lock_guard lock(m_lock);
    if (command == Vanto::kFgPoCLOn || command == Vanto::kFgPoCLOff)
        m_poCL = command == Vanto::kFgPoCLOn;
    return m_poCL ? 1 : 0;
}

}  // namespace grabber
