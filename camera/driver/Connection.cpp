/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Connection: one camera on one serial line, as a cookie stands for it
 */

#include "Connection.h"

#include <algorithm>
#include <limits>

#include "DriverError.h"
#include "RateFinder.h"
#include "clser/ClSerial.h"

namespace marlow {

namespace {

// The driver's own register is asked for as a whole or not at all; it is no address of the camera.
bool IsBaudRateRegister(std::uint64_t address, std::size_t length) {
    constexpr auto reg = gencp::kBaudRateRegister;
    if (address == reg.address && length == reg.length)
        return true;
    if (length > 0 && address < reg.End() && (address >= reg.address || reg.address - address < length))
        throw DriverError(kBadRange, fmt::format("The baud rate register at 0x{:X} has {} bytes; {} bytes at 0x{:X} "
                                                 "were asked for.",
                                                 reg.address, reg.length, length, address));
    return false;
}

void CheckRange(std::uint64_t address, std::size_t length) {
    if (length > 0 && address > std::numeric_limits<std::uint64_t>::max() - (length - 1))
        throw DriverError(kBadRange, fmt::format("{} bytes at 0x{:X} go beyond the last address.", length, address));
}

}  // namespace

/// A connection that is not open yet. REQUIRES: clock, logger and known cameras outlive it.
Connection::Connection(CLProtocol::ISerial& serial, Clock& clock, Logger& logger, KnownCameras& known)
    : m_line(serial, clock),
      m_logger(logger),
      m_known(known),
      m_exchanger(m_line, logger),
      m_memory(m_line, m_exchanger),
      m_changer(m_line, m_memory, logger),
      m_serial(&serial) {}

/**
 * \brief Find the camera's baud rate and the camera
 * \param[in] request Which cameras will do
 * \param[in] timeout Of each exchange
 * \param[in] stopCheck Called often; throws to end the probe
 *
 * \throw DriverError kNoAnswer; CLP_NO_DEVICE_FOUND when another device answers than was asked for
 */
void Connection::Open(const DeviceRequest& request, Duration timeout, std::function<void()> stopCheck) {
    const std::lock_guard lock(m_mutex);
    m_memory.SetTimeout(timeout);
    m_line.SetStopCheck(std::move(stopCheck));
    const auto known = m_known.Find(request);
    RateFinder finder(m_line, m_exchanger, m_memory, m_logger);
    std::optional<Presence> presence;
    if (known && known->facts.Has(gencp::capability::kStackedCommands) && finder.GoTo(known->rateFlag))
        presence = AskFor(m_memory, known->facts);
    if (presence == Presence::kSame)
        m_facts = known->facts;
    else
        Search(finder, known, presence == Presence::kNobody, request);
    m_changer.SetHasRegisters(m_facts.Has(gencp::capability::kSbrm));
    m_line.SetStopCheck(nullptr);
    m_known.Remember(m_serial, m_facts, m_line.Rate().flag);
    m_logger.Log(CLProtocol::CLP_LOG_INFO, "Found camera '{}' at {} baud", ShortDeviceId(),
                 m_line.Rate().bitsPerSecond);
}

// The camera at any rate.
void Connection::Search(RateFinder& finder, const std::optional<KnownCameras::Camera>& known, bool wasJustAsked,
                        const DeviceRequest& request) {
    RateHints hints{known ? std::optional(known->rateFlag) : std::nullopt, m_known.RateOf(m_serial), std::nullopt};
    if (wasJustAsked)
        hints.justAsked = hints.ofCamera;
    const CameraLimits limits = finder.Find(hints);
    if (known && IsSameCamera(m_memory, known->facts, limits)) {
        m_facts = known->facts;
    } else {
        m_facts = Identify(m_memory, limits);
        CheckManufacturerAndRequest(request);
    }
}

void Connection::CheckManufacturerAndRequest(const DeviceRequest& request) const {
    if (request.Fits(m_facts.name))
        return;
    throw DriverError(CLProtocol::CLP_NO_DEVICE_FOUND,
                      fmt::format("The camera '{}' answers at {} baud, not '{}'.", ShortDeviceId(),
                                  m_line.Rate().bitsPerSecond, request.ShortDeviceId()));
}

std::unique_lock<std::mutex> Connection::Begin(CLProtocol::ISerial& serial, Duration timeout) {
    std::unique_lock lock(m_mutex);
    m_memory.SetTimeout(timeout);
    m_serial = &serial;
    m_line.Attach(serial);
    return lock;
}

/// Read registers; the baud rate register is answered here.
void Connection::Read(CLProtocol::ISerial& serial, std::uint64_t address, std::span<std::uint8_t> data,
                      Duration timeout) {
    CheckRange(address, data.size());
    const auto lock = Begin(serial, timeout);
    if (IsBaudRateRegister(address, data.size()))
        gencp::Store32(data, 0, m_line.Rate().entryValue);
    else
        m_memory.Read(address, data);
}

/// Write registers; the baud rate register changes the rate on both sides. False when the write is pending.
bool Connection::Write(CLProtocol::ISerial& serial, std::uint64_t address, gencp::ByteView data, Duration timeout) {
    CheckRange(address, data.size());
    const auto lock = Begin(serial, timeout);
    if (!IsBaudRateRegister(address, data.size()))
        return m_memory.Write(address, data);
    const std::uint32_t value = gencp::Load32(data, 0);
    const auto* rate = gencp::FindBaudRateByEntryValue(value);
    if (!rate)
        throw DriverError(CL_ERR_BAUD_RATE_NOT_SUPPORTED, fmt::format("No baud rate has the entry value {}.", value));
    ChangeRate(*rate);
    return true;
}

/// Wait on for a pending write, or leave off. False when it is still pending.
bool Connection::ContinueWrite(CLProtocol::ISerial& serial, bool isWaiting, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    if (isWaiting)
        return m_memory.ContinueWrite();
    m_memory.AbandonWrite();
    return true;
}

/// XML IDs of the camera's descriptions, read afresh.
std::vector<std::string> Connection::XmlIds(CLProtocol::ISerial& serial, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    ListFiles();
    std::vector<std::string> ids;
    for (const auto& file : m_descriptions->files)
        ids.push_back(file.xmlId);
    if (ids.empty() && !m_descriptions->leftOut.empty())
        throw DriverError(CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND,
                          fmt::format("The camera '{}' holds no description that can be used: {}.", ShortDeviceId(),
                                      m_descriptions->leftOut));
    if (ids.empty())
        throw DriverError(CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND,
                          fmt::format("The camera '{}' holds no description.", ShortDeviceId()));
    return ids;
}

/// Bytes of a description as it lies in the camera.
std::size_t Connection::DescriptionSize(CLProtocol::ISerial& serial, const std::string& xmlId, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    return static_cast<std::size_t>(FindFile(xmlId).entry.size);
}

/// A text that is another one whenever the bytes of a description are; empty when the camera has no SHA-1 of it.
std::string Connection::DescriptionDigest(CLProtocol::ISerial& serial, const std::string& xmlId, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    return DigestOf(FindFile(xmlId).entry);
}

/// Fetch a description. The buffer has the size that DescriptionSize gave.
void Connection::FetchDescription(CLProtocol::ISerial& serial, const std::string& xmlId, std::span<std::uint8_t> buffer,
                                  Duration timeout) {
    const auto lock = Begin(serial, timeout);
    const auto& file = FindFile(xmlId);
    if (buffer.size() != file.entry.size)
        throw DriverError(CL_ERR_BUFFER_TOO_SMALL,
                          fmt::format("The description '{}' has {} bytes.", xmlId, file.entry.size));
    marlow::FetchDescription(m_memory, file, buffer);
}

/// The present baud rate as a Camera Link flag.
std::uint32_t Connection::Rate(CLProtocol::ISerial& serial, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    return m_line.Rate().flag;
}

/// The rates that camera and host both support, as Camera Link flags.
std::uint32_t Connection::SupportedRates(CLProtocol::ISerial& serial, Duration timeout) {
    const auto lock = Begin(serial, timeout);
    return m_changer.SupportedByBoth();
}

/// Bring camera and host to a rate.
void Connection::SetRate(CLProtocol::ISerial& serial, std::uint32_t flag, Duration timeout) {
    const auto* rate = gencp::FindBaudRateByFlag(flag);
    if (!rate)
        throw DriverError(CLProtocol::CLP_PARAM_VALUE, fmt::format("0x{:X} is not the flag of a baud rate.", flag));
    const auto lock = Begin(serial, timeout);
    ChangeRate(*rate);
}

/// Returns when no call runs any more.
void Connection::WaitUntilIdle() {
    const std::lock_guard lock(m_mutex);
}

void Connection::ChangeRate(const gencp::BaudRate& rate) {
    m_memory.CheckNothingPends();
    try {
        FindAgain(rate);
        m_changer.Change(rate);
        m_isRateInDoubt = false;
    } catch (const NoAnswerError&) {
        m_isRateInDoubt = true;
        m_known.Remember(m_serial, m_facts, m_line.Rate().flag);
        throw;
    } catch (...) {
        m_known.Remember(m_serial, m_facts, m_line.Rate().flag);
        throw;
    }
    m_known.Remember(m_serial, m_facts, m_line.Rate().flag);
}

// A camera that has just not answered is asked once, which tells in a twelfth of a second that it is gone. One that a
// change has lost may have answered too late: it may be at any rate, and is at none that may be taken for granted.
void Connection::FindAgain(const gencp::BaudRate& target) {
    if (!m_isRateInDoubt) {
        if (!m_exchanger.IsAnswered())
            ReadLimits(m_memory, m_memory.LookTiming());
        return;
    }
    const gencp::BaudRate rate = m_line.Rate();
    try {
        const auto limits = RateFinder(m_line, m_exchanger, m_memory, m_logger).Find({rate.flag, target.flag, {}});
        if (!IsSameCamera(m_memory, m_facts, limits))
            throw DriverError(CLProtocol::CLP_NO_DEVICE_FOUND,
                              fmt::format("The camera at {} baud is not '{}' any more.", m_line.Rate().bitsPerSecond,
                                          ShortDeviceId()));
    } catch (const DriverError&) {
        m_line.SetRate(rate);
        throw;
    }
}

const DescriptionFile& Connection::FindFile(const std::string& xmlId) {
    if (!m_descriptions)
        ListFiles();
    const auto found = std::ranges::find(m_descriptions->files, xmlId, &DescriptionFile::xmlId);
    if (found == m_descriptions->files.end())
        throw DriverError(CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND,
                          fmt::format("The camera '{}' holds no description '{:.200}'.", ShortDeviceId(), xmlId));
    return *found;
}

void Connection::ListFiles() {
    m_descriptions.reset();
    m_descriptions = ListDescriptions(m_memory, ShortDeviceId(), m_logger);
}

}  // namespace marlow
