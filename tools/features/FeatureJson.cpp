/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is known of one feature, as JSON
 */
#include "features/FeatureJson.h"

#include <array>
#include <cmath>

#include "features/FeatureText.h"
#include "values/FeatureValueAccess.h"

namespace tools {

namespace {

const char* VisibilityText(GenApi::EVisibility visibility) {
    constexpr std::array kNames{"Beginner", "Expert", "Guru", "Invisible"};
    const auto index = static_cast<std::size_t>(visibility);
    return index < kNames.size() ? kNames[index] : "";
}

/// JSON knows no infinite numbers.
Json Limit(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

void AddLimits(GenApi::INode& node, Json& json) {
    if (const GenApi::CIntegerPtr integer(&node); json["Interface"] == "Integer") {
        json["Min"] = integer->GetMin();
        json["Max"] = integer->GetMax();
        json["Inc"] = integer->GetInc();
        json["Unit"] = integer->GetUnit().str();
    } else if (const GenApi::CFloatPtr number(&node); json["Interface"] == "Float") {
        json["Min"] = Limit(number->GetMin());
        json["Max"] = Limit(number->GetMax());
        if (number->HasInc())
            json["Inc"] = Limit(number->GetInc());
        json["Unit"] = number->GetUnit().str();
    } else if (const GenApi::CEnumerationPtr enumeration(&node); json["Interface"] == "Enumeration") {
        GenApi::StringList_t symbolics;
        enumeration->GetSymbolics(symbolics);
        json["Entries"] = Json::array();
        for (const GenICam::gcstring& symbolic : symbolics)
            json["Entries"].push_back(symbolic.str());
    }
}

}  // namespace

Json FeatureJson(GenApi::INode& node) {
    const std::string description = node.GetDescription().str();
    Json json{{"Name", node.GetName().str()},
              {"Interface", KindText(node)},
              {"Access", AccessText(node.GetAccessMode())},
              {"Visibility", VisibilityText(node.GetVisibility())},
              {"DisplayName", node.GetDisplayName().str()},
              {"Documentation", description.empty() ? node.GetToolTip().str() : description}};
    if (Vanto::HasValue(node))
        json["Streamable"] = node.IsStreamable();
    return json;
}

void AddValueAndLimits(GenApi::INode& node, Json& json) {
    const GenApi::EAccessMode mode = node.GetAccessMode();
    if (!Vanto::HasValue(node) || !GenApi::IsAvailable(mode))
        return;
    json["Value"] = GenApi::IsReadable(mode) ? ValueJson(node) : Json(nullptr);
    AddLimits(node, json);
}

}  // namespace tools
