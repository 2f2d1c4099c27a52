/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Streams as a whole
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>

namespace base {

std::optional<std::string> ReadAll(std::istream& stream, std::size_t most = SIZE_MAX);

}  // namespace base
