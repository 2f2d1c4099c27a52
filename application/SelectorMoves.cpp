/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SelectorMoves: moves selectors about, and puts them back
 */
#include "SelectorMoves.h"

#include <fmt/format.h>

#include <algorithm>

#include "vanto/CameraError.h"

namespace Vanto {

namespace {

constexpr std::uint64_t kMostValues = 4096;

bool Contains(const std::vector<Feature>& features, const std::string& name) {
    return std::any_of(features.begin(), features.end(), [&](const Feature& one) { return one.Name() == name; });
}

void AddSelectors(const Feature& feature, std::vector<Feature>& selectors) {
    for (const Feature& selector : feature.Selectors()) {
        // A selector that selects itself, directly or through others, is there already.
        if (Contains(selectors, selector.Name()) || selector.Access() != FeatureAccess::kReadWrite)
            continue;
        selectors.push_back(selector);
        AddSelectors(selector, selectors);
    }
}

std::vector<std::string> ValuesOfInteger(const Feature& selector) {
    const auto range = selector.Range();
    const std::int64_t least = std::get<std::int64_t>(range->least);
    const std::uint64_t step =
        range->step ? static_cast<std::uint64_t>(std::max<std::int64_t>(std::get<std::int64_t>(*range->step), 1)) : 1;
    const std::uint64_t count =
        (static_cast<std::uint64_t>(std::get<std::int64_t>(range->most)) - static_cast<std::uint64_t>(least)) / step;
    if (count >= kMostValues)
        throw FeatureError(fmt::format("selector {} has more than {} values", selector.Name(), kMostValues), "",
                           selector.Name());
    std::vector<std::string> values;
    for (std::uint64_t index = 0; index <= count; ++index)
        values.push_back(std::to_string(least + static_cast<std::int64_t>(index * step)));
    return values;
}

/// The values that a selector can take at present.
std::vector<std::string> ValuesOf(const Feature& selector) {
    if (selector.Kind() == FeatureKind::kInteger)
        return ValuesOfInteger(selector);
    if (selector.Kind() == FeatureKind::kBoolean)
        return {"false", "true"};
    if (selector.Kind() != FeatureKind::kEnumeration)
        return {selector.Text()};
    std::vector<std::string> values;
    for (const FeatureEntry& entry : selector.Entries())
        if (entry.isAvailable)
            values.push_back(entry.name);
    return values;
}

}  // namespace

SelectorMoves::~SelectorMoves() {
    try {
        PutBack();
    } catch (const std::exception&) {
        // Only after another failure, which is the one to be told; without one, PutBack was called.
    }
}

/// The selectors of a feature, outer ones first.
std::vector<Feature> SelectorMoves::SelectorsOf(const Feature& feature) {
    std::vector<Feature> selectors{feature};
    AddSelectors(feature, selectors);
    selectors.erase(selectors.begin());
    std::reverse(selectors.begin(), selectors.end());
    return selectors;
}

/// Moves the selectors of a state that stand elsewhere; throws when one is unknown or refuses.
void SelectorMoves::Move(const SelectorState& state) {
    for (const auto& [name, text] : state)
        Move(m_features[name], text);
}

void SelectorMoves::Move(const Feature& selector, const std::string& text) {
    const std::string present = selector.Text();
    if (present == text)
        return;
    selector.Set(text);
    const std::string name = selector.Name();
    const bool isKnown =
        std::any_of(m_before.begin(), m_before.end(), [&](const auto& before) { return before.first.Name() == name; });
    if (!isKnown)
        m_before.emplace_back(selector, present);
}

/// Visits all combinations of values of selectors, the last selector's values fastest.
void SelectorMoves::ForEach(const std::vector<Feature>& selectors,
                            const std::function<void(const SelectorState&)>& visit) {
    SelectorState state;
    Visit(selectors, state, visit);
}

void SelectorMoves::Visit(const std::vector<Feature>& selectors, SelectorState& state,
                          const std::function<void(const SelectorState&)>& visit) {
    if (state.size() == selectors.size())
        return visit(state);
    const Feature selector = selectors[state.size()];
    for (const std::string& value : ValuesOf(selector)) {
        Move(selector, value);
        state.emplace_back(selector.Name(), value);
        Visit(selectors, state, visit);
        state.pop_back();
    }
}

void SelectorMoves::PutBack() {
    const auto before = std::exchange(m_before, {});
    for (auto one = before.rbegin(); one != before.rend(); ++one)
        if (one->first.Text() != one->second)
            one->first.Set(one->second);
}

}  // namespace Vanto
