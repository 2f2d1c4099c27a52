/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which elements have a meaning below which kinds of nodes
 */

#include <array>
#include <initializer_list>

#include "schema/Schema.h"

namespace GenApi {

namespace {

/// One bit for each kind of node.
using KindSet = std::uint32_t;
static_assert(static_cast<std::size_t>(ENodeKind::None) < 32);

constexpr KindSet SetOf(std::initializer_list<ENodeKind> kinds) {
    KindSet set = 0;
    for (const ENodeKind kind : kinds)
        set |= KindSet{1} << static_cast<unsigned>(kind);
    return set;
}

using enum ENodeKind;

// What stands for registers stands for structures, too: their entries take it from there.
constexpr KindSet kIntegerRegisters = SetOf({IntReg, MaskedIntReg, StructReg, StructEntry});
constexpr KindSet kRegisters =
    kIntegerRegisters | SetOf({FloatReg, StringReg, Register, ConfRom, AdvFeatureLock, SmartFeature});
constexpr KindSet kConverters = SetOf({IntConverter, Converter});
constexpr KindSet kKnives = SetOf({IntSwissKnife, SwissKnife});
constexpr KindSet kNumbers =
    kIntegerRegisters | kConverters | kKnives | SetOf({Integer, Float, FloatReg, IntKey, Boolean, Enumeration});
constexpr KindSet kFloats = SetOf({Float, FloatReg, Converter, SwissKnife});
constexpr KindSet kRanges = kIntegerRegisters | kFloats | SetOf({Integer, IntConverter, IntSwissKnife});
constexpr KindSet kSources = SetOf({Integer, Float, Enumeration, Boolean, Command});
constexpr KindSet kRomKeys = SetOf({IntKey, TextDesc});

struct Rule {
    KindSet kinds;
    std::initializer_list<ETag> tags;
};

// Elements that are not listed have a meaning everywhere. Where files are used to more than the schema allows and it
// can be understood, the wider sense counts.
constexpr Rule kRules[] = {
    {kSources | kConverters | SetOf({String}), {ETag::pValue}},
    {kSources | kRomKeys | SetOf({EnumEntry, String}), {ETag::Value}},
    {kSources, {ETag::pValueCopy, ETag::pValueIndexed, ETag::pValueDefault, ETag::ValueIndexed, ETag::ValueDefault}},
    {kSources | kRegisters, {ETag::pIndex}},
    {kRanges, {ETag::pMin, ETag::pMax, ETag::pInc, ETag::Min, ETag::Max, ETag::Inc, ETag::ValidValueSet}},
    {kNumbers, {ETag::Unit, ETag::Representation}},
    {kFloats, {ETag::DisplayNotation, ETag::DisplayPrecision}},
    {kKnives | kConverters, {ETag::pVariable, ETag::Constant, ETag::Expression}},
    {kKnives, {ETag::Formula}},
    {kConverters, {ETag::FormulaTo, ETag::FormulaFrom, ETag::Slope, ETag::IsLinear}},
    {kRegisters,
     {ETag::pAddress, ETag::Address, ETag::pLength, ETag::Length, ETag::AccessMode, ETag::pPort, ETag::Cachable,
      ETag::Endianess}},
    {kIntegerRegisters | SetOf({FloatReg}), {ETag::Sign}},
    {kIntegerRegisters, {ETag::LSB, ETag::MSB, ETag::Bit}},
    {SetOf({EnumEntry}), {ETag::NumericValue, ETag::Symbolic, ETag::IsSelfClearing}},
    {SetOf({Boolean}), {ETag::OnValue, ETag::OffValue}},
    {SetOf({Command}), {ETag::CommandValue, ETag::pCommandValue}},
    {SetOf({Port}), {ETag::ChunkID, ETag::pChunkID, ETag::SwapEndianess, ETag::CacheChunkData}},
    {kRomKeys, {ETag::Key, ETag::p1212Parser}},
    {SetOf({AdvFeatureLock, SmartFeature}), {ETag::FeatureID, ETag::Timeout}},
    {SetOf({Category}), {ETag::pFeature}},
};

constexpr auto kKindsOfTags = [] {
    std::array<KindSet, static_cast<std::size_t>(ETag::AttributeOffset) + 1> kinds{};
    for (KindSet& set : kinds)
        set = ~KindSet{0};
    for (const Rule& rule : kRules) {
        for (const ETag tag : rule.tags)
            kinds[static_cast<std::size_t>(tag)] = rule.kinds;
    }
    return kinds;
}();

}  // namespace

bool HasElement(ENodeKind kind, ETag element) noexcept {
    return (kKindsOfTags[static_cast<std::size_t>(element)] >> static_cast<unsigned>(kind) & 1U) != 0;
}

bool TakesAnyText(ENodeKind kind, ETag element) noexcept {
    return !HasWords(element) && HasElement(kind, element);
}

}  // namespace GenApi
