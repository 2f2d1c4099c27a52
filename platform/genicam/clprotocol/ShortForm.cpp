/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DeviceIDs and templates without their driver
 */

#include "ShortForm.h"

#include <algorithm>
#include <string>

#include "Texts.h"
#include "base/Text.h"

namespace CLProtocol {

namespace {

constexpr char kSeparator = '#';
constexpr std::ptrdiff_t kMostShortSeparators = 4;  // manufacturer, family, model, version, serial number
constexpr std::ptrdiff_t kMostSeparators = 6;       // those with directory and file name; what has more is no DeviceID

// Of any system; all other tokens but the serial number are names, which have no dot.
bool IsLibraryName(std::string_view token) {
    const std::string name = base::LowerCase(token);
    const auto hasSuffix = [&](std::string_view suffix) {
        return name.size() > suffix.size() && name.ends_with(suffix);
    };
    return hasSuffix(".so") || hasSuffix(".dll");
}

}  // namespace

/**
 * \brief The short form of a DeviceID or template
 * \param[in] deviceId In its short or its full form, which has the driver's directory and file name in front
 *
 * By the standard drivers speak in short forms, and hosts put the driver in front. There are drivers that do so
 * themselves, with the place where they were on their maker's machine.
 *
 * \return \a deviceId without the driver; all of it when it names none
 */
std::string_view ShortForm(std::string_view deviceId) {
    const std::size_t first = deviceId.find(kSeparator);
    const std::size_t second = first == deviceId.npos ? first : deviceId.find(kSeparator, first + 1);
    if (second == deviceId.npos)
        return deviceId;
    const std::ptrdiff_t separators = std::ranges::count(deviceId, kSeparator);
    const bool isFull = (separators > kMostShortSeparators && separators <= kMostSeparators) ||
                        IsLibraryName(deviceId.substr(first + 1, second - first - 1));
    return isFull ? deviceId.substr(second + 1) : deviceId;
}

}  // namespace CLProtocol
