/* SPDX-License-Identifier: Apache-2.0 */
/*
 * All that is known of one feature
 */
#include "features/FeatureInfo.h"

#include <fmt/format.h>

#include <vector>

#include "features/FeatureFilter.h"
#include "features/FeatureJson.h"
#include "features/Unavailability.h"
#include "output/Output.h"
#include "output/Text.h"
#include "values/FeatureValueAccess.h"

namespace tools {

namespace {

constexpr const char* kIndent = "  ";

std::string CategoryOf(GenApi::INode& node) {
    for (const TreeNode& one : SelectFeatures(*node.GetNodeMap(), GenApi::Invisible, ""))
        if (one.node == &node && one.category != nullptr)
            return one.category->GetName().str();
    return {};
}

Json EntriesOf(GenApi::IEnumeration& enumeration) {
    GenApi::NodeList_t nodes;
    enumeration.GetEntries(nodes);
    Json entries = Json::array();
    for (GenApi::INode* node : nodes) {
        const GenApi::CEnumEntryPtr entry(node);
        if (!entry.IsValid() || node->GetAccessMode() == GenApi::NI)
            continue;
        const std::string description = node->GetDescription().str();
        entries.push_back({{"Name", entry->GetSymbolic().str()},
                           {"Value", entry->GetValue()},
                           {"Available", GenApi::IsAvailable(node->GetAccessMode())},
                           {"DisplayName", node->GetDisplayName().str()},
                           {"Documentation", description.empty() ? node->GetToolTip().str() : description}});
    }
    return entries;
}

Json NamesOf(const GenApi::FeatureList_t& features, bool withValues) {
    Json names = Json::array();
    for (GenApi::IValue* feature : features) {
        GenApi::INode& node = *feature->GetNode();
        const bool isRead = withValues && Vanto::HasValue(node) && GenApi::IsReadable(node.GetAccessMode());
        names.push_back(node.GetName().str() + (isRead ? "=" + Vanto::ReadText(node) : ""));
    }
    return names;
}

void AddSelectors(GenApi::INode& node, Json& info) {
    const GenApi::CSelectorPtr selector(&node);
    if (!selector.IsValid())
        return;
    GenApi::FeatureList_t selecting;
    GenApi::FeatureList_t selected;
    selector->GetSelectingFeatures(selecting);
    selector->GetSelectedFeatures(selected);
    info["SelectedBy"] = NamesOf(selecting, true);
    info["Selects"] = NamesOf(selected, false);
}

/// The registers that a value lies in: the feature itself, or those behind it.
Json RegistersOf(GenApi::INode& node) {
    GenApi::NodeList_t nodes;
    node.GetChildren(nodes, GenApi::ctTerminalNodes);
    if (nodes.empty())
        nodes.push_back(&node);
    Json registers = Json::array();
    for (GenApi::INode* one : nodes)
        if (const GenApi::CRegisterPtr place(one); place.IsValid() && GenApi::IsAvailable(one->GetAccessMode()))
            registers.push_back({{"Name", one->GetName().str()},
                                 {"Address", fmt::format("0x{:X}", place->GetAddress())},
                                 {"Length", place->GetLength()}});
    return registers;
}

/// Asks the camera. Of what it refuses the reason is kept, and the rest is told.
template <class Ask>
void Add(Json& info, Ask ask) {
    try {
        ask();
    } catch (const GenICam::GenericException& error) {
        info["Error"] = error.GetDescription();
    }
}

/// A register's place: "WidthReg: 0x10005C, 4 bytes".
std::string PlaceText(const Json& place) {
    return fmt::format("{}: {}, {} bytes", place.at("Name").text(), place.at("Address").text(),
                       ToLine(place.at("Length")));
}

std::string TextOf(const Json& value) {
    if (value.is_null())
        return {};
    if (value.is_text())
        return value.text();
    if (!value.is_array()) {
        // JSON marks whole numbers as floats; people see them as everywhere else.
        std::string line = ToLine(value);
        return line.ends_with(".0") ? line.substr(0, line.size() - 2) : line;
    }
    std::string text;
    for (const Json& one : value) {
        if (!text.empty())
            text += one.is_text() ? ", " : "; ";
        text += one.is_text() ? one.text() : PlaceText(one);
    }
    return text;
}

void PrintEntries(Output& output, const Json& entries) {
    output.Line(std::string(kIndent) + "Entries");
    for (const Json& entry : entries) {
        const bool isAvailable = ToLine(entry.at("Available")) == "true";
        std::string text = fmt::format("    {} ({})", entry.at("Name").text(), ToLine(entry.at("Value")));
        if (!isAvailable)
            text += ", not available at present";
        if (const std::string& told = entry.at("Documentation").text(); !told.empty())
            text += ": " + told;
        output.Prose(output.Styled(isAvailable ? Style::kPlain : Style::kDim, Printable(text)), "      ");
    }
}

}  // namespace

Json FeatureInfo(GenApi::INode& node) {
    Json info = FeatureJson(node);
    info["Category"] = CategoryOf(node);
    Add(info, [&] { AddValueAndLimits(node, info); });
    if (GenApi::INode* const text = &node; node.GetPrincipalInterfaceType() == GenApi::intfIString)
        Add(info, [&] { info["MaxLength"] = GenApi::CStringPtr(text)->GetMaxLength(); });
    if (node.GetPrincipalInterfaceType() == GenApi::intfIEnumeration)
        Add(info, [&] { info["Entries"] = EntriesOf(*GenApi::CEnumerationPtr(&node)); });
    Add(info, [&] { AddSelectors(node, info); });
    Add(info, [&] { info["Registers"] = RegistersOf(node); });
    if (const auto access = node.GetAccessMode(); access != GenApi::RW)
        info["Restricted"] = WhyRestricted(node);
    if (node.IsDeprecated())
        info["Deprecated"] = true;
    return info;
}

void PrintInfo(Output& output, const Json& info) {
    struct Row {
        const char* member;
        const char* label;
    };
    constexpr Row kRows[] = {{"Value", "Value"},           {"Unit", "Unit"},         {"Min", "At least"},
                             {"Max", "At most"},           {"Inc", "Step"},          {"MaxLength", "At most bytes"},
                             {"Interface", "Kind"},        {"Access", "Access"},     {"Restricted", "Because"},
                             {"Visibility", "Visibility"}, {"Category", "Category"}, {"SelectedBy", "Selected by"},
                             {"Selects", "Selects"},       {"Streamable", "Saved"},  {"Registers", "Registers"},
                             {"Error", "Not read"}};
    constexpr int kLabel = 15;
    const std::string& name = info.at("Name").text();
    const std::string& shown = info.at("DisplayName").text();
    output.Prose(output.Styled(Style::kBold, Printable(name)) + (shown == name ? "" : " (" + Printable(shown) + ")") +
                     (info.contains("Deprecated") ? ", deprecated" : ""),
                 kIndent);
    if (const std::string& told = info.at("Documentation").text(); !told.empty())
        output.Prose(kIndent + PrintableLines(told), kIndent);
    for (const Row& row : kRows) {
        const std::string text = info.contains(row.member) ? TextOf(info.at(row.member)) : std::string();
        if (!text.empty())
            output.Prose(fmt::format("  {:<{}}{}", row.label, kLabel, Printable(text)), std::string(kLabel + 2, ' '));
    }
    if (info.contains("Entries"))
        PrintEntries(output, info.at("Entries"));
}

}  // namespace tools
