/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The list of the cameras' features in docs/simulator.md is what the cameras have
 */

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "FirmwarePort.h"
#include "GenApi/GenApi.h"

namespace MarlowSim {
namespace {

constexpr std::array<const char*, 3> kModels{"H2048", "H4096", "H8192L"};

std::string RangeOf(GenApi::INode& node) {
    if (const GenApi::CIntegerPtr number(&node); number.IsValid())
        return fmt::format("{} .. {}{}", number->GetMin(), number->GetMax(),
                           number->GetInc() == 1 ? "" : fmt::format(" step {}", number->GetInc()));
    if (const GenApi::CFloatPtr number(&node); number.IsValid())
        return fmt::format("{:g} .. {:g}{}{}", number->GetMin(), number->GetMax(), number->GetUnit().empty() ? "" : " ",
                           number->GetUnit().c_str());
    std::string entries;
    if (const GenApi::CEnumerationPtr choice(&node); choice.IsValid()) {
        GenApi::StringList_t names;
        choice->GetSymbolics(names);
        for (const GenICam::gcstring& name : names)
            entries += (entries.empty() ? "" : " ") + name.str();
    }
    return entries;
}

/// What the list says of a feature: what it takes, or that it only tells.
std::string CellOf(GenApi::INode& node) {
    switch (node.GetPrincipalInterfaceType()) {
        case GenApi::intfICommand:
            return "command";
        case GenApi::intfIBoolean:
            return GenApi::IsWritable(&node) ? "0, 1" : "tells";
        case GenApi::intfIString:
            return GenApi::IsWritable(&node) ? "text" : "tells";
        default:
            return GenApi::IsWritable(&node) ? RangeOf(node) : "tells";
    }
}

/// The features of a camera that was just switched on, each with its cell.
std::vector<std::pair<std::string, std::string>> FeaturesOf(const char* model) {
    CameraOptions options;
    options.model = model;
    FirmwarePort port(options);
    GenApi::CNodeMapRef map;
    map._LoadXMLFromString(DescriptionText(FindModel(model), options).c_str());
    map._Connect(&port);
    GenApi::NodeList_t nodes;
    map._GetNodes(nodes);
    std::vector<std::pair<std::string, std::string>> features;
    for (GenApi::INode* node : nodes)
        if (node->IsFeature() && node->GetPrincipalInterfaceType() != GenApi::intfICategory)
            features.emplace_back(node->GetName().str(), CellOf(*node));
    return features;
}

/// A line for each feature, in alphabetical order. A cell that is that of the model to the left is empty.
std::vector<std::string> ExpectedRows() {
    std::map<std::string, std::array<std::string, kModels.size()>> table;
    for (std::size_t model = 0; model < kModels.size(); ++model)
        for (const auto& [name, cell] : FeaturesOf(kModels[model]))
            table[name][model] = cell;
    std::vector<std::string> rows;
    for (auto& [name, cells] : table) {
        std::string row = fmt::format("| `{}` |", name);
        for (std::size_t model = 0; model < kModels.size(); ++model) {
            const std::string cell = cells[model].empty() ? "none" : cells[model];
            const bool same = model > 0 && cells[model] == cells[model - 1];
            row += same ? " |" : fmt::format(" {} |", cell);
        }
        rows.push_back(row);
    }
    return rows;
}

/// The lines of the page that begin as those of the list.
std::vector<std::string> RowsOfThePage() {
    std::ifstream page(VANTO_SOURCE_DIR "/docs/simulator.md");
    std::vector<std::string> rows;
    bool inList = false;
    for (std::string line; std::getline(page, line);) {
        inList = line.starts_with("| feature |") || (inList && !line.empty());
        if (inList && line.starts_with("| `"))
            rows.push_back(line);
    }
    return rows;
}

TEST(FeatureList, OfThePageIsThatOfTheCameras) {
    std::vector<std::string> page = RowsOfThePage();
    for (const std::string& row : ExpectedRows()) {
        const auto found = std::find(page.begin(), page.end(), row);
        EXPECT_NE(found, page.end()) << "docs/simulator.md lacks\n" << row;
        if (found != page.end())
            page.erase(found);
    }
    for (const std::string& row : page)
        ADD_FAILURE() << "docs/simulator.md says of no feature\n" << row;
}

}  // namespace
}  // namespace MarlowSim
