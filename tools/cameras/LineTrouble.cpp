/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What became of the line to a camera, in a sentence for people
 */
#include "cameras/LineTrouble.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/Number.h"
#include "clser/ClSerial.h"
#include "output/Text.h"

namespace tools {

namespace {

// What accesses say that come behind the one that found out.
constexpr std::string_view kRemoved = "' already removed/disconnected";

struct Trouble {
    int code;  ///< of the Camera Link serial API
    const char* sentence;
};

constexpr std::array kTroubles{
    Trouble{CL_ERR_PORT_IN_USE, "Another program uses the port {}. Close it, or wait until it ends."},
    Trouble{CL_ERR_TIMEOUT,
            "The camera on {} does not answer any more. Is its cable plugged in, and is it switched on?"},
    Trouble{CL_ERR_INVALID_REFERENCE, "The port {} is gone. Is its adapter or frame grabber plugged in?"},
    Trouble{CL_ERR_BAUD_RATE_NOT_SUPPORTED,
            "The port {} does not do this baud rate. 'vanto-cl doctor' says which one works."},
    Trouble{CL_ERR_IN_USE, "Another program uses the port {}. Close it, or wait until it ends."}};

/// What stands between two texts, the last ones of their kind in the text.
std::string_view Between(std::string_view text, std::string_view before, std::string_view behind) {
    const std::size_t begin = text.rfind(before);
    if (begin == std::string_view::npos)
        return {};
    text.remove_prefix(begin + before.size());
    return text.substr(0, std::min(text.find(behind), text.size()));
}

}  // namespace

std::string LineTroubleText(std::string_view failure) {
    const bool isRemoved = failure.find(kRemoved) != std::string_view::npos;
    const auto code = isRemoved ? CL_ERR_TIMEOUT : base::ParseNumber<int>(Between(failure, "(", ")"));
    const std::string_view port = Between(failure, isRemoved ? "Device '" : "Port '", "'");
    const auto trouble = std::ranges::find(kTroubles, code.value_or(0), &Trouble::code);
    if (trouble == kTroubles.end() || port.empty())
        return {};
    return fmt::format(fmt::runtime(trouble->sentence), Printable(port));
}

}  // namespace tools
