/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The elements and attributes that the schema has below a node
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenApi {

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
    // Texts in which blanks have no meaning or a meaning of their own.
    ToolTip,
    Description,
    DisplayName,
    DocuURL,
    EventID,
    Unit,
    ValidValueSet,
    Expression,
    Formula,
    FormulaTo,
    FormulaFrom,
    // Words: one of a few of the schema.
    AccessMode,
    ImposedAccessMode,
    Cachable,
    Endianess,
    Sign,
    Visibility,
    ImposedVisibility,
    Representation,
    DisplayNotation,
    Slope,
    Streamable,
    IsDeprecated,
    IsLinear,
    IsSelfClearing,
    SwapEndianess,
    CacheChunkData,
    // Plain values.
    Value,
    ValueIndexed,
    ValueDefault,
    Min,
    Max,
    Inc,
    DisplayPrecision,
    Address,
    Length,
    PollingTime,
    LSB,
    MSB,
    Bit,
    Constant,
    NumericValue,
    Symbolic,
    OnValue,
    OffValue,
    CommandValue,
    ChunkID,
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
    return tag >= ETag::ToolTip && tag <= ETag::FormulaFrom;
}
/// True for elements whose text is one of a few words of the schema.
constexpr bool HasWords(ETag tag) noexcept {
    return tag >= ETag::AccessMode && tag <= ETag::CacheChunkData;
}

/// The tag of an element below a node, Unknown when the schema lacks it.
ETag TagOf(std::string_view element) noexcept;
std::string_view NameOf(ETag tag) noexcept;

}  // namespace GenApi
