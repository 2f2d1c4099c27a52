/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of nodes, read and written as any of the types that features have
 *
 * What does not fit is an InvalidArgumentException or AccessException of GenICam, which Access makes ours of.
 */
#include "values/FeatureValueAccess.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "Base/GCException.h"
#include "GenApi/GenApi.h"
#include "base/Text.h"
#include "base/ValueText.h"
#include "values/NumberText.h"

namespace Vanto {

namespace {

/// The interface of a node, which its kind promises.
template <class Interface>
Interface& As(GenApi::INode& node) {
    return *GenApi::CPointer<Interface>(&node);
}

[[noreturn]] void Refuse(GenApi::INode& node, const std::string& why) {
    throw INVALID_ARGUMENT_EXCEPTION("%s %s", node.GetName(), why);
}

// A command's value is nothing that anybody means.
void RequireValue(GenApi::INode& node) {
    if (KindOf(node) == FeatureKind::kCommand)
        Refuse(node, "is a command, which is executed");
    if (!HasValue(node))
        Refuse(node, "has no value");
}

std::string UnitText(const GenICam::gcstring& unit) {
    return unit.empty() ? " without a unit" : fmt::format(" in {}", unit.str());
}

FeatureValue ParseInteger(GenApi::INode& node, const std::string& text) {
    auto& integer = As<GenApi::IInteger>(node);
    if (IsAddress(integer))
        return text;
    if (const auto value = base::IntegerFromText(text, integer.GetUnit().view()))
        return *value;
    Refuse(node, fmt::format("is an integer{}, which '{}' is not", UnitText(integer.GetUnit()), text));
}

FeatureValue ParseNumber(GenApi::INode& node, const std::string& text) {
    const GenICam::gcstring unit = As<GenApi::IFloat>(node).GetUnit();
    if (const auto value = base::NumberFromText(text, unit.view()))
        return *value;
    Refuse(node, fmt::format("is a number{}, which '{}' is not", UnitText(unit), text));
}

FeatureValue ParseSwitch(GenApi::INode& node, const std::string& text) {
    if (const auto value = base::SwitchFromText(text))
        return *value;
    Refuse(node, fmt::format("is on or off, which '{}' is not", text));
}

/// The entry of a name, the only one with that name in another case, or that of a number; null when there is none.
GenApi::IEnumEntry* FindEntry(GenApi::IEnumeration& enumeration, const std::string& text) {
    const std::string word(base::Trimmed(text));
    if (GenApi::IEnumEntry* const entry = enumeration.GetEntryByName(word))
        return entry;
    GenApi::NodeList_t entries;
    enumeration.GetEntries(entries);
    std::vector<GenApi::IEnumEntry*> found;
    for (GenApi::INode* node : entries)
        if (const GenApi::CEnumEntryPtr entry(node);
            entry.IsValid() && base::EqualsIgnoringCase(entry->GetSymbolic().view(), word))
            found.push_back(entry);
    if (found.size() == 1)
        return found.front();
    const auto number = base::IntegerFromText(word);
    return number ? enumeration.GetEntry(*number) : nullptr;
}

FeatureValue ParseEntry(GenApi::INode& node, const std::string& text) {
    if (GenApi::IEnumEntry* const entry = FindEntry(As<GenApi::IEnumeration>(node), text))
        return entry->GetValue();
    Refuse(node, fmt::format("has no entry '{}'", base::Trimmed(text)));
}

FeatureValue ParseBytes(GenApi::INode& node, const std::string& text) {
    if (auto bytes = base::BytesFromText(text))
        return std::move(*bytes);
    Refuse(node, fmt::format("takes bytes such as 0x0102fe, which '{}' are not", text));
}

void WriteInteger(GenApi::INode& node, const FeatureValue& value) {
    auto& integer = As<GenApi::IInteger>(node);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        integer.SetValue(*whole);
    } else if (const auto* on = std::get_if<bool>(&value)) {
        integer.SetValue(*on ? 1 : 0);
    } else if (const auto* number = std::get_if<double>(&value)) {
        constexpr double kLimit = 9007199254740992.0;  // beyond this a double leaves integers out
        if (std::floor(*number) != *number || std::abs(*number) > kLimit)
            Refuse(node, fmt::format("is an integer, which {} is not", *number));
        integer.SetValue(static_cast<std::int64_t>(*number));
    } else if (const auto* address = std::get_if<std::string>(&value)) {
        integer.FromString(*address);
    } else {
        Refuse(node, "is an integer and takes no bytes");
    }
}

void WriteNumber(GenApi::INode& node, const FeatureValue& value) {
    auto& number = As<GenApi::IFloat>(node);
    if (const auto* given = std::get_if<double>(&value))
        number.SetValue(*given);
    else if (const auto* whole = std::get_if<std::int64_t>(&value))
        number.SetValue(static_cast<double>(*whole));
    else
        Refuse(node, "is a number");
}

void WriteBoolean(GenApi::INode& node, const FeatureValue& value) {
    if (const auto* on = std::get_if<bool>(&value))
        As<GenApi::IBoolean>(node).SetValue(*on);
    else if (const auto* whole = std::get_if<std::int64_t>(&value); whole != nullptr && (*whole == 0 || *whole == 1))
        As<GenApi::IBoolean>(node).SetValue(*whole == 1);
    else
        Refuse(node, "is on or off");
}

void WriteEntry(GenApi::INode& node, const FeatureValue& value) {
    auto& enumeration = As<GenApi::IEnumeration>(node);
    const auto* whole = std::get_if<std::int64_t>(&value);
    if (whole == nullptr)
        Refuse(node, "is set to one of its entries");
    GenApi::IEnumEntry* const entry = enumeration.GetEntry(*whole);
    if (entry == nullptr)
        Refuse(node, fmt::format("has no entry '{}'", *whole));
    if (!GenApi::IsAvailable(entry))
        throw OUT_OF_RANGE_EXCEPTION("%s: entry '%s' is not available at present", node.GetName(),
                                     entry->GetSymbolic());
    enumeration.SetIntValue(entry->GetValue());
}

void WriteText(GenApi::INode& node, const FeatureValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr)
        Refuse(node, "is a text");
    As<GenApi::IValue>(node).FromString(*text);
}

