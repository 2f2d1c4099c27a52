/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options of a simulated camera from texts such as model=H4096,loss=0.02
 */

#include "simulator/CameraOptions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <stdexcept>
#include <utility>

#include "base/Text.h"
#include "camera/CameraModel.h"
#include "camera/TextValues.h"
#include "gencp/BaudRate.h"
#include "gencp/Protocol.h"

namespace MarlowSim {

namespace {

template <typename Target>
struct Key {
    std::string_view name;
    std::string_view help;
    void (*set)(Target&, std::string_view);
};

constexpr std::size_t kMaxText = 64;  // bytes of a bootstrap register
constexpr std::size_t kMaxDescription = 64 * 1024 * 1024;

std::string RegisterText(std::string_view text) {
    if (text.size() > kMaxText) {
        throw std::invalid_argument("'" + std::string(text) + "' is longer than " + std::to_string(kMaxText) +
                                    " bytes");
    }
    return std::string(text);
}

std::uint32_t ParseRates(std::string_view text) {
    const auto flags = static_cast<std::uint32_t>(ParseCount(text, gencp::kAllBaudRateFlags));
    return flags | gencp::kStartBaudRate.flag;
}

std::uint32_t ParseBaud(std::string_view text) {
    const auto baud = static_cast<std::uint32_t>(ParseCount(text, UINT32_MAX));
    if (gencp::FindBaudRateBySpeed(baud) == nullptr)
        throw std::invalid_argument("'" + std::string(text) + "' is no baud rate of a camera");
    return baud;
}

/// Any version: a host has to say what it thinks of those that it does not know.
void SetGenCp(CameraOptions& options, std::string_view text) {
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos)
        throw std::invalid_argument("'" + std::string(text) + "' is no version such as 1.3");
    options.genCpMajor = static_cast<std::uint16_t>(ParseCount(text.substr(0, dot), std::uint16_t{UINT16_MAX}));
    options.genCpMinor = static_cast<std::uint16_t>(ParseCount(text.substr(dot + 1), std::uint16_t{UINT16_MAX}));
}

DescriptionFault ParseDescriptionFault(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, DescriptionFault>, 5> kWords{{
        {"none", DescriptionFault::kNone},
        {"missing", DescriptionFault::kMissing},
        {"empty", DescriptionFault::kEmpty},
        {"sha1", DescriptionFault::kWrongSha1},
        {"zip", DescriptionFault::kDamagedZip},
    }};
    const auto word = std::ranges::find(kWords, text, &std::pair<std::string_view, DescriptionFault>::first);
    if (word == kWords.end())
        throw std::invalid_argument("'" + std::string(text) + "' is not none, missing, empty, sha1 or zip");
    return word->second;
}

SerialRegisters ParseSerialRegisters(std::string_view text) {
    if (text == "lost")
        return SerialRegisters::kElsewhere;
    return ParseSwitch(text) ? SerialRegisters::kThere : SerialRegisters::kNone;
}

/// "none", or "0x10005C:0x8006+0x100060:0x8004"
std::map<std::uint64_t, std::uint16_t> ParseRefusals(std::string_view text) {
    std::map<std::uint64_t, std::uint16_t> refusals;
    if (text == "none")
        return refusals;
    for (const std::string_view part : base::SplitWithoutEmpty(text, '+')) {
        const std::size_t colon = part.find(':');
        const auto status =
            colon == std::string_view::npos ? 0 : ParseCount(part.substr(colon + 1), std::uint16_t{UINT16_MAX});
        if (!gencp::IsError(static_cast<std::uint16_t>(status))) {
            throw std::invalid_argument("'" + std::string(part) +
                                        "' is no address and error status, as 0x10005C:0x8006");
        }
        refusals[ParseCount(part.substr(0, colon))] = static_cast<std::uint16_t>(status);
    }
    return refusals;
}

std::uint32_t ParseLineLimit(std::string_view text) {
    return text == "0" ? 0 : ParseBaud(text);
}

using Options = CameraOptions;
using Text = std::string_view;

constexpr std::array<Key<Options>, 20> kOptionKeys{{
    {"model", "H2048, H4096 or H8192L (line-scan)",
     [](Options& o, Text v) { o.model = std::string(FindModel(v).name); }},
    {"serial", "serial number", [](Options& o, Text v) { o.serial = RegisterText(v); }},
    {"user-name", "name that a user gave", [](Options& o, Text v) { o.userName = RegisterText(v); }},
    {"manufacturer", "name of the maker (Marlow)", [](Options& o, Text v) { o.manufacturer = RegisterText(v); }},
    {"family", "name of the family (Heron); empty: no such register",
     [](Options& o, Text v) { o.family = RegisterText(v); }},
    {"gencp", "version of the protocol (1.3)", [](Options& o, Text v) { SetGenCp(o, v); }},
    {"stacked", "on|off: has stacked commands", [](Options& o, Text v) { o.stacked = ParseSwitch(v); }},
    {"written-length", "on|off: tells the length written",
     [](Options& o, Text v) { o.writtenLength = ParseSwitch(v); }},
    {"rates", "baud rates that it can do, Camera Link flags (0xFF)",
     [](Options& o, Text v) { o.rates = ParseRates(v); }},
    {"listed-rates", "those that its description lists, whatever it can do",
     [](Options& o, Text v) { o.listedRates = ParseRates(v); }},
    {"serial-registers", "on|off|lost: for the baud rate; lost: their address leads nowhere",
     [](Options& o, Text v) { o.serialRegisters = ParseSerialRegisters(v); }},
    {"firmware", "version of the device (2.0)", [](Options& o, Text v) { o.firmware = RegisterText(v); }},
    {"sha1", "on|off: the manifest has the sum of the description",
     [](Options& o, Text v) { o.sha1 = ParseSwitch(v); }},
    {"baud", "baud rate when switched on (9600)", [](Options& o, Text v) { o.baud = ParseBaud(v); }},
    {"paced", "on|off: bytes take the time of a real line", [](Options& o, Text v) { o.paced = ParseSwitch(v); }},
    {"zip", "on|off: the description is zipped", [](Options& o, Text v) { o.zip = ParseSwitch(v); }},
    {"description-size", "pads the description to so many bytes",
     [](Options& o, Text v) { o.descriptionSize = static_cast<std::size_t>(ParseCount(v, kMaxDescription)); }},
    {"description", "file to use as description", [](Options& o, Text v) { o.descriptionFile = std::string(v); }},
    {"description-fault", "missing|empty|sha1|zip: what is wrong with the description; none",
     [](Options& o, Text v) { o.descriptionFault = ParseDescriptionFault(v); }},
    {"seed", "of all random choices", [](Options& o, Text v) { o.seed = ParseCount(v); }},
}};

using Faults = FaultSettings;

constexpr std::array<Key<Faults>, 17> kFaultKeys{{
    {"loss", "probability that a packet gets lost, 0 to 1", [](Faults& f, Text v) { f.loss = ParseProbability(v); }},
    {"damage", "probability that a packet is damaged", [](Faults& f, Text v) { f.damage = ParseProbability(v); }},
    {"repeat", "probability that a packet comes twice", [](Faults& f, Text v) { f.repeat = ParseProbability(v); }},
    {"late", "probability that an acknowledge is late", [](Faults& f, Text v) { f.late = ParseProbability(v); }},
    {"late-time", "ms by which it is late (100)", [](Faults& f, Text v) { f.lateTime = ParseMilliseconds(v); }},
    {"delay", "ms from each command to its acknowledge", [](Faults& f, Text v) { f.delay = ParseMilliseconds(v); }},
    {"pending", "ms that loading and saving user sets and a reset take",
     [](Faults& f, Text v) { f.pending = ParseMilliseconds(v); }},
    {"silent", "on|off: hears and says nothing", [](Faults& f, Text v) { f.silent = ParseSwitch(v); }},
    {"nonsense", "on|off: says noise in place of each packet", [](Faults& f, Text v) { f.nonsense = ParseSwitch(v); }},
    {"noise", "on|off: sends noise without end", [](Faults& f, Text v) { f.noise = ParseSwitch(v); }},
    {"always-pending", "on|off: calls every command pending, without end",
     [](Faults& f, Text v) { f.alwaysPending = ParseSwitch(v); }},
    {"line-limit", "fastest baud rate that the line carries; 0: all",
     [](Faults& f, Text v) { f.lineLimit = ParseLineLimit(v); }},
    {"refuse-read", "ADDRESS:STATUS+...: refuses reads of such bytes; none",
     [](Faults& f, Text v) { f.refusedReads = ParseRefusals(v); }},
    {"refuse-write", "ADDRESS:STATUS+...: refuses writes of such bytes; none",
     [](Faults& f, Text v) { f.refusedWrites = ParseRefusals(v); }},
    {"fail-at", "N: the packet after N more gets lost", [](Faults& f, Text v) { f.failAt = ParseCount(v); }},
    {"drop-after", "N: the cable is pulled after N more packets",
     [](Faults& f, Text v) { f.dropAfter = ParseCount(v); }},
    {"silent-after", "N: falls silent after N more packets", [](Faults& f, Text v) { f.silentAfter = ParseCount(v); }},
}};

template <typename Target, std::size_t kSize>
bool Set(const std::array<Key<Target>, kSize>& keys, Target& target, Text name, Text value) {
    for (const Key<Target>& key : keys) {
        if (key.name == name) {
            try {
                key.set(target, value);
            } catch (const std::invalid_argument& error) {
                throw std::invalid_argument(std::string(name) + ": " + error.what());
            }
            return true;
        }
    }
    return false;
}

template <typename Target, std::size_t kSize>
void AppendHelp(const std::array<Key<Target>, kSize>& keys, std::string& text) {
    constexpr std::size_t kColumn = 20;
    for (const Key<Target>& key : keys) {
        std::string line = "  " + std::string(key.name) + "=";
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        text += line + std::string(key.help) + "\n";
    }
}

}  // namespace

