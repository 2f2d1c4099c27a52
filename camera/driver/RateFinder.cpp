/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateFinder: the baud rate that a camera is at
 */

#include "RateFinder.h"

#include <fmt/ranges.h>

#include <algorithm>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

// The standard gives a device 300 ms for its first answer; nearly all need far less.
constexpr milliseconds kPatience{gencp::kFirstCommandTimeoutMs};
constexpr milliseconds kImpatience{gencp::kFirstReadTimeoutMs};
constexpr milliseconds kMargin{30};  // each silent rate costs it

constexpr gencp::MemoryRange kVersion{gencp::abrm::kGenCpVersion.address, gencp::abrm::kGenCpVersion.length};

}  // namespace

/**
 * \brief Find the camera's baud rate, and leave the line at it
 * \param[in] hints Rates to try first
 *
 * Each attempt reads the version register with request id 0. Two rounds go quickly over the rates, so that a lost
 * packet does not hide a camera. A slow camera that is asked at the right rate answers late, into attempts at other
 * rates: when anything at all was received, a round follows that waits as long as the standard allows. Last of all
 * comes 9600 baud again: some cameras fall back to it when they receive nothing but framing errors.
 *
 * \return The version register
 * \throw DriverError kNoAnswer, with the rates that were tried; else what the camera or the serial library said
 */
std::uint32_t RateFinder::Find(const RateHints& hints) {
    const auto before = m_line.ReceivedBytes();
    const auto wasAnythingReceived = [&] {
        m_line.TakeWaiting();
        return m_line.ReceivedBytes() != before;
    };
    const auto first = FirstRound(hints);
    auto version = TryAll(first);
    if (!version && !wasAnythingReceived())
        version = TryAll(RoundOfOthers(first, false));
    if (!version && wasAnythingReceived())
        version = TryAll(RoundOfOthers(first, true));
    if (!version)
        version = TryAll({{LastResort(first), true}});
    if (!version)
        throw DriverError(kNoAnswer, fmt::format("No camera answers. Baud rates tried: {}.{}", TriedRates(),
                                                 wasAnythingReceived() ? " Something was received." : ""));
    return *version;
}

// The rates of both hints, 9600, then from the fastest down: an application leaves a camera at the fastest it can.
std::vector<RateFinder::Attempt> RateFinder::FirstRound(const RateHints& hints) const {
    std::vector<Attempt> attempts;
    const std::uint32_t supported = m_line.SupportedRates();
    const auto add = [&](std::uint32_t flag, bool isPatient) {
        if ((supported & flag) != 0 && std::ranges::find(attempts, flag, &Attempt::flag) == attempts.end())
            attempts.push_back({flag, isPatient});
    };
    if (hints.ofCamera)
        add(*hints.ofCamera, true);
    if (hints.ofPort)
        add(*hints.ofPort, *hints.ofPort == gencp::kStartBaudRate.flag);
    add(gencp::kStartBaudRate.flag, true);
    for (auto rate = gencp::kBaudRates.rbegin(); rate != gencp::kBaudRates.rend(); ++rate)
        add(rate->flag, false);
    return attempts;
}

std::vector<RateFinder::Attempt> RateFinder::RoundOfOthers(const std::vector<Attempt>& first, bool isPatient) {
    std::vector<Attempt> attempts;
    for (const auto& attempt : first) {
        if (attempt.flag != gencp::kStartBaudRate.flag)
            attempts.push_back({attempt.flag, isPatient});
    }
    return attempts;
}

std::uint32_t RateFinder::LastResort(const std::vector<Attempt>& first) const {
    const std::uint32_t start = gencp::kStartBaudRate.flag;
    return (m_line.SupportedRates() & start) != 0 ? start : first.front().flag;
}

std::optional<std::uint32_t> RateFinder::TryAll(const std::vector<Attempt>& attempts) {
    for (const auto& attempt : attempts) {
        if (const auto version = Try(attempt))
            return version;
    }
    return std::nullopt;
}

/**
 * \brief Begin a connection at a baud rate
 * \param[in] flag One of gencp::kBaudRates
 * \return False when the serial library can't do it
 */
bool RateFinder::GoTo(std::uint32_t flag) {
    if ((m_line.SupportedRates() & flag) == 0)
        return false;
    const auto& rate = *gencp::FindBaudRateByFlag(flag);
    try {
        m_line.SetRate(rate);
    } catch (const DriverError& error) {
        if (error.Code() != CL_ERR_BAUD_RATE_NOT_SUPPORTED)
            throw;
        m_logger.Log(CLProtocol::CLP_LOG_WARN, "The serial library refuses {} baud", rate.bitsPerSecond);
        return false;
    }
    if (std::ranges::find(m_tried, rate.bitsPerSecond) == m_tried.end())
        m_tried.push_back(rate.bitsPerSecond);
    m_exchanger.Restart();
    return true;
}

// The version register, or nothing when there is no answer at that rate.
std::optional<std::uint32_t> RateFinder::Try(const Attempt& attempt) {
    if (!GoTo(attempt.flag))
        return std::nullopt;
    const Timing timing{m_memory.Timeout(), attempt.isPatient ? kPatience : kImpatience, kMargin, 0, std::nullopt};
    try {
        return gencp::Load32(m_memory.ReadOnce(kVersion, timing), 0);
    } catch (const NoAnswerError&) {
        m_logger.Log(CLProtocol::CLP_LOG_DEBUG, "No answer at {} baud", m_line.Rate().bitsPerSecond);
        return std::nullopt;
    }
}

std::string RateFinder::TriedRates() const {
    return m_tried.empty() ? "none" : fmt::format("{}", fmt::join(m_tried, ", "));
}

}  // namespace marlow
