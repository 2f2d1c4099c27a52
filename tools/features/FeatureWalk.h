/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features of a node map: by name, and one after the other
 */
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace tools {

/// Told of each category and feature; depth counts from 0 below the root.
using FeatureVisit = std::function<void(GenApi::INode& node, std::size_t depth)>;

void WalkFeatures(GenApi::INodeMap& nodes, GenApi::EVisibility visibility, const FeatureVisit& visit);
std::vector<GenApi::INode*> AllFeatures(GenApi::INodeMap& nodes);
GenApi::INode& FindFeature(GenApi::INodeMap& nodes, const std::string& name);
GenApi::EVisibility VisibilityFromWord(const std::string& word);

}  // namespace tools
