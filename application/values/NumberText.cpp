/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers of features as people read them
 */
#include "values/NumberText.h"

#include <fmt/format.h>

#include <algorithm>

namespace Vanto {

namespace {

/// Whether the feature's value is all in registers of at most four bytes.
bool LiesInFourBytes(GenApi::INode& node) {
    constexpr std::int64_t kLength = 4;
    GenApi::NodeList_t registers;
    node.GetChildren(registers, GenApi::ctTerminalNodes);
    if (registers.empty())
        registers.push_back(&node);
    return std::all_of(registers.begin(), registers.end(), [](GenApi::INode* one) {
        const GenApi::CRegisterPtr place(one);
        return place.IsValid() && place->GetLength() <= kLength;
    });
}

}  // namespace

/// Addresses have a notation of their own, which the node map reads and writes.
bool IsAddress(GenApi::IInteger& integer) {
    const GenApi::ERepresentation shown = integer.GetRepresentation();
    return shown == GenApi::IPV4Address || shown == GenApi::MACAddress;
}

/// Hexadecimal where the description wants that.
std::string IntegerText(GenApi::IInteger& integer, std::int64_t value) {
    if (integer.GetRepresentation() == GenApi::HexNumber)
        return fmt::format("0x{:X}", static_cast<std::uint64_t>(value));
    return std::to_string(value);
}

/**
 * \brief A number of a feature as short as it is exact
 *
 * Four bytes have no more values than fifteen digits tell apart: what else a double has of them is what its calculation
 * left, and 41.9 says all that 41.900001525878906 and 41.900000000000006 do.
 */
std::string NumberText(GenApi::INode& node, double value) {
    const auto single = static_cast<float>(value);
    if (!LiesInFourBytes(node))
        return fmt::format("{}", value);
    return static_cast<double>(single) == value ? fmt::format("{}", single) : fmt::format("{:.15g}", value);
}

}  // namespace Vanto
