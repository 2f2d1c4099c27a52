/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera's streamable features: collected, and set again
 */
#include "Settings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "SelectorMoves.h"
#include "base/Text.h"
#include "base/ValueText.h"
#include "values/FeatureValueAccess.h"

namespace Vanto {

namespace {

std::vector<std::string> NamesOf(const std::vector<Feature>& features) {
    std::vector<std::string> names;
    for (const Feature& feature : features)
        names.push_back(feature.Name());
    return names;
}

/// Features with the same selectors.
struct Group {
    std::vector<Feature> selectors;
    std::vector<std::string> names;  ///< of the selectors
    std::vector<Feature> features;
};

std::vector<Group> GroupsOf(const FeatureMap& map) {
    std::vector<Group> groups(1);
    for (const Feature& feature : map.List()) {
        if (!feature.IsStreamable() || !HasValue(feature.Kind()))
            continue;
        std::vector<Feature> selectors = SelectorMoves::SelectorsOf(feature);
        std::vector<std::string> names = NamesOf(selectors);
        const auto known =
            std::find_if(groups.begin(), groups.end(), [&](const Group& group) { return group.names == names; });
        if (known != groups.end())
            known->features.push_back(feature);
        else
            groups.push_back({std::move(selectors), std::move(names), {feature}});
    }
    return groups;
}

/// Whether a feature holds a value, to a thousandth where cameras round.
bool Holds(const Feature& feature, const std::string& text) {
    constexpr double kRounding = 1e-3;
    const std::string present = feature.Text();
    if (feature.Kind() == FeatureKind::kBoolean)
        return base::SwitchFromText(text) == base::SwitchFromText(present);
    if (feature.Kind() == FeatureKind::kInteger)
        return base::IntegerFromText(present, feature.Unit()) == base::IntegerFromText(text, feature.Unit());
    const auto is = base::NumberFromText(present, feature.Unit());
    const auto wanted = base::NumberFromText(text, feature.Unit());
    if (feature.Kind() != FeatureKind::kFloat || !is || !wanted)
        return base::EqualsIgnoringCase(present, text);
    return std::abs(*is - *wanted) <= kRounding * std::max(std::abs(*is), std::abs(*wanted));
}

/// Runs something that cameras may refuse; returns why they did. That a camera is gone is no refusal.
template <class Action>
std::optional<std::string> WhyRefused(Action action) {
    try {
        action();
        return std::nullopt;
    } catch (const CameraGone&) {
        throw;
    } catch (const CameraClosed&) {
        throw;
    } catch (const CameraError& error) {
        return error.what();
    }
}

/// A setting that was not taken, and why.
struct Refusal {
    const Setting* setting;
    std::string reason;
};

/// Sets settings, moving the selectors as each wants them.
class Loader {
public:
    Loader(const FeatureMap& features, const Pause& pause)
        : m_features(features), m_pause(pause), m_selectors(features) {}

    /// Returns those that were refused. One that others forbid as yet gets its chance when those have been set.
    std::vector<Refusal> Set(std::vector<const Setting*> settings) {
        std::vector<Refusal> refusals;
        for (std::size_t before = settings.size() + 1; !settings.empty() && settings.size() < before;) {
            before = settings.size();
            refusals = Refused(settings, [this](const Setting& setting) { SetOne(setting); });
            settings.clear();
            for (const Refusal& refusal : refusals)
                settings.push_back(refusal.setting);
        }
        return refusals;
    }

    /// The settings that the camera does not hold.
    std::vector<Refusal> NotHeld(const std::vector<const Setting*>& settings) {
        return Refused(settings, [this](const Setting& setting) { Verify(setting); });
    }

    void Finish() { m_selectors.PutBack(); }

private:
    template <class Action>
    std::vector<Refusal> Refused(const std::vector<const Setting*>& settings, Action action) {
        std::vector<Refusal> refusals;
        for (const Setting* setting : settings) {
            m_pause();
            if (const auto reason = WhyRefused([&] { action(*setting); }))
                refusals.push_back({setting, *reason});
        }
        return refusals;
    }

    void SetOne(const Setting& setting) {
        m_selectors.Move(setting.selectors);
        const Feature feature = m_features[setting.name];
        // What holds its value may be locked, as long as it stays so.
        if (HasValue(feature.Kind()) && feature.Access() == FeatureAccess::kReadOnly && Holds(feature, setting.text))
            return;
        feature.Set(setting.text);
    }

    void Verify(const Setting& setting) {
        m_selectors.Move(setting.selectors);
        const Feature feature = m_features[setting.name];
        if (feature.IsReadable() && !Holds(feature, setting.text))
            throw FeatureError(fmt::format("{} was set and is {} now", setting.name, feature.Text()), "", setting.name);
    }

    const FeatureMap& m_features;
    const Pause& m_pause;
    SelectorMoves m_selectors;
};

bool IsAmong(const std::vector<Refusal>& refusals, const Setting* setting) {
    return std::any_of(refusals.begin(), refusals.end(),
                       [&](const Refusal& refusal) { return refusal.setting == setting; });
}

std::vector<const Setting*> SettingsOf(const std::vector<Refusal>& refusals) {
    std::vector<const Setting*> settings;
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
 * \param[out] faults Features that can't be read
 */
std::vector<Setting> CollectSettings(const FeatureMap& features, const Pause& pause,
                                     std::vector<SettingFault>& faults) {
    std::vector<Setting> settings;
    SelectorMoves selectors(features);
    for (const Group& group : GroupsOf(features)) {
        const auto collect = [&](const SelectorState& state) {
            for (const Feature& feature : group.features) {
                pause();
                const auto reason = WhyRefused([&] {
                    if (feature.Access() == FeatureAccess::kReadWrite)
                        settings.push_back({feature.Name(), feature.Text(), state, 0});
                });
                if (reason)
                    faults.push_back({feature.Name(), base::SelectorText(state), *reason, 0});
            }
        };
        if (const auto reason = WhyRefused([&] { selectors.ForEach(group.selectors, collect); }))
            faults.push_back({group.features.front().Name(), {}, *reason, 0});
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
 * \return What the camera does not hold, with the reason
 */
std::vector<SettingFault> ApplySettings(const FeatureMap& features, const Pause& pause,
                                        const std::vector<Setting>& settings) {
    Loader loader(features, pause);
    std::vector<const Setting*> all;
    for (const Setting& setting : settings)
        all.push_back(&setting);
    std::vector<Refusal> refusals = loader.Set(all);
    std::vector<const Setting*> taken;
    std::copy_if(all.begin(), all.end(), std::back_inserter(taken),
                 [&](const Setting* setting) { return !IsAmong(refusals, setting); });
    std::vector<Refusal> lost = loader.Set(SettingsOf(loader.NotHeld(taken)));
    for (const Refusal& refusal : loader.NotHeld(taken))
        if (!IsAmong(lost, refusal.setting))
            lost.push_back(refusal);
    loader.Finish();
    refusals.insert(refusals.end(), lost.begin(), lost.end());
    std::vector<SettingFault> faults;
    for (const Refusal& refusal : refusals)
        faults.push_back({refusal.setting->name, base::SelectorText(refusal.setting->selectors), refusal.reason,
                          refusal.setting->line});
    return faults;
}

}  // namespace Vanto
