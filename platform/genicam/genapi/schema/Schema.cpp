/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The elements and attributes of the schema
 */

#include "schema/Schema.h"

#include <array>

#include "schema/Text.h"

using namespace std::literals;

namespace GenApi {

namespace {

constexpr std::array<std::string_view, 27> kKindNames = {
    "Node",           "Category",      "Integer", "IntReg",   "MaskedIntReg", "StructEntry",
    "IntConverter",   "IntSwissKnife", "Float",   "FloatReg", "Converter",    "SwissKnife",
    "Enumeration",    "EnumEntry",     "Boolean", "Command",  "String",       "StringReg",
    "Register",       "StructReg",     "Port",    "ConfRom",  "TextDesc",     "IntKey",
    "AdvFeatureLock", "SmartFeature",  ""};

constexpr std::array kTagNames = {""sv,
                                  "pValue"sv,
                                  "pValueCopy"sv,
                                  "pIndex"sv,
                                  "pValueIndexed"sv,
                                  "pValueDefault"sv,
                                  "pMin"sv,
                                  "pMax"sv,
                                  "pInc"sv,
                                  "pIsImplemented"sv,
                                  "pIsAvailable"sv,
                                  "pIsLocked"sv,
                                  "pBlockPolling"sv,
                                  "pError"sv,
                                  "pVariable"sv,
                                  "pAddress"sv,
                                  "pLength"sv,
                                  "pPort"sv,
                                  "pCommandValue"sv,
                                  "p1212Parser"sv,
                                  "pOffset"sv,
                                  "pFeature"sv,
                                  "pSelected"sv,
                                  "pInvalidator"sv,
                                  "pAlias"sv,
                                  "pCastAlias"sv,
                                  "pChunkID"sv,
                                  "pTerminal"sv,
                                  "pDependent"sv,
                                  "Nested"sv,
                                  "ToolTip"sv,
                                  "Description"sv,
                                  "DisplayName"sv,
                                  "DocuURL"sv,
                                  "EventID"sv,
                                  "Unit"sv,
                                  "ValidValueSet"sv,
                                  "Expression"sv,
                                  "Formula"sv,
                                  "FormulaTo"sv,
                                  "FormulaFrom"sv,
                                  "AccessMode"sv,
                                  "ImposedAccessMode"sv,
                                  "Cachable"sv,
                                  "Endianess"sv,
                                  "Sign"sv,
                                  "Visibility"sv,
                                  "ImposedVisibility"sv,
                                  "Representation"sv,
                                  "DisplayNotation"sv,
                                  "Slope"sv,
                                  "Streamable"sv,
                                  "IsDeprecated"sv,
                                  "IsLinear"sv,
                                  "IsSelfClearing"sv,
                                  "SwapEndianess"sv,
                                  "CacheChunkData"sv,
                                  "Value"sv,
                                  "ValueIndexed"sv,
                                  "ValueDefault"sv,
                                  "Min"sv,
                                  "Max"sv,
                                  "Inc"sv,
                                  "DisplayPrecision"sv,
                                  "Address"sv,
                                  "Length"sv,
                                  "PollingTime"sv,
                                  "LSB"sv,
                                  "MSB"sv,
                                  "Bit"sv,
                                  "Constant"sv,
                                  "NumericValue"sv,
                                  "Symbolic"sv,
                                  "OnValue"sv,
                                  "OffValue"sv,
                                  "CommandValue"sv,
                                  "ChunkID"sv,
                                  "Key"sv,
                                  "FeatureID"sv,
                                  "Timeout"sv,
                                  "InputDirection"sv,
                                  "Extension"sv,
                                  "Name"sv,
                                  "Index"sv,
                                  "Offset"sv};
static_assert(kTagNames.size() == static_cast<std::size_t>(ETag::AttributeOffset) + 1);

constexpr std::size_t kSlots = 512;

constexpr std::size_t kShortest = 3;  // of all names

// Some characters tell the names of the schema apart as well as all do.
constexpr std::size_t SlotOf(std::string_view name) noexcept {
    const std::size_t size = name.size();
    const auto at = [&](std::size_t position) -> std::size_t { return static_cast<unsigned char>(name[position]); };
    const std::size_t hash =
        at(0) * 5 + at(1) * 59 + at(2) * 131 + at(size / 2) * 31 + at(size - 3) * 241 + at(size - 1) * 17 + size * 73;
    return (hash ^ (hash >> 9)) % kSlots;
}

// Open addressing over the positions of a name table; 0 is an empty slot, so positions are stored plus one.
template <std::size_t N>
constexpr std::array<std::uint8_t, kSlots> MakeSlots(const std::array<std::string_view, N>& names, std::size_t end) {
    std::array<std::uint8_t, kSlots> slots{};
    for (std::size_t i = 0; i < end; ++i) {
        if (names[i].empty() || names[i] == "Nested" || names[i] == "pOffset")
            continue;
        std::size_t slot = SlotOf(names[i]);
        while (slots[slot] != 0)
            slot = (slot + 1) % kSlots;
        slots[slot] = static_cast<std::uint8_t>(i + 1);
    }
    return slots;
}

template <std::size_t N>
std::size_t Find(const std::array<std::string_view, N>& names, const std::array<std::uint8_t, kSlots>& slots,
                 std::string_view name) noexcept {
    if (name.size() < kShortest)
        return N;
    for (std::size_t slot = SlotOf(name); slots[slot] != 0; slot = (slot + 1) % kSlots) {
        const std::size_t found = slots[slot] - 1U;
        if (AreEqual(names[found], name))
            return found;
    }
    return N;
}

constexpr auto kTagSlots = MakeSlots(kTagNames, static_cast<std::size_t>(ETag::AttributeName));
constexpr auto kKindSlots = MakeSlots(kKindNames, kKindNames.size());

}  // namespace

ETag TagOf(std::string_view element) noexcept {
    const std::size_t found = Find(kTagNames, kTagSlots, element);
    return found < kTagNames.size() ? static_cast<ETag>(found) : ETag::Unknown;
}

ENodeKind KindOf(std::string_view element) noexcept {
    const std::size_t found = Find(kKindNames, kKindSlots, element);
    return found < kKindNames.size() ? static_cast<ENodeKind>(found) : ENodeKind::None;
}

std::string_view NameOf(ETag tag) noexcept {
    return tag == ETag::Nested ? "EnumEntry"sv : kTagNames[static_cast<std::size_t>(tag)];
}

std::string_view NameOf(ENodeKind kind) noexcept {
    return kKindNames[static_cast<std::size_t>(kind)];
}

}  // namespace GenApi