void WriteBytes(GenApi::INode& node, const FeatureValue& value) {
    auto& bytes = As<GenApi::IRegister>(node);
    const auto* given = std::get_if<FeatureBytes>(&value);
    if (given == nullptr)
        Refuse(node, "takes bytes");
    if (static_cast<std::int64_t>(given->size()) != bytes.GetLength())
        throw OUT_OF_RANGE_EXCEPTION("%s has %I64d bytes, not %u", node.GetName(), bytes.GetLength(), given->size());
    bytes.Set(given->data(), static_cast<std::int64_t>(given->size()));
}

}  // namespace

FeatureKind KindOf(const GenApi::INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return FeatureKind::kInteger;
        case GenApi::intfIBoolean:
            return FeatureKind::kBoolean;
        case GenApi::intfICommand:
            return FeatureKind::kCommand;
        case GenApi::intfIFloat:
            return FeatureKind::kFloat;
        case GenApi::intfIString:
            return FeatureKind::kString;
        case GenApi::intfIRegister:
            return FeatureKind::kRegister;
        case GenApi::intfICategory:
            return FeatureKind::kCategory;
        case GenApi::intfIEnumeration:
            return FeatureKind::kEnumeration;
        default:
            return FeatureKind::kOther;
    }
}

bool HasValue(FeatureKind kind) {
    return kind != FeatureKind::kCommand && kind != FeatureKind::kCategory && kind != FeatureKind::kOther;
}

/// "us", "Hz" ...; empty for none.
std::string UnitOf(GenApi::INode& node) {
    if (const GenApi::CIntegerPtr integer(&node); integer.IsValid())
        return integer->GetUnit().str();
    const GenApi::CFloatPtr number(&node);
    return number.IsValid() ? number->GetUnit().str() : std::string();
}

