/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SelectorMoves: moves selectors about, and puts them back
 */
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/SettingsFile.h"
#include "vanto/FeatureMap.h"

namespace Vanto {

using base::SelectorState;

/// Moves selectors and puts them back at the end. Thread-bound.
class SelectorMoves {
public:
    explicit SelectorMoves(const FeatureMap& features) : m_features(features) {}
    ~SelectorMoves();
    SelectorMoves(const SelectorMoves&) = delete;
    SelectorMoves& operator=(const SelectorMoves&) = delete;

    static std::vector<Feature> SelectorsOf(const Feature& feature);
    void Move(const SelectorState& state);
    void ForEach(const std::vector<Feature>& selectors, const std::function<void(const SelectorState&)>& visit);
    void PutBack();

private:
    void Move(const Feature& selector, const std::string& text);
    void Visit(const std::vector<Feature>& selectors, SelectorState& state,
               const std::function<void(const SelectorState&)>& visit);

    const FeatureMap& m_features;
    std::vector<std::pair<Feature, std::string>> m_before;
};

}  // namespace Vanto
