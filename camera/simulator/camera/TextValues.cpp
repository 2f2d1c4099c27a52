/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers, switches and words in options and control commands
 */

#include "camera/TextValues.h"

#include <stdexcept>
#include <string>

#include "base/Number.h"

namespace MarlowSim {

namespace {

constexpr std::uint64_t kMaxMilliseconds = 3'600'000;

[[noreturn]] void Refuse(std::string_view text, const std::string& wanted) {
    throw std::invalid_argument("'" + std::string(text) + "' is not " + wanted);
}

}  // namespace

/**
 * \brief Read a number that is not negative, decimal or with 0x
 * \throw std::invalid_argument It is none, or greater than \a max
 */
std::uint64_t ParseCount(std::string_view text, std::uint64_t max) {
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = text.substr(isHex ? 2 : 0);
    const auto value = base::ParseNumber<std::uint64_t>(digits, isHex ? 16 : 10);
    if (!value || *value > max)
        Refuse(text, "a number from 0 to " + std::to_string(max));
    return *value;
}

/**
 * \brief Read a number from 0 to 1
 * \throw std::invalid_argument
 */
double ParseProbability(std::string_view text) {
    const auto value = base::ParseNumber<double>(text);
    if (!value || !(*value >= 0 && *value <= 1))
        Refuse(text, "a probability from 0 to 1");
    return *value;
}

/**
 * \brief Read "on" or "off"
 * \throw std::invalid_argument
 */
bool ParseSwitch(std::string_view text) {
    if (text != "on" && text != "off")
        Refuse(text, "on or off");
    return text == "on";
}

/**
 * \brief Read a time of up to an hour, in milliseconds
 * \throw std::invalid_argument
 */
std::chrono::milliseconds ParseMilliseconds(std::string_view text) {
    return std::chrono::milliseconds(ParseCount(text, kMaxMilliseconds));
}

}  // namespace MarlowSim
