/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of features as text
 */
#include "features/FeatureText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

#include "base/ValueText.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

using GenApi::INode;

std::string NumberRange(const std::string& least, const std::string& most, const std::string& step,
                        const std::string& unit) {
    std::string text = fmt::format("{} .. {}", least, most);
    if (!step.empty())
        text += " step " + step;
    return unit.empty() ? text : text + " " + Printable(unit);
}

/// Whether the feature's value is all in registers of at most four bytes.
bool LiesInFourBytes(INode& node) {
    constexpr std::int64_t kLength = 4;
    GenApi::NodeList_t registers;
    node.GetChildren(registers, GenApi::ctTerminalNodes);
    if (registers.empty())
        registers.push_back(&node);
    return std::ranges::all_of(registers, [](INode* one) {
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

std::string IntegerText(GenApi::IInteger& integer, std::int64_t value) {
    if (integer.GetRepresentation() == GenApi::HexNumber)
        return fmt::format("0x{:X}", static_cast<std::uint64_t>(value));
    return std::to_string(value);
}

/// Names of the entries that an enumeration has at present.
std::vector<std::string> EntryNames(INode& node) {
    GenApi::StringList_t symbolics;
    As<GenApi::IEnumeration>(node).GetSymbolics(symbolics);
    std::vector<std::string> names;
    for (const GenICam::gcstring& symbolic : symbolics)
        names.push_back(symbolic.str());
    return names;
}

/**
 * \brief A number of a feature as short as it is exact
 *
 * Four bytes have no more values than fifteen digits tell apart: what else a double has of them is what its calculation
 * left, and 41.9 says all that 41.900001525878906 and 41.900000000000006 do.
 */
std::string NumberText(INode& node, double value) {
    const auto single = static_cast<float>(value);
    if (!LiesInFourBytes(node))
        return fmt::format("{}", value);
    return static_cast<double>(single) == value ? fmt::format("{}", single) : fmt::format("{:.15g}", value);
}

/// What kind of feature it is: "Integer", "Enumeration" ...
std::string KindText(const INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return "Integer";
        case GenApi::intfIBoolean:
            return "Boolean";
        case GenApi::intfICommand:
            return "Command";
        case GenApi::intfIFloat:
            return "Float";
        case GenApi::intfIString:
            return "String";
        case GenApi::intfIRegister:
            return "Register";
        case GenApi::intfICategory:
            return "Category";
        case GenApi::intfIEnumeration:
            return "Enumeration";
        case GenApi::intfIEnumEntry:
            return "EnumEntry";
        case GenApi::intfIPort:
            return "Port";
        default:
            return "Node";
    }
}

std::string AccessText(GenApi::EAccessMode mode) {
    switch (mode) {
        case GenApi::NI:
            return "NI";
        case GenApi::WO:
            return "WO";
        case GenApi::RO:
            return "RO";
        case GenApi::RW:
            return "RW";
        default:
            return "NA";
    }
}

/// What a feature takes at present: its range, step and unit, or its entries. Asks the camera.
std::string RangeText(INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger: {
            auto& integer = As<GenApi::IInteger>(node);
            if (integer.GetIncMode() == GenApi::listIncrement) {
                const auto values = integer.GetListOfValidValues();
                return fmt::format("{}", fmt::join(values.begin(), values.end(), ", "));
            }
            const bool stepped = integer.GetIncMode() == GenApi::fixedIncrement && integer.GetInc() > 1;
            return NumberRange(IntegerText(integer, integer.GetMin()), IntegerText(integer, integer.GetMax()),
                               stepped ? std::to_string(integer.GetInc()) : "", integer.GetUnit().str());
        }
        case GenApi::intfIFloat: {
            auto& number = As<GenApi::IFloat>(node);
            return NumberRange(NumberText(node, number.GetMin()), NumberText(node, number.GetMax()),
                               number.HasInc() ? NumberText(node, number.GetInc()) : "", number.GetUnit().str());
        }
        case GenApi::intfIEnumeration:
            return fmt::format("{}", fmt::join(EntryNames(node), ", "));
        case GenApi::intfIBoolean:
            return "on or off";
        default:
            return {};
    }
}

bool HasValue(const INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
        case GenApi::intfIBoolean:
        case GenApi::intfIFloat:
        case GenApi::intfIString:
        case GenApi::intfIRegister:
        case GenApi::intfIEnumeration:
            return true;
        default:
            return false;
    }
}

/**
 * \brief A feature's value in the notation that SetText takes
 *
 * Nothing is lost: numbers have all their digits. Texts are as the camera gives them.
 *
 * \throw GenericException It can't be read
 */
std::string ValueText(INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger: {
            auto& integer = As<GenApi::IInteger>(node);
            return IsAddress(integer) ? integer.ToString().str() : IntegerText(integer, integer.GetValue());
        }
        case GenApi::intfIFloat:
            return NumberText(node, As<GenApi::IFloat>(node).GetValue());
        case GenApi::intfIBoolean:
            return As<GenApi::IBoolean>(node).GetValue() ? "true" : "false";
        default:
            return As<GenApi::IValue>(node).ToString().str();
    }
}

/// A feature's value with its type in JSON; texts, entries and registers are strings.
Json ValueJson(INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return As<GenApi::IInteger>(node).GetValue();
        case GenApi::intfIFloat: {
            const double value = As<GenApi::IFloat>(node).GetValue();
            return base::NumberFromText(NumberText(node, value), "").value_or(value);
        }
        case GenApi::intfIBoolean:
            return As<GenApi::IBoolean>(node).GetValue();
        default:
            return ValueText(node);
    }
}

}  // namespace tools