/**
 * \brief Set one fault
 * \param[in] key For example "loss"
 * \return False when there is no such key
 * \throw std::invalid_argument The value has no meaning for the key
 */
bool SetFault(FaultSettings& faults, std::string_view key, std::string_view value) {
    return Set(kFaultKeys, faults, key, value);
}

/**
 * \brief Set one option, faults among them
 * \throw std::invalid_argument There is no such key, or the value has no meaning for it
 */
void SetOption(CameraOptions& options, std::string_view key, std::string_view value) {
    if (!Set(kOptionKeys, options, key, value) && !SetFault(options.faults, key, value))
        throw std::invalid_argument("a camera has no option '" + std::string(key) + "'");
}

/**
 * \brief Set options from a list such as "model=H4096,zip=on"
 * \throw std::invalid_argument As SetOption, or a part is not key=value
 */
void SetOptions(CameraOptions& options, std::string_view list) {
    for (const std::string_view part : base::SplitWithoutEmpty(list, ',')) {
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos)
            throw std::invalid_argument("'" + std::string(part) + "' is not key=value");
        SetOption(options, part.substr(0, equals), part.substr(equals + 1));
    }
}

/**
 * \brief Read a camera from a text such as "cam0,model=H4096,zip=on"
 * \throw std::invalid_argument As SetOptions, or the name is missing or no file name
 */
NamedCamera ParseCamera(std::string_view text) {
    NamedCamera camera;
    camera.name = std::string(text.substr(0, text.find(',')));
    if (camera.name.empty() || camera.name == "." || camera.name == ".." ||
        camera.name.find_first_of("/=") != std::string::npos) {
        throw std::invalid_argument("'" + camera.name + "' is no name for a camera");
    }
    SetOptions(camera.options, text.substr(camera.name.size()));
    return camera;
}

/**
 * \brief List all keys with a line about each
 */
std::string OptionsHelp() {
    std::string text;
    AppendHelp(kOptionKeys, text);
    AppendHelp(kFaultKeys, text);
    return text;
}

}  // namespace MarlowSim
