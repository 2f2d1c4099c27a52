/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What became of the line to a camera, in a sentence for people
 */
#pragma once

#include <string>
#include <string_view>

namespace tools {

/// A sentence for a failure of the line, with what to look at: from the port that its text names and the code of the
/// serial library at its end. Empty for other failures.
std::string LineTroubleText(std::string_view failure);

}  // namespace tools
