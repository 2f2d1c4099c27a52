/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Features and their maps for Python
 */
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "Bindings.h"
#include "Callback.h"
#include "Holder.h"
#include "Interruptible.h"
#include "Values.h"

namespace python {

namespace {

using Vanto::Feature;
using Vanto::FeatureMap;
using Vanto::Subscription;
using SharedSubscription = std::shared_ptr<Subscription>;

/// An enumerated value as its number.
template <class Enumeration>
auto Numbered(Enumeration (Feature::*operation)() const) {
    return [operation](const Feature& feature) {
        return static_cast<int>(Interruptible([operation, feature] { return (feature.*operation)(); }));
    };
}

/// Programs read features in loops: what is known needs no helper, which takes ten times as long.
py::object Value(const Feature& feature) {
    return ToPython(WithoutGil([&] {
        if (!IsMainThread())
            return feature.Value();
        if (auto known = feature.KnownValue())
            return *std::move(known);
        return ByHelper([feature] { return feature.Value(); });
    }));
}

void SetValue(const Feature& feature, const py::object& object) {
    Interruptible([feature, value = ToValue(object)] { feature.SetValue(value); });
}

void Execute(const Feature& feature, double timeout) {
    Interruptible([feature, limit = ToMilliseconds(timeout)] { feature.Execute(limit); });
}

SharedSubscription OnChange(const Feature& feature, const py::function& function) {
    return Interruptible([feature, callback = Callback(function)] {
        return Shared(feature.OnChange([callback](const Feature&) { callback(); }));
    });
}

/// Taken out of the Python object with the GIL held, so that two threads do not cancel it at once.
void Cancel(Subscription& subscription) {
    const auto taken = std::make_shared<Subscription>(std::move(subscription));
    Interruptible([taken] { taken->Cancel(); });
}

py::list Names(const FeatureMap& map, int most) {
    py::list names;
    for (const std::string& name :
         Interruptible([map, most] { return map.Names(static_cast<Vanto::FeatureVisibility>(most)); }))
        names.append(ToPython(name));
    return names;
}

std::optional<Feature> Find(const FeatureMap& map, const py::str& name) {
    return Interruptible([map, text = ToText(name)] { return map.Find(text); });
}

Feature Get(const FeatureMap& map, const py::str& name) {
    return Interruptible([map, text = ToText(name)] { return map[text]; });
}

void BindFeature(py::module_& module) {
    py::class_<Feature, Holder<Feature>>(module, "Feature", "A feature of a node map.")
        .def("name", Giving(&Feature::Name))
        .def("kind", [](const Feature& feature) { return static_cast<int>(feature.Kind()); })
        .def("display_name", Giving(&Feature::DisplayName))
        .def("tool_tip", Giving(&Feature::ToolTip))
        .def("description", Giving(&Feature::Description))
        .def("visibility", Numbered(&Feature::Visibility))
        .def("unit", WaitingFor(&Feature::Unit))
        .def("is_streamable", &Feature::IsStreamable, Released())
        .def("selectors", Waiting(&Feature::Selectors))
        .def("selected", Waiting(&Feature::Selected))
        .def("access", Numbered(&Feature::Access))
        .def("range", WaitingFor(&Feature::Range))
        .def("entries", WaitingFor(&Feature::Entries))
        .def("allowed", WaitingFor(&Feature::Allowed))
        .def("value", Value)
        .def("text", WaitingFor(&Feature::Text))
        .def("set_value", SetValue, py::arg("value"))
        .def("refresh", Waiting(&Feature::Refresh))
        .def("execute", Execute, py::arg("timeout"))
        .def("start", Waiting(&Feature::Start))
        .def("is_done", Waiting(&Feature::IsDone))
        .def("on_change", OnChange, py::arg("callback"));
}

}  // namespace

/// A time in seconds, as Python has it; none of them lasts for more than years, and none is negative.
std::chrono::milliseconds ToMilliseconds(double seconds) {
    constexpr double kLongest = 1e9;
    if (!(seconds >= 0))
        throw py::value_error("a time is not negative");
    return std::chrono::milliseconds(static_cast<std::int64_t>(std::min(seconds, kLongest) * 1000));
}

void BindFeatures(py::module_& module) {
    py::class_<Subscription, SharedSubscription>(module, "Subscription", "A registered callback.")
        .def("cancel", Cancel)
        .def("is_active", &Subscription::IsActive);
    BindFeature(module);
    py::class_<FeatureMap, Holder<FeatureMap>>(module, "FeatureMap", "The features of a node map.")
        .def("find", Find, py::arg("name"))
        .def("get", Get, py::arg("name"))
        .def("names", Names, py::arg("most"))
        .def("refresh", Waiting(&FeatureMap::Refresh));
}

}  // namespace python
