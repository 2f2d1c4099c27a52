/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a feature takes at present, as people read it
 */
#include "AllowedText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "GenApi/GenApi.h"

namespace Vanto {

namespace {

std::string Limits(const std::string& least, const std::string& most, const std::string& step,
                   const std::string& unit) {
    return fmt::format("{} .. {}{}{}{}{}", least, most, step.empty() ? "" : " step ", step, unit.empty() ? "" : " ",
                       unit);
}

std::string Allowed(GenApi::IInteger& integer) {
    const GenApi::EIncMode mode = integer.GetIncMode();
    if (mode == GenApi::listIncrement) {
        const auto values = integer.GetListOfValidValues();
        return fmt::format("{}", fmt::join(values.begin(), values.end(), ", "));
    }
    const bool stepped = mode == GenApi::fixedIncrement && integer.GetInc() > 1;
    return Limits(std::to_string(integer.GetMin()), std::to_string(integer.GetMax()),
                  stepped ? std::to_string(integer.GetInc()) : "", integer.GetUnit().str());
}

std::string Allowed(GenApi::IFloat& number) {
    return Limits(fmt::format("{}", number.GetMin()), fmt::format("{}", number.GetMax()),
                  number.HasInc() ? fmt::format("{}", number.GetInc()) : "", number.GetUnit().str());
}

std::string Allowed(GenApi::IEnumeration& enumeration) {
    GenApi::StringList_t symbolics;
    enumeration.GetSymbolics(symbolics);
    std::vector<std::string> names;
    for (const GenICam::gcstring& symbolic : symbolics)
        names.push_back(symbolic.str());
    return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace

/**
 * \brief "16 .. 2048 step 16", entries, "on or off"; asks the camera for limits
 * \param[in] node May be null
 * \return Empty where a feature of its kind takes anything, or where the camera does not tell
 */
std::string AllowedText(GenApi::INode* node) noexcept {
    try {
        if (const GenApi::CEnumerationPtr enumeration(node); enumeration.IsValid())
            return Allowed(*enumeration);
        if (GenApi::CBooleanPtr(node).IsValid())
            return "on or off";
        if (const GenApi::CIntegerPtr integer(node); integer.IsValid())
            return Allowed(*integer);
        if (const GenApi::CFloatPtr number(node); number.IsValid())
            return Allowed(*number);
        if (const GenApi::CStringPtr text(node); text.IsValid())
            return fmt::format("up to {} bytes", text->GetMaxLength());
    } catch (const std::exception&) {
        // What went wrong before is the error to tell.
    }
    return {};
}

}  // namespace Vanto
