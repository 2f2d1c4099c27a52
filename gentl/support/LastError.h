/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The last error of each thread
 */
#pragma once

#include <string_view>

#include "gentl/GenTL.h"

namespace gentl {

void StoreLastError(GC_ERROR code, std::string_view text) noexcept;
GC_ERROR LastErrorCode() noexcept;
std::string_view LastErrorText() noexcept;

}  // namespace gentl
