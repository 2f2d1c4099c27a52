/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Selectors: features that choose what other features are about
 */
#include "features/Selectors.h"

#include <fmt/format.h>

#include <algorithm>

#include "error/ExitCode.h"
#include "features/FeatureInput.h"
#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

constexpr std::size_t kMostValues = 4096;

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

/// The values that a selector can take at present.
std::vector<std::string> ValuesOf(GenApi::INode& selector) {
    std::vector<std::string> values;
    if (const GenApi::CEnumerationPtr enumeration(&selector); enumeration.IsValid()) {
        GenApi::StringList_t symbolics;
        enumeration->GetSymbolics(symbolics);
        for (const GenICam::gcstring& symbolic : symbolics)
            values.push_back(symbolic.str());
    } else if (const GenApi::CIntegerPtr integer(&selector); integer.IsValid()) {
        const auto step = static_cast<std::uint64_t>(std::max<std::int64_t>(integer->GetInc(), 1));
        const std::int64_t least = integer->GetMin();
        const auto count = (static_cast<std::uint64_t>(integer->GetMax()) - static_cast<std::uint64_t>(least)) / step;
        if (count >= kMostValues)
            throw ToolError(fmt::format("selector {} has more than {} values", selector.GetName().str(), kMostValues));
        for (std::uint64_t index = 0; index <= count; ++index)
            values.push_back(std::to_string(least + static_cast<std::int64_t>(index * step)));
    } else if (GenApi::CBooleanPtr(&selector).IsValid()) {
        values = {"false", "true"};
    } else {
        values = {ValueText(selector)};
    }
    return values;
}

}  // namespace

std::vector<GenApi::INode*> SelectorsOf(GenApi::INode& feature) {
    std::vector<GenApi::INode*> selectors{&feature};
    AddSelectors(feature, selectors);
    selectors.erase(selectors.begin());
    std::reverse(selectors.begin(), selectors.end());
    return selectors;
}

Selectors::~Selectors() {
    try {
        PutBack();
    } catch (const std::exception&) {
        // Only after another failure, which is the one to be told; without one, PutBack was called.
    }
}

/// Moves the selectors of a state that stand elsewhere; throws when one is unknown or refuses.
void Selectors::Move(const SelectorState& state) {
    for (const auto& [name, text] : state)
        Move(FindFeature(m_nodes, name), text);
}

void Selectors::Move(GenApi::INode& selector, const std::string& text) {
    const std::string present = ValueText(selector);
    if (present == text)
        return;
    CheckWritable(selector);
    CheckRange(selector, text);
    SetText(selector, text);
    const bool isKnown =
        std::any_of(m_before.begin(), m_before.end(), [&](const auto& before) { return before.first == &selector; });
    if (!isKnown)
        m_before.emplace_back(&selector, present);
}

/// Visits all combinations of values of selectors, the last selector's values fastest.
void Selectors::ForEach(const std::vector<GenApi::INode*>& selectors,
                        const std::function<void(const SelectorState&)>& visit) {
    SelectorState state;
    Visit(selectors, state, visit);
}

void Selectors::Visit(const std::vector<GenApi::INode*>& selectors, SelectorState& state,
                      const std::function<void(const SelectorState&)>& visit) {
    if (state.size() == selectors.size())
        return visit(state);
    GenApi::INode& selector = *selectors[state.size()];
    for (const std::string& value : ValuesOf(selector)) {
        ThrowIfInterrupted();
        Move(selector, value);
        state.emplace_back(selector.GetName().str(), value);
        Visit(selectors, state, visit);
        state.pop_back();
    }
}

void Selectors::PutBack() {
    const auto before = std::exchange(m_before, {});
    for (auto one = before.rbegin(); one != before.rend(); ++one)
        if (ValueText(*one->first) != one->second)
            SetText(*one->first, one->second);
}

}  // namespace tools
