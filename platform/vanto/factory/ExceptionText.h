/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of exceptions that come out of other libraries
 */
#pragma once

#include <string>

namespace Vanto {

std::string DescribeCurrentException();

}  // namespace Vanto
