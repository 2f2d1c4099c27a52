/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Selectors: features that choose what other features are about
 */
#include "features/Selectors.h"

#include <algorithm>

namespace tools {

namespace {

void AddSelectors(GenApi::INode& feature, std::vector<GenApi::INode*>& selectors) {
    GenApi::FeatureList_t selecting;
    if (const GenApi::CSelectorPtr selector(&feature); selector.IsValid())
        selector->GetSelectingFeatures(selecting);
    for (GenApi::IValue* value : selecting) {
        GenApi::INode* node = value->GetNode();
        // A selector that selects itself, directly or through others, is there already.
        if (std::find(selectors.begin(), selectors.end(), node) != selectors.end() ||
            node->GetAccessMode() != GenApi::RW)
            continue;
        selectors.push_back(node);
        AddSelectors(*node, selectors);
    }
}

}  // namespace

std::vector<GenApi::INode*> SelectorsOf(GenApi::INode& feature) {
    std::vector<GenApi::INode*> selectors{&feature};
    AddSelectors(feature, selectors);
    selectors.erase(selectors.begin());
    std::reverse(selectors.begin(), selectors.end());
    return selectors;
}

}  // namespace tools
