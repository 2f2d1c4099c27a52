/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The bootstrap registers of a camera
 */

#include "camera/Bootstrap.h"

#include <algorithm>

#include "gencp/Manifest.h"
#include "gencp/Protocol.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {

namespace {

using namespace gencp;

constexpr std::uint64_t kMaxResponseMs = 100;
constexpr std::uint64_t kFirstHeartbeatMs = 3000;
constexpr std::uint32_t kMinHeartbeatMs = 500;
constexpr std::uint32_t kMaxHeartbeatMs = 60'000;
constexpr Register kReserved{0x0208, 4};
constexpr std::uint64_t kNowhere = 0x7FFF'0000;

/// Since version 1.2.
bool HasInterfaceVersion(const CameraOptions& options) {
    return options.genCpMajor > 1 || options.genCpMinor >= 2;
}

std::uint64_t CapabilityOf(const CameraOptions& options) {
    std::uint64_t bits = capability::kUserDefinedName | capability::kAccessPrivilege | capability::kTimestamp |
                         capability::kEndiannessRegister | (capability::kEncodingUtf8 << capability::kEncodingShift);
    bits |= options.family.empty() ? 0 : capability::kFamilyName;
    bits |= options.writtenLength ? capability::kWrittenLength : 0;
    bits |= options.serialRegisters == SerialRegisters::kNone ? 0 : capability::kSbrm;
    bits |= options.stacked ? capability::kStackedCommands : 0;
    bits |= HasInterfaceVersion(options) ? capability::kSoftwareInterfaceVersion : 0;
    return bits;
}

std::uint64_t ResponseTimeOf(const CameraOptions& options) {
    const auto delay = static_cast<std::uint64_t>(options.faults.delay.count());
    return std::min<std::uint64_t>(std::max(kMaxResponseMs, delay), kMaxDeviceResponseTimeMs);
}

RegisterFile::Writer NumberBetween(std::uint32_t min, std::uint32_t max) {
    return [min, max](ByteView value) {
        const std::uint32_t number = Load32(value, 0);
        return number >= min && number <= max ? kStatusSuccess : kStatusInvalidParameter;
    };
}

void AddTexts(RegisterFile& file, const CameraModel& model, const CameraOptions& options) {
    file.AddText(abrm::kManufacturerName, Access::kRead, options.manufacturer);
    file.AddText(abrm::kModelName, Access::kRead, model.name);
    file.AddText(abrm::kFamilyName, Access::kRead, options.family);
    file.AddText(abrm::kDeviceVersion, Access::kRead, options.firmware);
    file.AddText(abrm::kManufacturerInfo, Access::kRead, "simulated");
    file.AddText(abrm::kSerialNumber, Access::kRead, options.serial);
    file.AddText(abrm::kUserDefinedName, Access::kReadWrite, options.userName);
    file.AddText(abrm::kSoftwareInterfaceVersion, Access::kRead, HasInterfaceVersion(options) ? "1.0" : "");
}

}  // namespace

/**
 * \brief Lay the technology agnostic and the serial bootstrap registers
 * \param[in] upTime Gives the time since the camera was switched on, for the time stamp
 */
void AddBootstrapRegisters(RegisterFile& file, const CameraModel& model, const CameraOptions& options,
                           const std::function<std::chrono::nanoseconds()>& upTime) {
    AddTexts(file, model, options);
    file.AddNumber(abrm::kGenCpVersion, Access::kRead, (std::uint32_t{options.genCpMajor} << 16U) | options.genCpMinor);
    file.AddNumber(abrm::kDeviceCapability, Access::kRead, CapabilityOf(options));
    file.AddNumber(abrm::kMaxDeviceResponseTime, Access::kRead, ResponseTimeOf(options));
    file.AddNumber(abrm::kManifestTableAddress, Access::kRead, registers::kManifestAddress);
    const bool areThere = options.serialRegisters == SerialRegisters::kThere;
    file.AddNumber(abrm::kSbrmAddress, Access::kRead, areThere ? registers::kSbrmAddress : kNowhere);
    file.AddNumber(abrm::kDeviceConfiguration, Access::kReadWrite, 0);
    file.OnWrite(abrm::kDeviceConfiguration, [](ByteView value) {
        return (Load64(value, 0) & ~configuration::kHeartbeatEnable) == 0 ? kStatusSuccess : kStatusInvalidParameter;
    });
    file.AddNumber(abrm::kHeartbeatTimeout, Access::kReadWrite, kFirstHeartbeatMs);
    file.OnWrite(abrm::kHeartbeatTimeout, NumberBetween(kMinHeartbeatMs, kMaxHeartbeatMs));
    file.AddNumber(abrm::kMessageChannelId, Access::kRead, 0);
    file.AddNumber(abrm::kTimestamp, Access::kRead, 0);
    file.AddNumber(abrm::kTimestampLatch, Access::kWrite, 0);
    file.OnWrite(abrm::kTimestampLatch, [&file, upTime](ByteView) {
        file.SetValue(abrm::kTimestamp, NumberBytes(static_cast<std::uint64_t>(upTime().count()), 8));
        return kStatusSuccess;
    });
    file.AddNumber(abrm::kTimestampIncrement, Access::kRead, 1);
    file.AddNumber(abrm::kAccessPrivilege, Access::kReadWrite, 0);
    file.OnWrite(abrm::kAccessPrivilege, NumberBetween(0, 1));
    file.AddNumber(kReserved, Access::kRead, 0);
    file.AddNumber(abrm::kImplementationEndianness, Access::kRead, 0);

    file.AddNumber(sbrm::kSupportedBaudRates.At(registers::kSbrmAddress), Access::kRead, options.rates);
    file.AddNumber(sbrm::kCurrentBaudRate.At(registers::kSbrmAddress), Access::kReadWrite, 0);
}

/**
 * \brief Lay the manifest table with one entry, if it is listed, and the description file that it points to
 */
void AddManifest(RegisterFile& file, const DescriptionFile& description) {
    ManifestEntry entry;
    entry.versionMajor = 1;
    entry.fileType = static_cast<std::uint8_t>(ManifestEntry::FileType::kDeviceXml);
    entry.fileFormat = static_cast<std::uint8_t>(description.isZip ? ManifestEntry::FileFormat::kZip
                                                                   : ManifestEntry::FileFormat::kXml);
    entry.schemaMajor = 1;
    entry.schemaMinor = 1;
    entry.address = registers::kDescriptionAddress;
    entry.size = description.bytes.size();
    entry.sha1 = description.sha1;
    file.AddNumber(manifest::kEntryCount.At(registers::kManifestAddress), Access::kRead, description.isListed ? 1 : 0);
    file.Add({registers::kManifestAddress + manifest::kFirstEntry, manifest::kEntrySize}, Access::kRead,
             EncodeManifestEntry(entry));
    if (description.bytes.empty())
        return;
    file.Add({registers::kDescriptionAddress, static_cast<std::uint32_t>(description.bytes.size())}, Access::kRead,
             description.bytes);
}

}  // namespace MarlowSim
