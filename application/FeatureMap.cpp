/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureMap: the features of a camera, of its stream, or of its transport layer
 */
#include "vanto/FeatureMap.h"

#include <fmt/format.h>

#include <set>
#include <utility>

#include "Access.h"
#include "GenApi/GenApi.h"
#include "base/Words.h"

namespace Vanto {

namespace {

/// Collects features below categories, each once: descriptions hold circles.
class Walk {
public:
    explicit Walk(GenApi::EVisibility most) : m_most(most) {}

    void Below(GenApi::INode* node) {
        const GenApi::CCategoryPtr category(node);
        if (!category.IsValid())
            return;
        GenApi::FeatureList_t features;
        category->GetFeatures(features);
        for (GenApi::IValue* value : features) {
            GenApi::INode* const feature = value->GetNode();
            if (!GenApi::IsVisible(feature->GetVisibility(), m_most) || !m_seen.insert(feature).second)
                continue;
            if (feature->GetPrincipalInterfaceType() != GenApi::intfICategory)
                found.push_back(feature);
            else
                Below(feature);
        }
    }

    GenApi::NodeList_t found;

private:
    GenApi::EVisibility m_most;
    std::set<GenApi::INode*> m_seen;
};

}  // namespace

FeatureMap::FeatureMap(std::shared_ptr<CameraState> camera, GenApi::INodeMap& nodes) noexcept
    : m_camera(std::move(camera)), m_nodes(&nodes) {}

FeatureMap::~FeatureMap() = default;

Feature FeatureMap::operator[](const std::string& name) const {
    if (auto feature = Find(name))
        return *feature;
    const std::string similar = base::ClosestWord(name, Names());
    throw UnknownFeature(fmt::format("{} has no feature '{}'{}", m_camera->Name(), name,
                                     similar.empty() ? "" : fmt::format("; did you mean '{}'?", similar)),
                         m_camera->Name(), name);
}

/// The feature of a name; nothing when there is none. Nodes that no category leads to are found, too.
std::optional<Feature> FeatureMap::Find(const std::string& name) const {
    return Access(*m_camera, nullptr, [&]() -> std::optional<Feature> {
        GenApi::INode* const node = m_nodes->GetNode(name);
        return node != nullptr ? std::optional(Feature(m_camera, *node)) : std::nullopt;
    });
}

/**
 * \brief The features that are implemented, in the order of the description, without the categories
 * \param[in] most Features above this visibility, and those below such categories, are left out
 */
std::vector<Feature> FeatureMap::List(FeatureVisibility most) const {
    return Access(*m_camera, nullptr, [&] {
        Walk walk(static_cast<GenApi::EVisibility>(most));
        walk.Below(m_nodes->GetNode("Root"));
        std::vector<Feature> features;
        for (GenApi::INode* node : walk.found)
            features.push_back(Feature(m_camera, *node));
        return features;
    });
}

/// The names of List.
std::vector<std::string> FeatureMap::Names(FeatureVisibility most) const {
    std::vector<std::string> names;
    for (const Feature& feature : List(most))
        names.push_back(feature.Name());
    return names;
}

/// Drops what is cached of all features: the next reads ask the camera.
void FeatureMap::Refresh() const {
    Access(*m_camera, nullptr, [&] { m_nodes->InvalidateNodes(); });
}

}  // namespace Vanto
