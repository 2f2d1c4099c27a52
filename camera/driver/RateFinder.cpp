/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateFinder: the baud rate that a camera is at
 */

#include "RateFinder.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <bit>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

// The standard gives a device that has not said otherwise so long for an answer.
constexpr milliseconds kPatience{gencp::kFirstCommandTimeoutMs};
constexpr std::uint32_t kOftenConfigured = gencp::kBaudRates[4].flag;  // 115200

}  // namespace

/**
 * \brief Find the camera's baud rate, and leave the line at it
 * \param[in] hints Rates to try first
 *
 * Each attempt reads, with request id 0, the registers that hold the response time, for which the standard gives a
 * device only 50 ms: a rate at which nobody is costs little more. The round over all rates is followed by one over
 * the likely ones, so that a lost packet does not hide a camera; it ends at 9600 baud, to which some cameras fall back
 * when they receive nothing but framing errors. A slow camera that is asked at the right rate answers late, into
 * attempts at other rates: when anything at all was received, all rates are asked once more, and waited for as long
 * as the standard allows for any command.
 *
 * \return What the camera says of itself
 * \throw DriverError kNoAnswer, with the rates that were tried; else what the camera or the serial library said
 */
CameraLimits RateFinder::Find(const RateHints& hints) {
    const auto now = [&] { return m_line.GetClock().Now(); };
    auto limits = TryAll(AllRates(hints));
    const Time slowest = now() + kPatience;
    if (!limits && !WasAnythingReceived(now()))
        limits = TryAll(LikelyRates(hints));
    if (!limits && WasAnythingReceived(slowest))
        limits = TryAll(Patiently(AllRates({hints.ofCamera, hints.ofPort, std::nullopt})));
    if (!limits)
        throw DriverError(kNoAnswer, fmt::format("No camera answers. Baud rates tried: {}.{}", TriedRates(),
                                                 WasAnythingReceived(now()) ? " Something was received." : ""));
    return *limits;
}

// Waits for the first byte, but no longer than to a time.
bool RateFinder::WasAnythingReceived(Time until) {
    m_line.TakeWaiting();
    if (m_line.ReceivedBytes() == m_receivedBefore) {
        std::array<std::uint8_t, 1> byte{};
        m_line.Read(byte, until);
    }
    return m_line.ReceivedBytes() != m_receivedBefore;
}

// Those of both hints, 9600, then from the fastest down: an application leaves a camera at the fastest it can.
std::vector<RateFinder::Attempt> RateFinder::AllRates(const RateHints& hints) const {
    std::vector<Attempt> attempts;
    const std::uint32_t supported = m_line.SupportedRates();
    const auto add = [&](std::uint32_t flag) {
        if ((supported & flag) != 0 && flag != hints.justAsked &&
            std::ranges::find(attempts, flag, &Attempt::flag) == attempts.end())
            attempts.push_back({flag});
    };
    for (const auto hint : {hints.ofCamera, hints.ofPort})
        add(hint.value_or(0));
    add(gencp::kStartBaudRate.flag);
    for (auto rate = gencp::kBaudRates.rbegin(); rate != gencp::kBaudRates.rend(); ++rate)
        add(rate->flag);
    return attempts;
}

// Those of the hints, for a camera that nobody has seen yet the fastest and what most cables carry, and 9600 last.
std::vector<RateFinder::Attempt> RateFinder::LikelyRates(const RateHints& hints) const {
    std::vector<Attempt> attempts;
    const std::uint32_t supported = m_line.SupportedRates();
    const auto add = [&](std::uint32_t flag) {
        std::erase_if(attempts, [&](const Attempt& attempt) { return attempt.flag == flag; });
        if ((supported & flag) != 0)
            attempts.push_back({flag});
    };
    for (const auto hint : {hints.ofCamera, hints.ofPort})
        add(hint.value_or(0));
    if (!hints.ofCamera) {
        add(std::bit_floor(supported));
        add(kOftenConfigured);
    }
    add(gencp::kStartBaudRate.flag);
    return attempts;
}

std::vector<RateFinder::Attempt> RateFinder::Patiently(std::vector<Attempt> attempts) {
    for (auto& attempt : attempts)
        attempt.isPatient = true;
    return attempts;
}

std::optional<CameraLimits> RateFinder::TryAll(const std::vector<Attempt>& attempts) {
    for (const auto& attempt : attempts) {
        if (auto limits = Try(attempt))
            return limits;
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

// Nothing when there is no answer at that rate.
std::optional<CameraLimits> RateFinder::Try(const Attempt& attempt) {
    if (!GoTo(attempt.flag))
        return std::nullopt;
    auto timing = m_memory.LookTiming();
    if (attempt.isPatient)
        timing.response = kPatience;
    try {
        return ReadLimits(m_memory, timing);
    } catch (const NoAnswerError&) {
        m_logger.Log(CLProtocol::CLP_LOG_DEBUG, "No answer at {} baud", m_line.Rate().bitsPerSecond);
        return std::nullopt;
    }
}

std::string RateFinder::TriedRates() const {
    return m_tried.empty() ? "none" : fmt::format("{}", fmt::join(m_tried, ", "));
}

}  // namespace marlow
