/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules about values: limits, increments, units, commands, switches
 */
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "description/rules/Numbers.h"
#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

// What tools show and convert: SI units with prefixes, and what cameras count in.
constexpr std::string_view kUnits[]{
    "s",      "ms",     "us",     "\u00b5s", "\u03bcs", "ns",      "min",   "h",      "Hz",    "kHz",   "MHz",  "GHz",
    "fps",    "FPS",    "m",      "mm",      "um",      "\u00b5m", "nm",    "V",      "mV",    "A",     "mA",   "uA",
    "W",      "mW",     "K",      "C",       "\u00b0C", "degC",    "Pa",    "hPa",    "kPa",   "mbar",  "bar",  "F",
    "deg",    "Deg",    "\u00b0", "rad",     "dB",      "dBm",     "%",     "ppm",    "bit",   "bits",  "Bit",  "Bits",
    "B",      "Byte",   "Bytes",  "byte",    "bytes",   "kB",      "KB",    "MB",     "GB",    "Bps",   "kBps", "MBps",
    "bps",    "kbps",   "Mbps",   "Gbps",    "MB/s",    "px",      "pixel", "pixels", "Pixel", "lines", "line", "Lines",
    "frames", "Frames", "frame",  "DN",      "dn",      "e-",      "lux",   "lx",     "rpm",   "Baud",  "baud"};

std::optional<double> Number(const DescribedNode& node, std::string_view element) {
    const NodeElement* const found = node.Find(element);
    return found != nullptr ? RealNumber(found->text) : std::nullopt;
}

void CheckLimits(RuleReport& report, const DescribedNode& node) {
    const auto minimum = Number(node, "Min");
    const auto maximum = Number(node, "Max");
    if (minimum && maximum && *minimum > *maximum)
        report.Add("min-above-max", node.Find("Min")->place,
                   fmt::format("the minimum {} of {} is above its maximum {}", Printable(node.Text("Min")), Label(node),
                               Printable(node.Text("Max"))));
    const auto increment = Number(node, "Inc");
    if (increment && *increment <= 0)
        report.Add("inc-not-positive", node.Find("Inc")->place,
                   fmt::format("the increment of {} is {}", Label(node), Printable(node.Text("Inc"))));
}

void CheckRegisterRange(RuleReport& report, const DescribedNode& node) {
    const NodeElement* const value = node.Find("pValue");
    const DescribedNode* const target = value != nullptr ? report.Model().TargetOf(*value) : nullptr;
    const RegisterRange range = RangeOf(target);
    for (const char* const name : {"Min", "Max"}) {
        const auto limit = WholeNumber(node.Text(name));
        if (limit && !range.Contains(*limit))
            report.Add("range-outside-register", node.Find(name)->place,
                       fmt::format("{} {} of {} does not fit into {}", name, Printable(node.Text(name)), Label(node),
                                   Label(*target)));
    }
}

void CheckUnit(RuleReport& report, const DescribedNode& node) {
    const NodeElement* const unit = node.Find("Unit");
    if (unit != nullptr && !unit->text.empty() && std::ranges::find(kUnits, unit->text) == std::end(kUnits))
        report.Add("unknown-unit", unit->place,
                   fmt::format("no tool knows the unit '{}' of {}", Printable(unit->text), Label(node)),
                   "SFNC uses us, ms, Hz, dB, C, B, Bps ...");
}

void CheckSwitch(RuleReport& report, const DescribedNode& node) {
    const NodeElement* const on = node.Find("OnValue");
    const NodeElement* const off = node.Find("OffValue");
    const WholeValue onValue = WholeNumber(on != nullptr ? on->text : "1").value_or(WholeValue{false, 1});
    const WholeValue offValue = WholeNumber(off != nullptr ? off->text : "0").value_or(WholeValue{});
    if (onValue == offValue)
        report.Add("on-equals-off", node.place, fmt::format("{} has one value for on and off", Label(node)));
}

void CheckCommand(RuleReport& report, const DescribedNode& node) {
    if (node.Find("CommandValue") == nullptr && node.Find("pCommandValue") == nullptr)
        report.Add("command-without-value", node.place, Label(node) + " does not say what to write",
                   "add CommandValue");
}

}  // namespace

void CheckValues(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        CheckLimits(report, node);
        CheckUnit(report, node);
        if (node.kind == "Integer")
            CheckRegisterRange(report, node);
        if (node.kind == "Boolean")
            CheckSwitch(report, node);
        if (node.kind == "Command")
            CheckCommand(report, node);
    }
}

}  // namespace tools
