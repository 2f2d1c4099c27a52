/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DeviceIDs and templates without their driver
 */
#pragma once

#include <string_view>

namespace CLProtocol {

std::string_view ShortForm(std::string_view deviceId);

}  // namespace CLProtocol
