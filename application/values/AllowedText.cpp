/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a feature takes at present, as people read it
 */
#include "values/AllowedText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "values/NumberText.h"

namespace Vanto {

namespace {

std::string Limits(const std::string& least, const std::string& most, const std::string& step,
                   const std::string& unit) {
    return fmt::format("{} .. {}{}{}{}{}", least, most, step.empty() ? "" : " step ", step, unit.empty() ? "" : " ",
                       unit);
}

std::string Range(GenApi::IInteger& integer) {
    const GenApi::EIncMode mode = integer.GetIncMode();
    if (mode == GenApi::listIncrement) {
        const auto values = integer.GetListOfValidValues();
        return fmt::format("{}", fmt::join(values.begin(), values.end(), ", "));
    }
    const bool stepped = mode == GenApi::fixedIncrement && integer.GetInc() > 1;
    return Limits(IntegerText(integer, integer.GetMin()), IntegerText(integer, integer.GetMax()),
                  stepped ? std::to_string(integer.GetInc()) : "", integer.GetUnit().str());
}

std::string Range(GenApi::INode& node, GenApi::IFloat& number) {
    return Limits(NumberText(node, number.GetMin()), NumberText(node, number.GetMax()),
                  number.HasInc() ? NumberText(node, number.GetInc()) : "", number.GetUnit().str());
}

}  // namespace

std::vector<std::string> EntryNames(GenApi::INode& node) {
    GenApi::StringList_t symbolics;
    GenApi::CEnumerationPtr(&node)->GetSymbolics(symbolics);
    std::vector<std::string> names;
    for (const GenICam::gcstring& symbolic : symbolics)
        names.push_back(symbolic.str());
    return names;
}

/// "16 .. 2048 step 16", entries, "on or off"; empty where a feature of its kind takes anything.
std::string RangeText(GenApi::INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfIInteger:
            return Range(*GenApi::CIntegerPtr(&node));
        case GenApi::intfIFloat:
            return Range(node, *GenApi::CFloatPtr(&node));
        case GenApi::intfIEnumeration:
            return fmt::format("{}", fmt::join(EntryNames(node), ", "));
        case GenApi::intfIBoolean:
            return "on or off";
        case GenApi::intfIString:
            return fmt::format("up to {} bytes", GenApi::CStringPtr(&node)->GetMaxLength());
        case GenApi::intfIRegister:
            return fmt::format("{} bytes", GenApi::CRegisterPtr(&node)->GetLength());
        default:
            return {};
    }
}

std::string AllowedText(GenApi::INode* node) noexcept {
    try {
        return node != nullptr ? RangeText(*node) : std::string();
    } catch (const std::exception&) {
        return {};  // what went wrong before is the error to tell
    }
}

}  // namespace Vanto
