/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features that a user asks for
 */
#pragma once

#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace tools {

/// A category or feature of the tree; depth counts from 0 below the root.
struct TreeNode {
    GenApi::INode* node;
    std::size_t depth;
    const GenApi::INode* category;  ///< that it lies in; null below the root
};

/// The categories and features that a user of a level sees, in the order of the description. With a pattern only the
/// features that fit it, and the categories on the way to them. Throws ToolError when nothing fits.
std::vector<TreeNode> SelectFeatures(GenApi::INodeMap& nodes, GenApi::EVisibility visibility,
                                     const std::string& pattern);

/// Whether a text is like "Trigger*", where * stands for any letters and ? for one; case counts nothing.
bool MatchesGlob(std::string_view text, std::string_view pattern);

}  // namespace tools
