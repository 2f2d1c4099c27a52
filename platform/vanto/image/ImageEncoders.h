/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file formats that images are written in
 */
#pragma once

#include <string>

#include "SampleRows.h"

namespace Vanto {

void EncodePng(const std::string& path, SampleRows& rows);
void EncodePnm(const std::string& path, SampleRows& rows);
void EncodeTiff(const std::string& path, SampleRows& rows);

}  // namespace Vanto
