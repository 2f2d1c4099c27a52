/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the kernel says about a tty, by its device number
 */
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace ClSerTty {

bool IsPseudoTerminal(dev_t number) noexcept;
bool IsTtyNumber(dev_t number);
std::uint32_t MaxBitsPerSecond(dev_t number);

}  // namespace ClSerTty
