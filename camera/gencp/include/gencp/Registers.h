/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Bootstrap registers of a GenCP device (GenCP 1.3): address and length together, one block per map
 */
#pragma once

#include <cstdint>

namespace gencp {

struct Register {
    std::uint64_t address;
    std::uint32_t length;

    constexpr std::uint64_t End() const { return address + length; }
    constexpr Register At(std::uint64_t base) const { return {base + address, length}; }
};

/// Technology agnostic bootstrap register map, from address 0.
namespace abrm {
inline constexpr Register kGenCpVersion{0x0000, 4};  ///< major in the high 16 bits
inline constexpr Register kManufacturerName{0x0004, 64};
inline constexpr Register kModelName{0x0044, 64};
inline constexpr Register kFamilyName{0x0084, 64};
inline constexpr Register kDeviceVersion{0x00C4, 64};
inline constexpr Register kManufacturerInfo{0x0104, 64};
inline constexpr Register kSerialNumber{0x0144, 64};
inline constexpr Register kUserDefinedName{0x0184, 64};
inline constexpr Register kDeviceCapability{0x01C4, 8};
inline constexpr Register kMaxDeviceResponseTime{0x01CC, 4};  ///< milliseconds
inline constexpr Register kManifestTableAddress{0x01D0, 8};
inline constexpr Register kSbrmAddress{0x01D8, 8};
inline constexpr Register kDeviceConfiguration{0x01E0, 8};
inline constexpr Register kHeartbeatTimeout{0x01E8, 4};  ///< milliseconds
inline constexpr Register kMessageChannelId{0x01EC, 4};
inline constexpr Register kTimestamp{0x01F0, 8};  ///< nanoseconds
inline constexpr Register kTimestampLatch{0x01F8, 4};
inline constexpr Register kTimestampIncrement{0x01FC, 8};  ///< nanoseconds
inline constexpr Register kAccessPrivilege{0x0204, 4};
inline constexpr Register kImplementationEndianness{0x020C, 4};
inline constexpr Register kSoftwareInterfaceVersion{0x0210, 64};
}  // namespace abrm

/// Bits of abrm::kDeviceCapability.
namespace capability {
inline constexpr std::uint64_t kUserDefinedName = 1ull << 0;
inline constexpr std::uint64_t kAccessPrivilege = 1ull << 1;
inline constexpr std::uint64_t kMessageChannel = 1ull << 2;
inline constexpr std::uint64_t kTimestamp = 1ull << 3;
inline constexpr unsigned kEncodingShift = 4;
inline constexpr std::uint64_t kEncodingMask = 0xF;
inline constexpr std::uint64_t kEncodingAscii = 0;
inline constexpr std::uint64_t kEncodingUtf8 = 1;
inline constexpr std::uint64_t kEncodingUtf16 = 2;
inline constexpr std::uint64_t kFamilyName = 1ull << 8;
inline constexpr std::uint64_t kSbrm = 1ull << 9;
inline constexpr std::uint64_t kEndiannessRegister = 1ull << 10;
inline constexpr std::uint64_t kWrittenLength = 1ull << 11;
inline constexpr std::uint64_t kMultiEvent = 1ull << 12;
inline constexpr std::uint64_t kStackedCommands = 1ull << 13;
inline constexpr std::uint64_t kSoftwareInterfaceVersion = 1ull << 14;
}  // namespace capability

/// Bits of abrm::kDeviceConfiguration.
namespace configuration {
inline constexpr std::uint64_t kHeartbeatEnable = 1ull << 0;
inline constexpr std::uint64_t kMultiEventEnable = 1ull << 1;
}  // namespace configuration

/// Serial link register map; offsets from the address in abrm::kSbrmAddress.
namespace sbrm {
inline constexpr Register kSupportedBaudRates{0, 4};
inline constexpr Register kCurrentBaudRate{4, 4};
inline constexpr std::uint32_t kSize = 8;
}  // namespace sbrm

/// Manifest table; offsets from the address in abrm::kManifestTableAddress, those of an entry from its beginning.
namespace manifest {
inline constexpr Register kEntryCount{0, 8};
inline constexpr std::uint32_t kFirstEntry = 8;
inline constexpr std::uint32_t kEntrySize = 64;
inline constexpr Register kFileVersion{0, 4};
inline constexpr Register kFileFormat{4, 4};
inline constexpr Register kFileAddress{8, 8};
inline constexpr Register kFileSize{16, 8};
inline constexpr Register kFileSha1{24, 20};
}  // namespace manifest

}  // namespace gencp
