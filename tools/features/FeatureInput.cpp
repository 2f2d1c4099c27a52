/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts as values of features: checked and set
 */
#include "features/FeatureInput.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "base/ValueText.h"
#include "error/ExitCode.h"
#include "features/FeatureText.h"
#include "output/Text.h"

namespace tools {

namespace {

using GenApi::INode;

std::string NameOf(const INode& node) {
    return node.GetName().str();
}

std::string NumberHint(const char* examples, const std::string& unit) {
    return fmt::format(
        "Examples: {}{}", examples,
        unit.empty() ? "; it has no unit"
                     : fmt::format("; its unit is {0}, '2 {0}' and its multiples are taken, too", Printable(unit)));
}

std::int64_t ParsedInteger(INode& node, const std::string& text) {
    if (const auto value = base::IntegerFromText(text, As<GenApi::IInteger>(node).GetUnit().view()))
        return *value;
    throw ToolError(fmt::format("{}: '{}' is no integer", NameOf(node), text),
                    NumberHint("16, -2, 0x10", As<GenApi::IInteger>(node).GetUnit().str()));
}

double ParsedNumber(INode& node, const std::string& text) {
    if (const auto value = base::NumberFromText(text, As<GenApi::IFloat>(node).GetUnit().view()))
        return *value;
    throw ToolError(fmt::format("{}: '{}' is no number", NameOf(node), text),
                    NumberHint("16, 12.5, 1e3", As<GenApi::IFloat>(node).GetUnit().str()));
}

bool ParsedSwitch(INode& node, const std::string& text) {
    if (const auto value = base::SwitchFromText(text))
        return *value;
    throw ToolError(fmt::format("{}: '{}' is neither on nor off", NameOf(node), text),
                    "Write on, true, yes or 1; or off, false, no or 0.");
}

/// The entry that a text names: by its name, by its name in another case if only one has it, or by its number.
GenApi::IEnumEntry& ParsedEntry(INode& node, const std::string& text) {
    auto& enumeration = As<GenApi::IEnumeration>(node);
    const std::string word(Trimmed(text));
    GenApi::IEnumEntry* entry = enumeration.GetEntryByName(word);
    const std::vector<std::string> names = EntryNames(node);
    const auto isSame = [&](const std::string& name) { return EqualsIgnoringCase(name, word); };
    if (entry == nullptr && std::count_if(names.begin(), names.end(), isSame) == 1)
        entry = enumeration.GetEntryByName(*std::find_if(names.begin(), names.end(), isSame));
    if (const auto number = base::IntegerFromText(word); entry == nullptr && number)
        entry = enumeration.GetEntry(*number);
    if (entry != nullptr)
        return *entry;
    const std::string hint = DidYouMean(word, names);
    throw ToolError(fmt::format("{}: there is no entry '{}'", NameOf(node), word),
                    hint.empty() ? fmt::format("The entries are: {}", fmt::join(names, ", ")) : hint);
}

std::vector<std::uint8_t> ParsedBytes(INode& node, const std::string& text) {
    const std::int64_t length = As<GenApi::IRegister>(node).GetLength();
    auto bytes = base::BytesFromText(text);
    if (!bytes)
        throw ToolError(fmt::format("{}: '{}' are no bytes", NameOf(node), text), "Example: 0x0102fe");
    if (static_cast<std::int64_t>(bytes->size()) != length)
        throw ToolError(fmt::format("{}: the register has {} bytes, not {}", NameOf(node), length, bytes->size()));
    return std::move(*bytes);
}

[[noreturn]] void RefuseValue(INode& node, const std::string& value, const std::string& why) {
    throw ToolError(fmt::format("{}: {} {}", NameOf(node), value, why),
                    fmt::format("{} takes {}.", NameOf(node), RangeText(node)));
}

void CheckIntegerRange(INode& node, std::int64_t value) {
    auto& integer = As<GenApi::IInteger>(node);
    const std::int64_t least = integer.GetMin();
    const std::string text = IntegerText(integer, value);
    if (value < least)
        RefuseValue(node, text, "is too small");
    if (value > integer.GetMax())
        RefuseValue(node, text, "is too large");
    const GenApi::EIncMode mode = integer.GetIncMode();
    const std::uint64_t step = mode == GenApi::fixedIncrement ? static_cast<std::uint64_t>(integer.GetInc()) : 1;
    if (step > 1 && (static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(least)) % step != 0)
        RefuseValue(node, text, "is between two steps");
    const auto valid = integer.GetListOfValidValues();
    if (mode == GenApi::listIncrement && std::find(valid.begin(), valid.end(), value) == valid.end())
        RefuseValue(node, text, "is not one of the values");
}

void CheckNumberRange(INode& node, double value) {
    auto& number = As<GenApi::IFloat>(node);
    if (value < number.GetMin())
        RefuseValue(node, fmt::format("{}", value), "is too small");
    if (value > number.GetMax())
        RefuseValue(node, fmt::format("{}", value), "is too large");
}

void RequireValue(INode& node) {
    const std::string kind = KindText(node);
    if (!HasValue(node))
        throw ToolError(fmt::format("{} has no value: its kind is {}", NameOf(node), kind),
                        kind == "Command" ? "'vanto-cl exec' executes commands." : "");
}

void RequireAvailable(INode& node, GenApi::EAccessMode mode) {
    if (!GenApi::IsAvailable(mode))
        throw ToolError(
            fmt::format("{} is not {} at present", NameOf(node), mode == GenApi::NI ? "implemented" : "available"));
}

}  // namespace

/// Throws ToolError unless the feature can be read at present.
void CheckReadable(INode& node) {
    RequireValue(node);
    const GenApi::EAccessMode mode = node.GetAccessMode();
    if (mode == GenApi::WO)
        throw ToolError(fmt::format("{} can only be written", NameOf(node)));
    RequireAvailable(node, mode);
}

/// Throws ToolError unless the feature can be set at present.
void CheckWritable(INode& node) {
    RequireValue(node);
    const GenApi::EAccessMode mode = node.GetAccessMode();
    if (mode == GenApi::RO)
        throw ToolError(fmt::format("{} can only be read at present", NameOf(node)));
    RequireAvailable(node, mode);
}

/// Throws ToolError when a text is no value of the feature's kind, wherever its limits are.
void CheckText(INode& node, const std::string& text) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            if (!IsAddress(As<GenApi::IInteger>(node)))
                ParsedInteger(node, text);
            break;
        case GenApi::intfIFloat:
            ParsedNumber(node, text);
            break;
        case GenApi::intfIBoolean:
            ParsedSwitch(node, text);
            break;
        case GenApi::intfIEnumeration:
            ParsedEntry(node, text);
            break;
        case GenApi::intfIRegister:
            ParsedBytes(node, text);
            break;
        default:
            break;
    }
}

