/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions in zip archives
 */
#pragma once

#include <string>

namespace CLProtocol {

bool IsZip(const std::string& bytes);
std::string Unzip(const std::string& archive);

}  // namespace CLProtocol
