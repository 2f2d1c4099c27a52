/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureMap: the features of a camera, of its stream, or of its transport layer
 */
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vanto/Feature.h"

namespace GenApi {
struct INodeMap;
}

namespace Vanto {

/// The features of one node map. A handle, cheap to copy. Thread-safe.
class VANTOAPPLICATION_API FeatureMap {
public:
    /// The feature of this name, as the camera's description spells it; throws UnknownFeature with a similar name.
    Feature operator[](const std::string& name) const;
    std::optional<Feature> Find(const std::string& name) const;
    /// Whether there is a feature of this name.
    bool Contains(const std::string& name) const { return Find(name).has_value(); }
    std::vector<Feature> List(FeatureVisibility most = FeatureVisibility::kInvisible) const;
    std::vector<std::string> Names(FeatureVisibility most = FeatureVisibility::kInvisible) const;
    void Refresh() const;

    /// The node map behind it, for what is not here. It lives as long as this object does.
    GenApi::INodeMap& Nodes() const noexcept { return *m_nodes; }

    FeatureMap(const FeatureMap&) = default;
    FeatureMap& operator=(const FeatureMap&) = default;
    ~FeatureMap();

private:
    friend class Camera;
    FeatureMap(std::shared_ptr<CameraState> camera, GenApi::INodeMap& nodes) noexcept;

    std::shared_ptr<CameraState> m_camera;
    GenApi::INodeMap* m_nodes;
};

}  // namespace Vanto
