/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Date and time as texts
 */
#pragma once

#include <string>

namespace tools {

/// The present date and time in UTC: "2026-03-14T15:09:26.535Z". Such texts are in the order of time.
std::string Now();

}  // namespace tools
