/* SPDX-License-Identifier: Apache-2.0 */
/*
 * KnownCameras: where each camera was last seen, so that it is found again at once
 */

#include "KnownCameras.h"

#include <algorithm>

namespace marlow {

namespace {

constexpr std::size_t kMostEntries = 256;

template <typename Entry, typename Predicate>
void PutFirst(std::list<Entry>& entries, Entry entry, Predicate isSame) {
    std::erase_if(entries, isSame);
    entries.push_front(std::move(entry));
    if (entries.size() > kMostEntries)
        entries.pop_back();
}

}  // namespace

/**
 * \brief Note that a camera was seen, or left, at a baud rate
 * \param[in] line What stands for its port; only compared
 * \param[in] facts Of the camera
 * \param[in] rateFlag One of gencp::kBaudRates
 */
void KnownCameras::Remember(const CLProtocol::ISerial* line, const CameraFacts& facts, std::uint32_t rateFlag) {
    const std::lock_guard lock(m_mutex);
    PutFirst(m_cameras, {facts, rateFlag},
             [&](const Camera& camera) { return camera.facts.name.IsSameCameraAs(facts.name); });
    PutFirst(m_lines, {line, rateFlag}, [&](const Line& known) { return known.line == line; });
}

/// The camera that a request names; nothing for a template.
std::optional<KnownCameras::Camera> KnownCameras::Find(const DeviceRequest& request) const {
    if (!request.NamesOneCamera())
        return std::nullopt;
    const std::lock_guard lock(m_mutex);
    const auto found =
        std::ranges::find_if(m_cameras, [&](const Camera& camera) { return request.Fits(camera.facts.name); });
    if (found == m_cameras.end())
        return std::nullopt;
    return *found;
}

std::optional<std::uint32_t> KnownCameras::RateOf(const CLProtocol::ISerial* line) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::ranges::find(m_lines, line, &Line::line);
    if (found == m_lines.end())
        return std::nullopt;
    return found->rateFlag;
}

void KnownCameras::Clear() {
    const std::lock_guard lock(m_mutex);
    m_cameras.clear();
    m_lines.clear();
}

}  // namespace marlow
