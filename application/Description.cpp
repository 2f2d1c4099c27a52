/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a camera description in a file says, without a camera
 */
#include "vanto/Description.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "Base/GCException.h"
#include "GenApi/GenApi.h"
#include "values/FeatureValueAccess.h"

namespace Vanto {

namespace {

std::vector<std::string> SelectorsOf(GenApi::INode& node) {
    std::vector<std::string> names;
    GenApi::FeatureList_t selecting;
    if (const GenApi::CSelectorPtr selector(&node); selector.IsValid())
        selector->GetSelectingFeatures(selecting);
    for (GenApi::IValue* feature : selecting)
        names.push_back(feature->GetNode()->GetName().str());
    return names;
}

std::vector<std::pair<std::string, std::int64_t>> EntriesOf(GenApi::INode& node) {
    std::vector<std::pair<std::string, std::int64_t>> entries;
    GenApi::NodeList_t nodes;
    if (const GenApi::CEnumerationPtr enumeration(&node); enumeration.IsValid())
        enumeration->GetEntries(nodes);
    for (GenApi::INode* entryNode : nodes) {
        const GenApi::CEnumEntryPtr entry(entryNode);
        entries.emplace_back(entry->GetSymbolic().str(), entry->GetValue());
    }
    return entries;
}

DescribedFeature FeatureOf(GenApi::INode& node, const std::string& category) {
    return {node.GetName().str(),
            KindOf(node),
            category,
            node.GetDisplayName().str(),
            node.GetToolTip().str(),
            node.GetDescription().str(),
            UnitOf(node),
            static_cast<FeatureVisibility>(std::clamp<int>(node.GetVisibility(), 0, 3)),
            SelectorsOf(node),
            EntriesOf(node)};
}

/// Collects the features below categories, each once: descriptions hold circles.
class Collection {
public:
    explicit Collection(const GenApi::CNodeMapRef& map) : m_map(map) {}

    std::vector<DescribedFeature> features;

    // The category itself would leave out what is not there without a camera.
    void Below(GenApi::INode* category, const std::string& path) {
        GenICam::gcstring names;
        GenICam::gcstring attribute;
        if (category == nullptr || !m_seen.insert(category).second ||
            !category->GetProperty("pFeature", names, attribute))
            return;
        std::istringstream words(names.str());
        for (std::string name; std::getline(words, name, '\t');)
            if (GenApi::INode* const child = m_map._GetNode(name))
                Take(*child, path);
    }

private:
    void Take(GenApi::INode& node, const std::string& path) {
        if (node.GetPrincipalInterfaceType() == GenApi::intfICategory)
            Below(&node, path.empty() ? node.GetName().str() : path + "/" + node.GetName().str());
        else if (m_seen.insert(&node).second)
            features.push_back(FeatureOf(node, path));
    }

    const GenApi::CNodeMapRef& m_map;
    std::set<GenApi::INode*> m_seen;
};

}  // namespace

/**
 * \brief What a camera description says, read without a camera
 *
 * Features that only some of its cameras have are all among them.
 *
 * \param[in] path An XML file, or a ZIP file that holds one
 * \throw CameraError The file can't be read, or is no description
 */
Description DescribeFile(const std::string& path) {
    try {
        GenApi::CNodeMapRef map;
        map._LoadXMLFromFile(path);
        Description description{map._GetVendorName().str(), map._GetModelName().str(), map._GetToolTip().str(), {}, {}};
        Collection collection(map);
        collection.Below(map._GetNode("Root"), std::string());
        description.features = std::move(collection.features);
        for (const GenApi::Warning& warning : map._GetWarnings())
            description.warnings.push_back(fmt::format("line {}: {}", warning.Line, warning.Message.str()));
        return description;
    } catch (const GenICam::GenericException& error) {
        throw CameraError(fmt::format("'{}' can't be described: {}", path, error.GetDescription()));
    }
}

}  // namespace Vanto
