/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateChanger: a new baud rate for camera and host together
 */

#include "RateChanger.h"

#include <algorithm>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

constexpr unsigned kRounds = 2;  // lost packets spoil one
// A camera without confirmation goes back 250 ms after its acknowledge; by then it may be looked for, by the host's own
// time it is there.
constexpr milliseconds kEarliestLook{gencp::kBaudRateConfirmMs + 50};
constexpr milliseconds kRevert{gencp::kBaudRateRevertMs};
// Three confirming writes reach the camera within the 250 ms that it waits, at 9600 baud as well.
constexpr milliseconds kConfirmAgainAfter{60};
constexpr milliseconds kConfirmPatience{150};  // of the last of them; the look afterwards finds what came later
constexpr unsigned kConfirmResends = 2;

constexpr gencp::MemoryRange kResponseTime{gencp::abrm::kMaxDeviceResponseTime.address,
                                           gencp::abrm::kMaxDeviceResponseTime.length};

gencp::Bytes FlagBytes(const gencp::BaudRate& rate) {
    gencp::Bytes bytes(gencp::sbrm::kCurrentBaudRate.length);
    gencp::Store32(bytes, 0, rate.flag);
    return bytes;
}

}  // namespace

/**
 * \brief The rates that camera and host both support, as Camera Link flags
 *
 * \return Only the present rate for a camera without serial registers
 */
std::uint32_t RateChanger::SupportedByBoth() {
    ReadRegisters();
    return m_line.SupportedRates() & (m_supportedByCamera | m_line.Rate().flag);
}

/**
 * \brief Bring camera and host to a rate
 * \param[in] target One of gencp::kBaudRates
 *
 * The camera gets the rate at the old one and acknowledges at the old one, both switch, and the same write at the new
 * rate confirms it (GenCP). Any of these packets may be lost, and a line may not carry a rate that both sides claim: a
 * camera without confirmation goes back to the old rate, so the host looks where it really is, at the old rate first.
 * On return and after any exception both are at SerialLine::Rate() if the camera answers at all.
 *
 * A change that fails ends within 1.2 s after the last acknowledge, with both at the old rate, if the camera is there.
 *
 * \throw DriverError CL_ERR_BAUD_RATE_NOT_SUPPORTED, kNoSerialRegisters, kBaudRateChangeFailed
 * \throw NoAnswerError The camera is lost
 */
void RateChanger::Change(const gencp::BaudRate& target) {
    m_memory.CheckNothingPends();
    if (target.flag == m_line.Rate().flag)
        return;
    const std::uint32_t supported = SupportedByBoth();
    if (!m_hasRegisters)
        throw DriverError(kNoSerialRegisters, "The camera has no registers to change its baud rate with.");
    if ((supported & target.flag) == 0)
        throw DriverError(CL_ERR_BAUD_RATE_NOT_SUPPORTED,
                          fmt::format("{} baud is not supported by camera and host both (flags 0x{:02X}).",
                                      target.bitsPerSecond, supported));
    for (unsigned round = 0; round < kRounds; ++round) {
        if (TryChange(target))
            return;
    }
    throw DriverError(kBaudRateChangeFailed, fmt::format("The baud rate could not be changed to {}; it is {} again.",
                                                         target.bitsPerSecond, m_line.Rate().bitsPerSecond));
}

// False when both are back at the old rate.
bool RateChanger::TryChange(const gencp::BaudRate& target) {
    Attempt attempt{m_line.Rate(), target};
    try {
        Announce(attempt);
        Confirm(attempt);
        m_logger.Log(CLProtocol::CLP_LOG_INFO, "Changed the baud rate from {} to {}", attempt.old.bitsPerSecond,
                     target.bitsPerSecond);
        return true;
    } catch (const StatusError&) {
        if (m_line.Rate().flag == attempt.old.flag)
            throw;  // refused before anything was changed
    } catch (const NoAnswerError& error) {
        m_logger.Log(CLProtocol::CLP_LOG_WARN, "Changing the baud rate to {}: {}", target.bitsPerSecond, error.what());
    } catch (const DriverError&) {
        FindAgain(attempt);
        throw;
    }
    FindAgain(attempt);
    return m_line.Rate().flag == target.flag;
}

