/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who the producer is
 */
#pragma once

#include <cstdint>
#include <string>

namespace gentl {

inline constexpr const char* kTransportType = "CL";
inline constexpr const char* kVendor = "Vanto";
inline constexpr const char* kModel = "VantoCLSer";
inline constexpr const char* kFileName = "vanto-cl.cti";
inline constexpr const char* kDisplayName = "Vanto Camera Link";
inline constexpr std::uint32_t kGenTLMajor = 1;
inline constexpr std::uint32_t kGenTLMinor = 6;

std::string ProducerVersion();
std::string ProducerPath();

}  // namespace gentl
