/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules about registers: where they lie, how long they are, which bits of them are meant
 */
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "description/rules/Numbers.h"
#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

bool IsRegister(const DescribedNode& node) {
    return IsIntegerRegister(node) || IsOneOf(node.kind, {"FloatReg", "StringReg", "Register"});
}

bool HasOneOf(const DescribedNode& node, std::initializer_list<std::string_view> elements) {
    return std::any_of(elements.begin(), elements.end(),
                       [&](std::string_view element) { return node.Find(element) != nullptr; });
}

void CheckWhatIsMissing(RuleReport& report, const DescribedNode& node) {
    if (!HasOneOf(node, {"Address", "pAddress", "pIndex", "IntSwissKnife"}))
        report.Add("missing-address", node.place, Label(node) + " has no address", "add Address or pAddress");
    if (!HasOneOf(node, {"Length", "pLength"}))
        report.Add("missing-length", node.place, Label(node) + " has no length", "add Length in bytes");
    const bool hasOrder = IsIntegerRegister(node) || node.kind == "FloatReg";
    if (hasOrder && node.Find("Endianess") == nullptr && SmallNumber(node.Text("Length")) != 1)
        report.Add("missing-endianess", node.place, Label(node) + " does not say in which order its bytes stand",
                   "add <Endianess>BigEndian</Endianess> or LittleEndian; without it LittleEndian counts");
}

void CheckLength(RuleReport& report, const DescribedNode& node) {
    const NodeElement* const element = node.Find("Length");
    const auto length = element != nullptr ? SmallNumber(element->text) : std::nullopt;
    if (!length || element->isInherited)
        return;
    if (IsIntegerRegister(node) && (*length < 1 || *length > 8))
        report.Add("integer-register-length", element->place,
                   fmt::format("{} has {} bytes; an integer has 1 to 8", Label(node), Printable(element->text)));
    if (node.kind == "FloatReg" && *length != 4 && *length != 8)
        report.Add(
            "float-register-length", element->place,
            fmt::format("{} has {} bytes; a floating-point number has 4 or 8", Label(node), Printable(element->text)));
}

void CheckBits(RuleReport& report, const DescribedNode& node) {
    const auto length = SmallNumber(node.Text("Length"));
    for (const char* const name : {"Bit", "LSB", "MSB"}) {
        const NodeElement* const element = node.Find(name);
        const auto bit = element != nullptr ? SmallNumber(element->text) : std::nullopt;
        if (bit && length && (*bit < 0 || *bit >= *length * 8))
            report.Add("bits-outside-register", element->place,
                       fmt::format("{} of {} is bit {} of a register that has bits 0 to {}", name, Label(node),
                                   Printable(element->text), *length * 8 - 1));
    }
    const auto low = SmallNumber(node.Text("LSB"));
    const auto high = SmallNumber(node.Text("MSB"));
    const bool isBig = node.Text("Endianess") == "BigEndian";
    if (low && high && (isBig ? *high > *low : *low > *high))
        report.Add(
            "bits-wrong-way-round", node.Find("LSB")->place,
            fmt::format("{} has its lowest bit at {} and its highest at {}", Label(node), node.Text("LSB"),
                        node.Text("MSB")),
            isBig ? "in a big-endian register bit 0 is the highest one: exchange LSB and MSB" : "exchange LSB and MSB");
}

void CheckAccess(RuleReport& report, const DescribedNode& node) {
    for (const NodeElement& element : node.elements)
        if (IsOneOf(element.name, {"AccessMode", "ImposedAccessMode"}) && !element.isInherited &&
            !IsOneOf(element.text, {"RO", "WO", "RW", "NA", "NI"}))
            report.Add("unknown-access-mode", element.place,
                       fmt::format("{} of {} is '{}'", element.name, Label(node), Printable(element.text)),
                       "it is RO, WO or RW");
}

}  // namespace

void CheckRegisters(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        CheckAccess(report, node);
        if (!IsRegister(node))
            continue;
        CheckWhatIsMissing(report, node);
        CheckLength(report, node);
        if (IsBitField(node))
            CheckBits(report, node);
    }
}

}  // namespace tools
