/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The elements and attributes of the schema
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenApi {

/// Kinds of nodes; the order is that of the table in Schema.cpp.
enum class ENodeKind : std::uint8_t {
    Node,
    Category,
    Integer,
    IntReg,
    MaskedIntReg,
    StructEntry,
    IntConverter,
    IntSwissKnife,
    Float,
    FloatReg,
    Converter,
    SwissKnife,
    Enumeration,
    EnumEntry,
    Boolean,
    Command,
    String,
    StringReg,
    Register,
    StructReg,
    Port,
    ConfRom,
    TextDesc,
    IntKey,
    AdvFeatureLock,
    SmartFeature,
    None
};
constexpr std::size_t kKinds = static_cast<std::size_t>(ENodeKind::None) + 1;

/// Elements that describe a property of a node, and the attributes that belong to such an element.
enum class ETag : std::uint8_t {
    Unknown,
    // References that a value, a range or an access mode needs: without its target the node can't work.
    pValue,
    pValueCopy,
    pIndex,
    pValueIndexed,
    pValueDefault,
    pMin,
    pMax,
    pInc,
    pIsImplemented,
    pIsAvailable,
    pIsLocked,
    pBlockPolling,
    pError,
    pVariable,
    pAddress,
    pLength,
    pPort,
    pCommandValue,
    p1212Parser,
    AttributePOffset,
    // References that only link nodes.
    pFeature,
    pSelected,
    pInvalidator,
    pAlias,
    pCastAlias,
    pChunkID,
    pTerminal,
    pDependent,
    // Nested nodes.
    Nested,
    // Plain values.
    ToolTip,
    Description,
    DisplayName,
    Visibility,
    DocuURL,
    IsDeprecated,
    EventID,
    ImposedAccessMode,
    ImposedVisibility,
    Streamable,
    Value,
    ValueIndexed,
    ValueDefault,
    Min,
    Max,
    Inc,
    Unit,
    Representation,
    DisplayNotation,
    DisplayPrecision,
    ValidValueSet,
    Address,
    Length,
    AccessMode,
    Cachable,
    PollingTime,
    Sign,
    Endianess,
    LSB,
    MSB,
    Bit,
    Constant,
    Expression,
    Formula,
    FormulaTo,
    FormulaFrom,
    Slope,
    IsLinear,
    NumericValue,
    Symbolic,
    IsSelfClearing,
    OnValue,
    OffValue,
    CommandValue,
    ChunkID,
    SwapEndianess,
    CacheChunkData,
    Key,
    FeatureID,
    Timeout,
    InputDirection,
    // Not looked at, but known.
    Extension,
    // Attributes of the element before it.
    AttributeName,
    AttributeIndex,
    AttributeOffset
};
constexpr std::size_t kTags = static_cast<std::size_t>(ETag::AttributeOffset) + 1;

/// What kind of number a node has.
enum class ENumber : std::uint8_t { None, Integer, Float };

/// The kind of number of a kind of node.
constexpr ENumber NumberOf(ENodeKind kind) noexcept {
    switch (kind) {
        case ENodeKind::Integer:
        case ENodeKind::IntReg:
        case ENodeKind::MaskedIntReg:
        case ENodeKind::StructEntry:
        case ENodeKind::IntConverter:
        case ENodeKind::IntSwissKnife:
        case ENodeKind::Enumeration:
        case ENodeKind::EnumEntry:
        case ENodeKind::Boolean:
        case ENodeKind::Command:
        case ENodeKind::IntKey:
            return ENumber::Integer;
        case ENodeKind::Float:
        case ENodeKind::FloatReg:
        case ENodeKind::Converter:
        case ENodeKind::SwissKnife:
            return ENumber::Float;
        default:
            return ENumber::None;
    }
}

/// True for elements whose text names a node.
constexpr bool IsReference(ETag tag) noexcept {
    return tag >= ETag::pValue && tag <= ETag::pDependent;
}
/// True for references without whose target the node can't work.
constexpr bool IsRequiredReference(ETag tag) noexcept {
    return tag >= ETag::pValue && tag <= ETag::AttributePOffset;
}
constexpr bool IsAttribute(ETag tag) noexcept {
    return tag >= ETag::AttributeName || tag == ETag::AttributePOffset;
}

/// True for elements of any text, in which blanks have no meaning or a meaning of their own.
constexpr bool IsFreeText(ETag tag) noexcept {
    switch (tag) {
        case ETag::ToolTip:
        case ETag::Description:
        case ETag::DisplayName:
        case ETag::DocuURL:
        case ETag::EventID:
        case ETag::Unit:
        case ETag::ValidValueSet:
        case ETag::Expression:
        case ETag::Formula:
        case ETag::FormulaTo:
        case ETag::FormulaFrom:
            return true;
        default:
            return false;
    }
}

/// True when an element has a meaning below a node of a kind.
bool HasElement(ENodeKind kind, ETag element) noexcept;

/// True when it also has a meaning whatever its text says: it is none of the schema's words.
bool TakesAnyText(ENodeKind kind, ETag element) noexcept;
/// True for elements whose text is one of a few words of the schema.
constexpr bool HasWords(ETag tag) noexcept {
    switch (tag) {
        case ETag::AccessMode:
        case ETag::ImposedAccessMode:
        case ETag::Cachable:
        case ETag::Endianess:
        case ETag::Sign:
        case ETag::Visibility:
        case ETag::ImposedVisibility:
        case ETag::Representation:
        case ETag::DisplayNotation:
        case ETag::Slope:
        case ETag::Streamable:
        case ETag::IsDeprecated:
        case ETag::IsLinear:
        case ETag::IsSelfClearing:
        case ETag::SwapEndianess:
        case ETag::CacheChunkData:
            return true;
        default:
            return false;
    }
}

/// The tag of an element below a node, Unknown when the schema lacks it.
ETag TagOf(std::string_view element) noexcept;
/// The kind of a node element, None when the schema lacks it.
ENodeKind KindOf(std::string_view element) noexcept;
std::string_view NameOf(ETag tag) noexcept;
std::string_view NameOf(ENodeKind kind) noexcept;

}  // namespace GenApi
