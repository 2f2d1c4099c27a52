/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's streamable features: collected, and set again
 */
#include "features/StreamableSettings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "Base/GCException.h"
#include "base/ValueText.h"
#include "error/ExitCode.h"
#include "features/FeatureInput.h"
#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "features/Selectors.h"
#include "output/Text.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

/// Features with the same selectors.
struct Group {
    std::vector<GenApi::INode*> selectors;
    std::vector<GenApi::INode*> features;
};

std::vector<Group> GroupsOf(GenApi::INodeMap& nodes) {
    std::vector<Group> groups{{}};
    for (GenApi::INode* feature : AllFeatures(nodes)) {
        if (!feature->IsStreamable() || !HasValue(*feature))
            continue;
        const std::vector<GenApi::INode*> selectors = SelectorsOf(*feature);
        const auto known = std::find_if(groups.begin(), groups.end(),
                                        [&](const Group& group) { return group.selectors == selectors; });
        if (known != groups.end())
            known->features.push_back(feature);
        else
            groups.push_back({selectors, {feature}});
    }
    return groups;
}

/// Whether a feature holds a value, to a thousandth where cameras round.
bool Holds(GenApi::INode& node, const std::string& text) {
    constexpr double kRounding = 1e-3;
    const std::string present = ValueText(node);
    if (node.GetPrincipalInterfaceType() == GenApi::intfIEnumeration ||
        node.GetPrincipalInterfaceType() == GenApi::intfIString)
        return EqualsIgnoringCase(present, text);
    if (const auto wanted = base::SwitchFromText(text); GenApi::CBooleanPtr(&node).IsValid())
        return wanted == base::SwitchFromText(present);
    const auto is = base::NumberFromText(present, {});
    const auto wanted = base::NumberFromText(text, {});
    const double tolerance = node.GetPrincipalInterfaceType() == GenApi::intfIFloat ? kRounding : 0.0;
    return is && wanted ? std::abs(*is - *wanted) <= tolerance * std::max(std::abs(*is), std::abs(*wanted))
                        : EqualsIgnoringCase(present, text);
}

/// Runs something that cameras may refuse; returns why they did. The user's wish to end is no refusal.
template <class Action>
std::optional<std::string> WhyRefused(Action action) {
    ThrowIfInterrupted();
    try {
        action();
        return std::nullopt;
    } catch (const ToolError& error) {
        return error.Hint().empty() ? error.what() : fmt::format("{} ({})", error.what(), error.Hint());
    } catch (const GenICam::GenericException& error) {
        return error.GetDescription();
    }
}

/// Sets settings, moving the selectors as each wants them.
class Loader {
public:
    Loader(GenApi::INodeMap& nodes, std::function<void()> step)
        : m_nodes(nodes), m_selectors(nodes), m_step(std::move(step)) {}

    /// Returns those that were refused. One that others forbid as yet gets its chance when those have been set.
    std::vector<Refusal> Set(std::vector<Setting> settings) {
        std::vector<Refusal> refusals;
        for (std::size_t before = settings.size() + 1; !settings.empty() && settings.size() < before;) {
            before = settings.size();
            refusals.clear();
            for (const Setting& setting : settings)
                if (const auto reason = WhyRefused([&] { Set(setting); }))
                    refusals.push_back({setting, *reason});
            settings.clear();
            for (const Refusal& refusal : refusals)
                settings.push_back(refusal.setting);
        }
        return refusals;
    }

    /// The settings that the camera does not hold.
    std::vector<Refusal> NotHeld(const std::vector<Setting>& settings) {
        std::vector<Refusal> refusals;
        for (const Setting& setting : settings)
            if (const auto reason = WhyRefused([&] { Verify(setting); }))
                refusals.push_back({setting, *reason});
        return refusals;
    }

