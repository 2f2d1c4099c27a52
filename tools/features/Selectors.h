/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Selectors: features that choose what other features are about
 */
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "GenApi/GenApi.h"
#include "base/SettingsFile.h"

namespace tools {

using base::SelectorState;
using base::Setting;

/// The selectors of a feature, outer ones first; only those that can be moved.
std::vector<GenApi::INode*> SelectorsOf(GenApi::INode& feature);

/// Moves selectors and puts them back at the end. Thread-bound; the node map must outlive it.
class Selectors {
public:
    explicit Selectors(GenApi::INodeMap& nodes) : m_nodes(nodes) {}
    ~Selectors();
    Selectors(const Selectors&) = delete;
    Selectors& operator=(const Selectors&) = delete;

    void Move(const SelectorState& state);
    void ForEach(const std::vector<GenApi::INode*>& selectors, const std::function<void(const SelectorState&)>& visit);
    /// Puts all back; throws when the camera refuses.
    void PutBack();

private:
    void Move(GenApi::INode& selector, const std::string& text);
    void Visit(const std::vector<GenApi::INode*>& selectors, SelectorState& state,
               const std::function<void(const SelectorState&)>& visit);

    GenApi::INodeMap& m_nodes;
    std::vector<std::pair<GenApi::INode*, std::string>> m_before;
};

}  // namespace tools