FeatureValue ReadValue(GenApi::INode& node) {
    switch (KindOf(node)) {
        case FeatureKind::kInteger:
            return As<GenApi::IInteger>(node).GetValue();
        case FeatureKind::kFloat:
            return As<GenApi::IFloat>(node).GetValue();
        case FeatureKind::kBoolean:
            return As<GenApi::IBoolean>(node).GetValue();
        case FeatureKind::kRegister:
            return ReadBytes(node);
        default:
            return ReadText(node);
    }
}

/// The value in the notation that WriteValue takes. Nothing is lost: numbers have all the digits that they need.
std::string ReadText(GenApi::INode& node) {
    RequireValue(node);
    if (KindOf(node) == FeatureKind::kFloat)
        return NumberText(node, As<GenApi::IFloat>(node).GetValue());
    if (KindOf(node) == FeatureKind::kBoolean)
        return As<GenApi::IBoolean>(node).GetValue() ? "true" : "false";
    if (const GenApi::CIntegerPtr integer(&node); KindOf(node) == FeatureKind::kInteger && !IsAddress(*integer))
        return IntegerText(*integer, integer->GetValue());
    return As<GenApi::IValue>(node).ToString().str();
}

std::int64_t ReadInteger(GenApi::INode& node) {
    switch (KindOf(node)) {
        case FeatureKind::kInteger:
            return As<GenApi::IInteger>(node).GetValue();
        case FeatureKind::kBoolean:
            return As<GenApi::IBoolean>(node).GetValue() ? 1 : 0;
        case FeatureKind::kEnumeration:
            return As<GenApi::IEnumeration>(node).GetIntValue();
        default:
            Refuse(node, "is no integer");
    }
}

double ReadNumber(GenApi::INode& node) {
    if (KindOf(node) == FeatureKind::kFloat)
        return As<GenApi::IFloat>(node).GetValue();
    if (KindOf(node) == FeatureKind::kInteger)
        return static_cast<double>(As<GenApi::IInteger>(node).GetValue());
    Refuse(node, "is no number");
}

bool ReadBoolean(GenApi::INode& node) {
    if (KindOf(node) == FeatureKind::kBoolean)
        return As<GenApi::IBoolean>(node).GetValue();
    if (KindOf(node) == FeatureKind::kInteger)
        return As<GenApi::IInteger>(node).GetValue() != 0;
    Refuse(node, "is neither on nor off");
}

FeatureBytes ReadBytes(GenApi::INode& node) {
    if (KindOf(node) != FeatureKind::kRegister)
        Refuse(node, "is no register");
    auto& source = As<GenApi::IRegister>(node);
    FeatureBytes bytes(static_cast<std::size_t>(source.GetLength()));  // at least one, or an exception
    source.Get(bytes.data(), static_cast<std::int64_t>(bytes.size()));
    return bytes;
}

/// A text as a value of the feature's kind: decimal or hexadecimal numbers with the feature's unit or a multiple of it,
/// an entry by name or number, which gives its number, on and off, bytes. Texts and addresses stay as they are.
FeatureValue ParseValue(GenApi::INode& node, const std::string& text) {
    RequireValue(node);
    switch (KindOf(node)) {
        case FeatureKind::kInteger:
            return ParseInteger(node, text);
        case FeatureKind::kFloat:
            return ParseNumber(node, text);
        case FeatureKind::kBoolean:
            return ParseSwitch(node, text);
        case FeatureKind::kEnumeration:
            return ParseEntry(node, text);
        case FeatureKind::kRegister:
            return ParseBytes(node, text);
        default:
            return text;
    }
}

void WriteValue(GenApi::INode& node, const FeatureValue& given) {
    RequireValue(node);
    const auto* const text = std::get_if<std::string>(&given);
    const FeatureValue& value = text != nullptr ? ParseValue(node, *text) : given;
    switch (KindOf(node)) {
        case FeatureKind::kInteger:
            return WriteInteger(node, value);
        case FeatureKind::kFloat:
            return WriteNumber(node, value);
        case FeatureKind::kBoolean:
            return WriteBoolean(node, value);
        case FeatureKind::kEnumeration:
            return WriteEntry(node, value);
        case FeatureKind::kRegister:
            return WriteBytes(node, value);
        default:
            return WriteText(node, value);
    }
}

}  // namespace Vanto