// Sent once only: a camera that has carried it out is not at the old rate any more, and would acknowledge a repeated
// one only when it has given up. A lost acknowledge shows at the new rate.
void RateChanger::Announce(Attempt& attempt) {
    auto timing = m_memory.UsualTiming();
    timing.resends = 0;
    const std::uint64_t address = CurrentRateAddress();
    try {
        m_memory.WriteOnce(address, FlagBytes(attempt.target), timing);
        attempt.isAcknowledged = true;
    } catch (const NoAnswerError&) {
        m_logger.Log(CLProtocol::CLP_LOG_NOTICE, "The change to {} baud was not acknowledged at {}",
                     attempt.target.bitsPerSecond, attempt.old.bitsPerSecond);
    }
    attempt.sent = m_line.GetClock().Now();
}

void RateChanger::Confirm(const Attempt& attempt) {
    m_line.SetRate(attempt.target);
    auto timing = m_memory.UsualTiming();
    timing.response = std::min<Duration>(timing.response, kConfirmPatience - timing.margin);
    timing.resends = attempt.isAcknowledged ? kConfirmResends : 0;
    timing.impatience = kConfirmAgainAfter;
    m_memory.WriteOnce(CurrentRateAddress(), FlagBytes(attempt.target), timing);
}

// Waits until the camera has made up its mind, and leaves the line at the rate where it answers. A camera that has
// not heard of the change is at the old rate all the time.
void RateChanger::FindAgain(const Attempt& attempt) {
    if (attempt.isAcknowledged)
        SleepUntil(attempt.sent + kEarliestLook);
    if (IsCameraAt(attempt.old, 0))
        return;
    SleepUntil(attempt.sent + (attempt.isAcknowledged ? kRevert : kEarliestLook));
    const bool isStartElsewhere = attempt.old.flag != gencp::kStartBaudRate.flag;
    if (IsCameraAt(attempt.old, 0) || IsCameraAt(attempt.target, 1) ||
        (isStartElsewhere && IsCameraAt(gencp::kStartBaudRate, 0)))
        return;
    m_line.SetRate(attempt.old);
    throw NoAnswerError(fmt::format("The camera was lost while its baud rate was changed from {} to {}.",
                                    attempt.old.bitsPerSecond, attempt.target.bitsPerSecond));
}

void RateChanger::SleepUntil(Time time) {
    const Time now = m_line.GetClock().Now();
    if (now < time)
        m_line.GetClock().Sleep(time - now);
}

bool RateChanger::IsCameraAt(const gencp::BaudRate& rate, unsigned resends) {
    try {
        m_line.SetRate(rate);
        auto timing = m_memory.LookTiming();
        timing.resends = resends;
        m_memory.ReadOnce(kResponseTime, timing);
        return true;
    } catch (const NoAnswerError&) {
        return false;
    } catch (const StatusError&) {
        return true;
    } catch (const DriverError& error) {
        if (error.Code() != CL_ERR_BAUD_RATE_NOT_SUPPORTED)
            throw;
        return false;
    }
}

std::uint64_t RateChanger::CurrentRateAddress() {
    ReadRegisters();
    return gencp::sbrm::kCurrentBaudRate.At(m_address.value()).address;
}

void RateChanger::ReadRegisters() {
    if (!m_hasRegisters || m_address)
        return;
    const std::uint64_t address = gencp::Load64(m_memory.Read(gencp::abrm::kSbrmAddress), 0);
    if (address == 0) {
        m_hasRegisters = false;  // whatever the capability says
        return;
    }
    const auto supported = m_memory.Read(gencp::sbrm::kSupportedBaudRates.At(address));
    m_supportedByCamera = gencp::Load32(supported, 0) & gencp::kAllBaudRateFlags;
    m_address = address;
}

}  // namespace marlow
