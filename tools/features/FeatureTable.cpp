/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An open camera's features, as a table and as JSON
 */
#include "features/FeatureTable.h"

#include "features/FeatureJson.h"
#include "features/FeatureText.h"
#include "features/OpenDevice.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Table.h"
#include "system/Interruptible.h"
#include "values/AllowedText.h"
#include "values/FeatureValueAccess.h"

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
    const bool isValue = Vanto::HasValue(node);
    const std::string value = isValue && GenApi::IsReadable(mode)
                                  ? Answer(device, failures, [&] { return Vanto::ReadText(node); })
                                  : std::string();
    const std::string range = isValue && GenApi::IsWritable(mode)
                                  ? Answer(device, failures, [&] { return Vanto::RangeText(node); })
                                  : std::string();
    return {{indent + node.GetName().str(), GenApi::IsAvailable(mode) ? Style::kPlain : Style::kDim},
            KindText(node),
            AccessText(mode),
            value,
            range};
}

Json ToJson(const OpenDevice& device, GenApi::INode& node, std::size_t& failures) {
    Json json = FeatureJson(node);
    const std::string failure = Answer(device, failures, [&] {
        AddValueAndLimits(node, json);
        return std::string();
    });
    if (!failure.empty())
        json["Error"] = failure.substr(1, failure.size() - 2);
    if (node.GetPrincipalInterfaceType() == GenApi::intfICategory)
        json["Features"] = Json::array();
    return json;
}

/// Shows how far the reading is.
template <class Visit>
void ForEach(Output& output, const OpenDevice& device, const std::vector<TreeNode>& features, Visit visit) {
    Progress progress(output, "Reading the features of " + device.Name());
    for (std::size_t index = 0; index < features.size(); ++index) {
        progress.SetPart(index, features.size());
        visit(features[index]);
    }
}

}  // namespace

/**
 * \brief Print a line for each feature: kind, access, value, and what it takes
 * \param[in] tree With a line for each category, its features indented below it
 */
std::size_t PrintFeatures(Output& output, const OpenDevice& device, const std::vector<TreeNode>& features, bool tree) {
    std::size_t failures = 0;
    Table table({KeyColumn("Feature"), {"Kind"}, {"Access"}, {"Value"}, {"Range, entries, unit"}});
    ForEach(output, device, features, [&](const TreeNode& one) {
        if (tree || one.node->GetPrincipalInterfaceType() != GenApi::intfICategory)
            table.AddRow(Row(device, *one.node, std::string(tree ? 2 * one.depth : 0, ' '), failures));
    });
    table.PrintTo(output);
    return failures;
}

/// Prints an array of the features below the root; a category has its own in "Features".
std::size_t PrintFeaturesAsJson(Output& output, const OpenDevice& device, const std::vector<TreeNode>& features) {
    std::size_t failures = 0;
    Json json = Json::array();
    ForEach(output, device, features, [&](const TreeNode& one) {
        Json* place = &json;
        for (std::size_t level = 0; level < one.depth; ++level)
            place = &place->back()["Features"];
        place->push_back(ToJson(device, *one.node, failures));
    });
    output.Line(ToText(json));
    return failures;
}

}  // namespace tools
