/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the kernel says about a tty, by its device number
 */

#include "TtyKind.h"

#include <sys/sysmacros.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace ClSerTty {

namespace {

namespace fs = std::filesystem;

constexpr unsigned kFirstPtyMajor = 136;  // Linux: majors of the slave sides of pseudo-terminals
constexpr unsigned kLastPtyMajor = 143;
constexpr std::uint32_t kClockTicksPerBit = 16;  // of an 8250-like chip at its highest rate
constexpr std::uint32_t kNoLimit = 921600;

fs::path SysFolder(dev_t number) {
    return "/sys/dev/char/" + std::to_string(major(number)) + ":" + std::to_string(minor(number));
}

}  // namespace

/**
 * \brief Tell whether a device number is that of a pseudo-terminal's slave side
 */
bool IsPseudoTerminal(dev_t number) noexcept {
    return major(number) >= kFirstPtyMajor && major(number) <= kLastPtyMajor;
}

/**
 * \brief Tell whether a character device is a tty, without opening it (opening may reset what hangs on the line)
 */
bool IsTtyNumber(dev_t number) {
    std::error_code error;
    return IsPseudoTerminal(number) || fs::canonical(SysFolder(number) / "subsystem", error).filename() == "tty";
}

/**
 * \brief Give the highest rate of a tty as far as its driver tells it
 * \return Bits per second; 921600 when nothing is known
 */
std::uint32_t MaxBitsPerSecond(dev_t number) {
    std::ifstream stream(SysFolder(number) / "uartclk");
    std::uint32_t ticks = 0;
    return stream >> ticks && ticks > 0 ? ticks / kClockTicksPerBit : kNoLimit;
}

}  // namespace ClSerTty
