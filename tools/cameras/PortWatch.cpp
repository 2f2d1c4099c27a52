/* SPDX-License-Identifier: Apache-2.0 */
/*
 * PortWatch: what was last heard of each serial port
 */
#include "cameras/PortWatch.h"

#include <utility>

#include "CLProtocol/Activity.h"
#include "CLProtocol/CLProtocolTypes.h"
#include "cameras/BaudRates.h"
#include "clser/ClSerial.h"

namespace tools {

namespace {

using CLProtocol::Activity;

PortNews NewsOf(const Activity& activity) {
    PortNews news;
    news.portId = activity.portId.str();
    news.baudRate = BaudRateOfFlag(activity.baudRateFlag);
    if (activity.kind == Activity::Kind::kAnswered)
        news.deviceId = activity.deviceId.str();
    news.hasEnded = activity.kind != Activity::Kind::kAsking;
    news.hasFailed = activity.kind == Activity::Kind::kFailed;
    news.errorCode = activity.errorCode;
    news.reason = activity.reason.str();
    return news;
}

}  // namespace

bool PortNews::IsInUse() const noexcept {
    return hasFailed && errorCode == CL_ERR_PORT_IN_USE;
}

bool PortNews::IsNoAnswer() const noexcept {
    return hasFailed && (errorCode == CL_ERR_TIMEOUT || errorCode == CLProtocol::CLP_DRIVER_NO_ANSWER);
}

PortWatch::PortWatch() {
    CLProtocol::SetActivityListener([this](const Activity& activity) { Hear(activity); });
}

PortWatch::~PortWatch() {
    CLProtocol::SetActivityListener({});
}

std::optional<PortNews> PortWatch::Of(const std::string& portId) const {
    const std::lock_guard guard(m_lock);
    const auto known = m_news.find(portId);
    return known != m_news.end() ? std::optional(known->second) : std::nullopt;
}

void PortWatch::Listen(Listener listener) {
    const std::lock_guard guard(m_lock);
    m_listener = std::move(listener);
}

void PortWatch::Hear(const Activity& activity) {
    const std::lock_guard guard(m_lock);
    PortNews& news = m_news[activity.portId.str()];
    if (activity.kind != Activity::Kind::kFetching)
        news = NewsOf(activity);
    news.doneBytes = activity.doneBytes;
    news.totalBytes = activity.totalBytes;
    if (m_listener)
        m_listener(news);
}

}  // namespace tools
