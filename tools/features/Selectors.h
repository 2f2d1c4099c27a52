/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Selectors: features that choose what other features are about
 */
#pragma once

#include <vector>

#include "GenApi/GenApi.h"

namespace tools {

/// The selectors of a feature, outer ones first; only those that can be moved.
std::vector<GenApi::INode*> SelectorsOf(GenApi::INode& feature);

}  // namespace tools
