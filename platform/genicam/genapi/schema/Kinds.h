/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The kinds of nodes that the schema has
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

/// The kind of a node element, None when the schema lacks it.
ENodeKind KindOf(std::string_view element) noexcept;
std::string_view NameOf(ENodeKind kind) noexcept;

}  // namespace GenApi
