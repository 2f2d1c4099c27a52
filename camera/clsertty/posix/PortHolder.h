/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names the process that has a tty open
 */
#pragma once

#include <sys/stat.h>

#include <string>

namespace ClSerTty {

std::string DescribeHolder(const struct stat& tty);

}  // namespace ClSerTty
