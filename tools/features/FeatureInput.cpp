/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts as values of features, checked before anything is set
 */
#include "features/FeatureInput.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "error/ExitCode.h"
#include "features/FeatureText.h"
#include "output/Text.h"
#include "values/AllowedText.h"
#include "values/NumberText.h"

namespace tools {

namespace {

using GenApi::INode;

std::string NameOf(const INode& node) {
    return node.GetName().str();
}

/// What would have been taken in place of a text.
std::string HintFor(INode& node, const std::string& text) {
    if (node.GetPrincipalInterfaceType() == GenApi::intfIEnumeration)
        if (std::string hint = DidYouMean(text, Vanto::EntryNames(node)); !hint.empty())
            return hint;
    return fmt::format("{} takes {}.", NameOf(node), Vanto::RangeText(node));
}

[[noreturn]] void RefuseValue(INode& node, const std::string& value, const std::string& why) {
    throw ToolError(fmt::format("{}: {} {}", NameOf(node), value, why),
                    fmt::format("{} takes {}.", NameOf(node), Vanto::RangeText(node)));
}

void CheckIntegerRange(INode& node, std::int64_t value) {
    const GenApi::CIntegerPtr number(&node);
    GenApi::IInteger& integer = *number;
    const std::int64_t least = integer.GetMin();
    const std::string text = Vanto::IntegerText(integer, value);
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
    const GenApi::CFloatPtr number(&node);
    if (value < number->GetMin())
        RefuseValue(node, fmt::format("{}", value), "is too small");
    if (value > number->GetMax())
        RefuseValue(node, fmt::format("{}", value), "is too large");
}

void CheckEntry(INode& node, std::int64_t value) {
    const GenApi::CEnumerationPtr enumeration(&node);
    const GenApi::IEnumEntry* const entry = enumeration->GetEntry(value);
    if (!GenApi::IsAvailable(entry))
        RefuseValue(node, fmt::format("entry '{}'", entry->GetSymbolic().str()), "is not available at present");
}

void CheckLength(INode& node, std::size_t bytes) {
    if (static_cast<std::int64_t>(bytes) > GenApi::CStringPtr(&node)->GetMaxLength())
        RefuseValue(node, fmt::format("{} bytes", bytes), "are too many");
}

void CheckBytes(INode& node, std::size_t bytes) {
    if (static_cast<std::int64_t>(bytes) != GenApi::CRegisterPtr(&node)->GetLength())
        RefuseValue(node, fmt::format("{} bytes", bytes), "do not fit");
}

void RequireValue(INode& node) {
    const std::string kind = KindText(node);
    if (!Vanto::HasValue(node))
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

/// A text as a value of the feature's kind, wherever its limits are; throws ToolError when it is none.
Vanto::FeatureValue ParsedValue(INode& node, const std::string& text) {
    RequireValue(node);
    try {
        return Vanto::ParseValue(node, text);
    } catch (const GenICam::InvalidArgumentException& error) {
        throw ToolError(error.GetDescription(), HintFor(node, text));
    }
}

/**
 * \brief Check a value against what the feature takes at present. Asks the camera for the limits
 * \param[in] value Of the feature's kind, as ParsedValue gives it
 * \throw ToolError It is outside
 */
void CheckRange(INode& node, const Vanto::FeatureValue& value) {
    const GenApi::EInterfaceType kind = node.GetPrincipalInterfaceType();
    if (const auto* const text = std::get_if<std::string>(&value); kind == GenApi::intfIString)
        CheckLength(node, text->size());
    else if (const auto* const whole = std::get_if<std::int64_t>(&value); whole != nullptr)
        kind == GenApi::intfIEnumeration ? CheckEntry(node, *whole) : CheckIntegerRange(node, *whole);
    else if (const auto* const number = std::get_if<double>(&value))
        CheckNumberRange(node, *number);
    else if (const auto* const bytes = std::get_if<Vanto::FeatureBytes>(&value))
        CheckBytes(node, bytes->size());
}

}  // namespace tools