/// Throws ToolError when a value is outside what the feature takes at present. Asks the camera for the limits.
void CheckRange(INode& node, const std::string& text) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            if (!IsAddress(As<GenApi::IInteger>(node)))
                CheckIntegerRange(node, ParsedInteger(node, text));
            break;
        case GenApi::intfIFloat:
            CheckNumberRange(node, ParsedNumber(node, text));
            break;
        case GenApi::intfIEnumeration:
            if (GenApi::IEnumEntry& entry = ParsedEntry(node, text); !GenApi::IsAvailable(entry))
                throw ToolError(
                    fmt::format("{}: entry '{}' is not available at present", NameOf(node), entry.GetSymbolic().str()),
                    fmt::format("Available are: {}", RangeText(node)));
            break;
        case GenApi::intfIString:
            if (const auto most = As<GenApi::IString>(node).GetMaxLength();
                static_cast<std::int64_t>(text.size()) > most)
                throw ToolError(fmt::format("{}: {} bytes are too many", NameOf(node), text.size()),
                                fmt::format("{} takes {} bytes.", NameOf(node), most));
            break;
        default:
            break;
    }
}

/**
 * \brief Set a feature
 * \throw ToolError The text is no value of the feature
 * \throw GenericException The node map or the camera refuses it
 */
void SetText(INode& node, const std::string& text) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            if (auto& integer = As<GenApi::IInteger>(node); IsAddress(integer))
                integer.FromString(text);
            else
                integer.SetValue(ParsedInteger(node, text));
            break;
        case GenApi::intfIFloat:
            As<GenApi::IFloat>(node).SetValue(ParsedNumber(node, text));
            break;
        case GenApi::intfIBoolean:
            As<GenApi::IBoolean>(node).SetValue(ParsedSwitch(node, text));
            break;
        case GenApi::intfIEnumeration:
            As<GenApi::IEnumeration>(node).SetIntValue(ParsedEntry(node, text).GetValue());
            break;
        case GenApi::intfIRegister: {
            const std::vector<std::uint8_t> bytes = ParsedBytes(node, text);
            As<GenApi::IRegister>(node).Set(bytes.data(), static_cast<std::int64_t>(bytes.size()));
            break;
        }
        default:
            As<GenApi::IValue>(node).FromString(text);
    }
}

}  // namespace tools
