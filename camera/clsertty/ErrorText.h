/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Error texts: the standard one of each code, and the calling thread's last error in full
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ClSerTty {

void RememberError(std::int32_t code, const char* text) noexcept;
std::optional<std::string> ErrorText(std::int32_t code);

}  // namespace ClSerTty
