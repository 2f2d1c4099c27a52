/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateChanger: a new baud rate for camera and host together
 */

#include "RateChanger.h"

#include <vector>

#include "DriverError.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

constexpr unsigned kRounds = 3;  // lost packets spoil one
constexpr milliseconds kRevert{gencp::kBaudRateRevertMs};
// Three confirming writes reach the camera within the 250 ms that it waits, at 9600 baud as well.
constexpr milliseconds kConfirmAgainAfter{60};
constexpr unsigned kConfirmResends = 2;
constexpr unsigned kLookResends = 1;

constexpr gencp::MemoryRange kVersion{gencp::abrm::kGenCpVersion.address, gencp::abrm::kGenCpVersion.length};

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
 * rate confirms it (GenCP). A camera without confirmation goes back after 250 ms; the host waits 500 ms and does so,
 * too. The confirmation may have been received and only its acknowledge lost, so the host then looks where the camera
 * really is. On return and after any exception both are at SerialLine::Rate() if the camera answers at all.
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
    const gencp::BaudRate old = m_line.Rate();
    const auto flag = FlagBytes(target);
    try {
        m_memory.WriteOnce(CurrentRateAddress(), flag, m_memory.UsualTiming());
        m_line.SetRate(target);
        auto timing = m_memory.UsualTiming();
        timing.resends = kConfirmResends;
        timing.impatience = kConfirmAgainAfter;
        m_memory.WriteOnce(CurrentRateAddress(), flag, timing);
        m_logger.Log(CLProtocol::CLP_LOG_INFO, "Changed the baud rate from {} to {}", old.bitsPerSecond,
                     target.bitsPerSecond);
        return true;
    } catch (const StatusError&) {
        if (m_line.Rate().flag == old.flag)
            throw;  // refused before anything was changed
    } catch (const NoAnswerError& error) {
        m_logger.Log(CLProtocol::CLP_LOG_WARN, "Changing the baud rate to {}: {}", target.bitsPerSecond, error.what());
    } catch (const DriverError&) {
        FindAgain(old, target);
        throw;
    }
    FindAgain(old, target);
    return m_line.Rate().flag == target.flag;
}

// Waits until the camera has made up its mind, and leaves the line at the rate where it answers.
void RateChanger::FindAgain(const gencp::BaudRate& old, const gencp::BaudRate& target) {
    m_line.GetClock().Sleep(kRevert);
    std::vector<gencp::BaudRate> candidates{old, target, gencp::kStartBaudRate};
    candidates.insert(candidates.end(), gencp::kBaudRates.rbegin(), gencp::kBaudRates.rend());
    for (const auto& rate : candidates) {
        if ((m_line.SupportedRates() & rate.flag) != 0 && IsCameraAt(rate))
            return;
    }
    m_line.SetRate(old);
    throw NoAnswerError(fmt::format("The camera was lost while its baud rate was changed from {} to {}.",
                                    old.bitsPerSecond, target.bitsPerSecond));
}

bool RateChanger::IsCameraAt(const gencp::BaudRate& rate) {
    try {
        m_line.SetRate(rate);
        auto timing = m_memory.UsualTiming();
        timing.resends = kLookResends;
        m_memory.ReadOnce(kVersion, timing);
        return true;
    } catch (const NoAnswerError&) {
        return false;
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
    const auto supported = m_memory.Read(gencp::sbrm::kSupportedBaudRates.At(address));
    m_supportedByCamera = gencp::Load32(supported, 0) & gencp::kAllBaudRateFlags;
    m_address = address;
}

}  // namespace marlow
