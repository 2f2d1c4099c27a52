/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of nodes, read and written as any of the types that features have
 *
 * What does not fit is an InvalidArgumentException or AccessException of GenICam, which Access makes ours of.
 */
#include "FeatureValueAccess.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "Base/GCException.h"
#include "GenApi/GenApi.h"
#include "base/Text.h"
#include "base/ValueText.h"

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
    const FeatureKind kind = KindOf(node);
    if (kind == FeatureKind::kCommand)
        Refuse(node, "is a command, which is executed");
    if (kind == FeatureKind::kCategory || kind == FeatureKind::kOther)
        Refuse(node, "has no value");
}

/// Addresses have a notation of their own, which the node map reads and writes.
bool IsAddress(GenApi::IInteger& integer) {
    const GenApi::ERepresentation shown = integer.GetRepresentation();
    return shown == GenApi::IPV4Address || shown == GenApi::MACAddress;
}

std::string UnitText(const GenICam::gcstring& unit) {
    return unit.empty() ? std::string() : fmt::format(" in {}", unit.str());
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
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        if (IsAddress(integer))
            return integer.FromString(*text);
        const auto parsed = base::IntegerFromText(*text, integer.GetUnit().view());
        if (!parsed)
            Refuse(node, fmt::format("is an integer{}, which '{}' is not", UnitText(integer.GetUnit()), *text));
        integer.SetValue(*parsed);
    } else {
        Refuse(node, "is an integer and takes no bytes");
    }
}

void WriteNumber(GenApi::INode& node, const FeatureValue& value) {
    auto& number = As<GenApi::IFloat>(node);
    if (const auto* given = std::get_if<double>(&value)) {
        number.SetValue(*given);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        number.SetValue(static_cast<double>(*whole));
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        const auto parsed = base::NumberFromText(*text, number.GetUnit().view());
        if (!parsed)
            Refuse(node, fmt::format("is a number{}, which '{}' is not", UnitText(number.GetUnit()), *text));
        number.SetValue(*parsed);
    } else {
        Refuse(node, "is a number");
    }
}

void WriteBoolean(GenApi::INode& node, const FeatureValue& value) {
    std::optional<bool> on;
    if (const auto* given = std::get_if<bool>(&value))
        on = *given;
    else if (const auto* whole = std::get_if<std::int64_t>(&value); whole != nullptr && (*whole == 0 || *whole == 1))
        on = *whole == 1;
    else if (const auto* text = std::get_if<std::string>(&value))
        on = base::SwitchFromText(*text);
    if (!on)
        Refuse(node, "is on or off");
    As<GenApi::IBoolean>(node).SetValue(*on);
}

/// The entry of a name, or the only one with that name in another case; null when there is none.
GenApi::IEnumEntry* FindEntry(GenApi::IEnumeration& enumeration, const std::string& text) {
    const std::string word(base::Trimmed(text));
    if (GenApi::IEnumEntry* const entry = enumeration.GetEntryByName(word))
        return entry;
    GenApi::NodeList_t entries;
    enumeration.GetEntries(entries);
    GenApi::IEnumEntry* found = nullptr;
    for (GenApi::INode* node : entries) {
        const GenApi::CEnumEntryPtr entry(node);
        if (!entry.IsValid() || !base::EqualsIgnoringCase(entry->GetSymbolic().view(), word))
            continue;
        if (found != nullptr)
            return nullptr;
        found = entry;
    }
    return found;
}

void WriteEntry(GenApi::INode& node, const FeatureValue& value) {
    auto& enumeration = As<GenApi::IEnumeration>(node);
    GenApi::IEnumEntry* entry = nullptr;
    std::string word;
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        entry = enumeration.GetEntry(*whole);
        word = std::to_string(*whole);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        entry = FindEntry(enumeration, *text);
        word = *text;
    } else {
        Refuse(node, "is set to one of its entries");
    }
    if (entry == nullptr)
        Refuse(node, fmt::format("has no entry '{}'", word));
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
    std::optional<FeatureBytes> parsed;
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && (parsed = base::BytesFromText(*text)))
        given = &*parsed;
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

/// The value in the notation that WriteValue takes; numbers with all their digits.
std::string ReadText(GenApi::INode& node) {
    RequireValue(node);
    if (KindOf(node) == FeatureKind::kFloat)
        return fmt::format("{}", As<GenApi::IFloat>(node).GetValue());
    if (KindOf(node) == FeatureKind::kBoolean)
        return As<GenApi::IBoolean>(node).GetValue() ? "true" : "false";
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
    FeatureBytes bytes(static_cast<std::size_t>(std::max<std::int64_t>(source.GetLength(), 0)));
    source.Get(bytes.data(), static_cast<std::int64_t>(bytes.size()));
    return bytes;
}

void WriteValue(GenApi::INode& node, const FeatureValue& value) {
    RequireValue(node);
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
