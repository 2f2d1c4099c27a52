/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The raw registers of an open camera
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "features/OpenDevice.h"

namespace tools {

std::int64_t AddressArgument(const std::string& text);
std::vector<std::uint8_t> ReadRegisters(const OpenDevice& device, std::int64_t address, std::int64_t length);

}  // namespace tools
