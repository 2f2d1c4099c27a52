/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The words of a camera's features, kept so that the completion of shells need not ask the camera
 */
#pragma once

#include <string>
#include <vector>

#include "GenApi/GenApi.h"

namespace tools {

/// What can be typed of one feature.
struct FeatureWords {
    std::string name;
    bool isCommand = false;
    std::vector<std::string> entries;  ///< of an enumeration, or on and off
};

/// Keeps the words of a camera's features, unless those of the same description are there. Fails in silence: nothing
/// but the completion misses them.
void KeepFeatureWords(GenApi::INodeMap& nodes, const std::string& deviceId) noexcept;
/// The words that were kept; none for a camera that was never opened.
std::vector<FeatureWords> LoadFeatureWords(const std::string& deviceId);
/// Removes the words of all cameras.
void ForgetFeatureWords() noexcept;

}  // namespace tools
