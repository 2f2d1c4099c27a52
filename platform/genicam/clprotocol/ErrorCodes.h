/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The standard's error codes in words
 */
#pragma once

#include <cstdint>

namespace CLProtocol {

const char* StandardErrorText(std::int32_t code) noexcept;

}  // namespace CLProtocol
