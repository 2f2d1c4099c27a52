/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Everything of a camera that its registers reach
 */

#include "camera/Firmware.h"

#include <bit>
#include <utility>

#include "camera/Bootstrap.h"
#include "gencp/Protocol.h"
#include "gencp/Registers.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {

namespace {

using gencp::ByteView;
namespace abrm = gencp::abrm;

constexpr gencp::Register kCurrentBaudRate = gencp::sbrm::kCurrentBaudRate.At(registers::kSbrmAddress);

}  // namespace

Firmware::Firmware(const CameraOptions& options, TimePoint now)
    : m_model(FindModel(options.model)),
      m_powerOn(now),
      m_now(now),
      m_description(MakeDescriptionFile(m_model, options)),
      m_features(m_model, m_file, [this] { return Temperature(); }) {
    AddBootstrapRegisters(m_file, m_model, options, [this] { return m_now - m_powerOn; });
    AddManifest(m_file, m_description);
    WatchLineRegisters(options.rates);
}

/// What is asked of the line is kept until the answer has left: it is still sent as things were.
void Firmware::WatchLineRegisters(std::uint32_t supportedRates) {
    m_file.OnWrite(kCurrentBaudRate, [this, supportedRates](ByteView value) {
        const std::uint32_t flag = gencp::Load32(value, 0);
        if (!std::has_single_bit(flag) || (flag & supportedRates) == 0)
            return gencp::kStatusInvalidParameter;
        m_request.baudRateFlag = flag;
        return gencp::kStatusSuccess;
    });
    m_file.OnWrite(abrm::kAccessPrivilege, [this](ByteView value) {
        const std::uint32_t privilege = gencp::Load32(value, 0);
        if (privilege > 1)
            return gencp::kStatusInvalidParameter;
        m_request.isReleased = privilege == 0 && m_file.Number(abrm::kAccessPrivilege) == 1;
        return gencp::kStatusSuccess;
    });
    m_file.AddNumber(registers::kDeviceReset, Access::kWrite, 0);
    m_file.OnWrite(registers::kDeviceReset, [this](ByteView value) {
        if (gencp::Load32(value, 0) != 1)
            return gencp::kStatusInvalidParameter;
        m_request.isReset = true;
        return gencp::kStatusSuccess;
    });
}

/// Rises by 12 degrees within the first minutes.
std::uint32_t Firmware::Temperature() const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_now - m_powerOn).count();
    return 310 + static_cast<std::uint32_t>(120 * seconds / (seconds + 60));
}

/**
 * \brief Read registers
 * \param[in] now Time that the camera sees
 * \return A GenCP status
 */
std::uint16_t Firmware::Read(std::uint64_t address, std::size_t length, gencp::Bytes& out, TimePoint now) {
    m_now = now;
    return m_file.Read(address, length, out);
}

/**
 * \brief Write registers and do what that asks for
 * \param[in] now Time that the camera sees
 * \return A GenCP status
 */
std::uint16_t Firmware::Write(std::uint64_t address, ByteView data, TimePoint now) {
    m_now = now;
    return m_file.Write(address, data);
}

/**
 * \brief Give what the writes since the last call asked of the line
 */
Firmware::LineRequest Firmware::TakeLineRequest() {
    return std::exchange(m_request, {});
}

/**
 * \brief Start anew: what no user set and no name register keeps is lost
 */
void Firmware::PowerOn(std::uint32_t baudRateFlag, TimePoint now) {
    constexpr std::uint32_t kHeartbeatMs = 3000;
    m_powerOn = now;
    m_features.PowerOn();
    m_file.SetValue(abrm::kDeviceConfiguration, NumberBytes(0, 8));
    m_file.SetValue(abrm::kTimestamp, NumberBytes(0, 8));
    m_file.SetNumber(abrm::kHeartbeatTimeout, kHeartbeatMs);
    ReleaseControl();
    SetBaudRateFlag(baudRateFlag);
    m_request = {};
}

void Firmware::SetBaudRateFlag(std::uint32_t flag) {
    m_file.SetNumber(kCurrentBaudRate, flag);
}

/**
 * \brief Give the time without an access after which the camera gives its host up
 * \return Nothing while no host is in control or it did not ask for that
 */
std::optional<std::chrono::milliseconds> Firmware::HeartbeatTimeout() const {
    const bool isEnabled =
        (gencp::Load64(m_file.Value(abrm::kDeviceConfiguration), 0) & gencp::configuration::kHeartbeatEnable) != 0;
    if (!isEnabled || m_file.Number(abrm::kAccessPrivilege) != 1)
        return std::nullopt;
    return std::chrono::milliseconds(m_file.Number(abrm::kHeartbeatTimeout));
}

void Firmware::ReleaseControl() {
    m_file.SetNumber(abrm::kAccessPrivilege, 0);
}

}  // namespace MarlowSim
