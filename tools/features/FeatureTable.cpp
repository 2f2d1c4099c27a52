/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open camera's features, as a table and as JSON
 */
#include "features/FeatureTable.h"

#include <array>
#include <cmath>
#include <optional>

#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Table.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

/// What a camera answers, or the failure in its place: one broken feature must not hide the others.
template <class Read>
std::string Answer(const OpenDevice& device, std::size_t& failures, Read read) {
    ThrowIfInterrupted();
    try {
        return read();
    } catch (const GenICam::GenericException& error) {
        if (device.IsGone())
            throw;
        ++failures;
        return std::string("(") + error.GetDescription() + ")";
    }
}

std::vector<Table::Cell> Row(const OpenDevice& device, GenApi::INode& node, const std::string& indent,
                             std::size_t& failures) {
    if (node.GetPrincipalInterfaceType() == GenApi::intfICategory)
        return {{indent + node.GetName().str(), Style::kBold}, "", "", "", ""};
    const GenApi::EAccessMode mode = node.GetAccessMode();
    const bool isValue = HasValue(node);
    const std::string value =
        isValue && GenApi::IsReadable(mode) ? Answer(device, failures, [&] { return ValueText(node); }) : std::string();
    const std::string range =
        isValue && GenApi::IsWritable(mode) ? Answer(device, failures, [&] { return RangeText(node); }) : std::string();
    return {{indent + node.GetName().str(), GenApi::IsAvailable(mode) ? Style::kPlain : Style::kDim},
            KindText(node),
            AccessText(mode),
            value,
            range};
}

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

Json ToJson(const OpenDevice& device, GenApi::INode& node, std::size_t& failures) {
    const GenApi::EAccessMode mode = node.GetAccessMode();
    Json json{{"Name", node.GetName().str()},
              {"Interface", KindText(node)},
              {"Access", AccessText(mode)},
              {"Visibility", VisibilityText(node.GetVisibility())},
              {"DisplayName", node.GetDisplayName().str()}};
    const std::string failure = Answer(device, failures, [&] {
        if (HasValue(node) && GenApi::IsAvailable(mode)) {
            json["Value"] = GenApi::IsReadable(mode) ? ValueJson(node) : Json(nullptr);
            AddLimits(node, json);
        }
        return std::string();
    });
    if (!failure.empty())
        json["Error"] = failure.substr(1, failure.size() - 2);
    const std::string description = node.GetDescription().str();
    json["Documentation"] = description.empty() ? node.GetToolTip().str() : description;
    if (HasValue(node))
        json["Streamable"] = node.IsStreamable();
    if (node.GetPrincipalInterfaceType() == GenApi::intfICategory)
        json["Features"] = Json::array();
    return json;
}

}  // namespace

/**
 * \brief Print a line for each feature: kind, access, value, and what it takes
 * \param[in] tree With a line for each category, its features indented below it
 */
std::size_t PrintFeatures(Output& output, const OpenDevice& device, GenApi::EVisibility visibility, bool tree) {
    std::size_t failures = 0;
    Table table({{"Feature"}, {"Kind"}, {"Access"}, {"Value"}, {"Range, entries, unit"}});
    {
        const Progress progress(output, "Reading the features of " + device.Name());
        WalkFeatures(device.Nodes(), visibility, [&](GenApi::INode& node, std::size_t depth) {
            if (tree || node.GetPrincipalInterfaceType() != GenApi::intfICategory)
                table.AddRow(Row(device, node, std::string(tree ? 2 * depth : 0, ' '), failures));
        });
    }
    table.PrintTo(output);
    return failures;
}

/// Prints an array of the features below the root; a category has its own in "Features".
std::size_t PrintFeaturesAsJson(Output& output, const OpenDevice& device, GenApi::EVisibility visibility) {
    std::size_t failures = 0;
    Json json = Json::array();
    {
        const Progress progress(output, "Reading the features of " + device.Name());
        WalkFeatures(device.Nodes(), visibility, [&](GenApi::INode& node, std::size_t depth) {
            Json* features = &json;
            for (std::size_t level = 0; level < depth; ++level)
                features = &features->back()["Features"];
            features->push_back(ToJson(device, node, failures));
        });
    }
    output.Line(ToText(json));
    return failures;
}

}  // namespace tools