    void Finish() { m_selectors.PutBack(); }

private:
    void Set(const Setting& setting) {
        m_step();
        m_selectors.Move(setting.selectors);
        GenApi::INode& node = FindFeature(m_nodes, setting.name);
        if (!HasValue(node))
            CheckWritable(node);
        // What holds its value may be locked, as long as it stays so.
        if (!GenApi::IsWritable(node.GetAccessMode()) && GenApi::IsReadable(node.GetAccessMode()) &&
            Holds(node, setting.text))
            return;
        CheckWritable(node);
        CheckRange(node, setting.text);
        SetText(node, setting.text);
    }

    void Verify(const Setting& setting) {
        m_step();
        m_selectors.Move(setting.selectors);
        GenApi::INode& node = FindFeature(m_nodes, setting.name);
        if (GenApi::IsReadable(node.GetAccessMode()) && !Holds(node, setting.text))
            throw ToolError(fmt::format("{} was set and is {} now", setting.name, Printable(ValueText(node))));
    }

    GenApi::INodeMap& m_nodes;
    Selectors m_selectors;
    std::function<void()> m_step;
};

std::vector<Setting> SettingsOf(const std::vector<Refusal>& refusals) {
    std::vector<Setting> settings;
    for (const Refusal& refusal : refusals)
        settings.push_back(refusal.setting);
    return settings;
}

}  // namespace

/**
 * \brief The values of all streamable features that can be set at present
 *
 * A feature with selectors is read for each of their values. The selectors stand as before when this returns.
 *
 * \param[out] failures Features that could not be read, each with the reason
 * \throw ToolError A selector has too many values, or the user asked to end
 * \throw GenericException A selector can't be moved
 */
std::vector<Setting> CollectSettings(GenApi::INodeMap& nodes, std::vector<std::string>& failures) {
    std::vector<Setting> settings;
    Selectors selectors(nodes);
    for (const Group& group : GroupsOf(nodes)) {
        selectors.ForEach(group.selectors, [&](const SelectorState& state) {
            for (GenApi::INode* feature : group.features) {
                const std::string name = feature->GetName().str();
                const auto reason = WhyRefused([&] {
                    if (feature->GetAccessMode() == GenApi::RW)
                        settings.push_back({name, ValueText(*feature), state});
                });
                if (reason)
                    failures.push_back(fmt::format("{}: {}", name, *reason));
            }
        });
    }
    selectors.PutBack();
    return settings;
}

/**
 * \brief Set settings, whatever the order in which the camera wants them
 *
 * Refused ones are tried again as long as that helps; at the end each is read back, and those that others changed
 * meanwhile are set once more. Selectors stand as before when this returns.
 *
 * \param[in] progress Told how far it is
 * \return What the camera does not hold, with the reason
 * \throw ToolError The user asked to end
 */
std::vector<Refusal> ApplySettings(GenApi::INodeMap& nodes, const std::vector<Setting>& settings,
                                   const std::function<void(std::size_t done, std::size_t all)>& progress) {
    // Each is set, read back, and read back once more.
    Loader loader(nodes, [&, done = std::size_t{0}]() mutable { progress(++done, 3 * settings.size()); });
    const auto isAmong = [](const std::vector<Refusal>& refusals, const Setting& setting) {
        return std::any_of(refusals.begin(), refusals.end(), [&](const Refusal& refusal) {
            return refusal.setting.line == setting.line && refusal.setting.name == setting.name;
        });
    };
    std::vector<Refusal> refusals = loader.Set(settings);
    std::vector<Setting> taken;
    std::copy_if(settings.begin(), settings.end(), std::back_inserter(taken),
                 [&](const Setting& setting) { return !isAmong(refusals, setting); });
    std::vector<Refusal> lost = loader.Set(SettingsOf(loader.NotHeld(taken)));
    for (const Refusal& refusal : loader.NotHeld(taken))
        if (!isAmong(lost, refusal.setting))
            lost.push_back(refusal);
    loader.Finish();
    refusals.insert(refusals.end(), lost.begin(), lost.end());
    return refusals;
}

}  // namespace tools
