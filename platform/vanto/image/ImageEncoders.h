/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file formats that images are written in
 */
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "image/SampleRows.h"

namespace Vanto {

/// What the system said last. The encoders fail at the first write that does, so it is about that one.
inline std::error_code WriteError() noexcept {
    return errno != 0 ? std::error_code(errno, std::generic_category()) : std::make_error_code(std::errc::io_error);
}

// Each begins with an errno of 0 and returns why the file can't be written; no error when it is.
std::error_code EncodePng(const std::string& path, SampleRows& rows);
std::error_code EncodePnm(const std::string& path, SampleRows& rows);
std::error_code EncodeTiff(const std::string& path, SampleRows& rows);

}  // namespace Vanto
