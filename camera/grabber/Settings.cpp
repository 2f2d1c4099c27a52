/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the device-specific string asks of the simulated grabber
 */

#include "Settings.h"

#include <charconv>
#include <stdexcept>
#include <system_error>

namespace grabber {

namespace {

constexpr std::uint32_t kLargestPitch = 1 << 20;
constexpr double kSmallestFrameRate = 1e-6;  // a frame's time has to fit into the clock's numbers
constexpr double kLargestFrameRate = 1e6;

[[noreturn]] void Refuse(std::string_view key, std::string_view value) {
    throw std::invalid_argument("Invalid value '" + std::string(value) + "' of the simulated grabber's parameter '" +
                                std::string(key) + "'.");
}

template <class Number>
Number ReadNumber(std::string_view key, std::string_view value, Number min, Number max) {
    Number number{};
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size() || !(number >= min && number <= max))
        Refuse(key, value);
    return number;
}

template <class Number>
Number ReadCount(std::string_view key, std::string_view value) {
    return ReadNumber<Number>(key, value, 0, static_cast<Number>(-1));
}

bool ReadSwitch(std::string_view key, std::string_view value) {
    if (value == "On")
        return true;
    if (value != "Off")
        Refuse(key, value);
    return false;
}

Pattern ReadPattern(std::string_view key, std::string_view value) {
    if (value == "Diagonal")
        return Pattern::kDiagonal;
    if (value == "Columns")
        return Pattern::kColumns;
    if (value == "Noise")
        return Pattern::kNoise;
    if (value == "Black")
        return Pattern::kBlack;
    Refuse(key, value);
}

using Reader = void (*)(Settings& settings, std::string_view key, std::string_view value);

struct Parameter {
    std::string_view key;
    Reader read;
};

constexpr Parameter kParameters[] = {
    {"FrameRate",
     [](Settings& settings, std::string_view key, std::string_view value) {
         settings.frameRate = ReadNumber<double>(key, value, 0, kLargestFrameRate);
         if (settings.frameRate != 0 && settings.frameRate < kSmallestFrameRate)
             Refuse(key, value);
     }},
    {"Pitch", [](Settings& settings, std::string_view key,
                 std::string_view value) { settings.pitch = ReadNumber<std::uint32_t>(key, value, 1, kLargestPitch); }},
    {"Pattern", [](Settings& settings, std::string_view key,
                   std::string_view value) { settings.pattern = ReadPattern(key, value); }},
    {"DropEvery", [](Settings& settings, std::string_view key,
                     std::string_view value) { settings.dropEvery = ReadCount<std::uint64_t>(key, value); }},
    {"Frames", [](Settings& settings, std::string_view key,
                  std::string_view value) { settings.frames = ReadCount<std::uint64_t>(key, value); }},
    {"Trigger", [](Settings& settings, std::string_view key,
                   std::string_view value) { settings.triggered = ReadSwitch(key, value); }},
    {"FirstTag", [](Settings& settings, std::string_view key,
                    std::string_view value) { settings.firstTag = ReadCount<std::uint32_t>(key, value); }},
    {"PixelClock", [](Settings& settings, std::string_view key,
                      std::string_view value) { settings.pixelClock = ReadCount<std::uint64_t>(key, value); }},
    {"PoCL",
     [](Settings& settings, std::string_view key, std::string_view value) { settings.poCL = ReadSwitch(key, value); }},
    {"FailInit", [](Settings& settings, std::string_view, std::string_view value) { settings.failInit = value; }},
    {"FailStart", [](Settings& settings, std::string_view, std::string_view value) { settings.failStart = value; }},
    {"FailStop", [](Settings& settings, std::string_view, std::string_view value) { settings.failStop = value; }},
};

void ReadParameter(Settings& settings, std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::string_view key = text.substr(0, equals);
    for (const Parameter& parameter : kParameters) {
        if (parameter.key == key && equals != std::string_view::npos)
            return parameter.read(settings, key, text.substr(equals + 1));
    }
    throw std::invalid_argument("Unknown parameter '" + std::string(text) + "' of the simulated grabber.");
}

}  // namespace

Settings ParseSettings(std::string_view parameters) {
    Settings settings;
    std::size_t end = parameters.find(';');
    while (end != std::string_view::npos) {
        parameters.remove_prefix(end + 1);
        end = parameters.find(';');
        if (const std::string_view text = parameters.substr(0, end); !text.empty())
            ReadParameter(settings, text);
    }
    return settings;
}

}  // namespace grabber
