/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Features and their maps for Python
 */
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <chrono>

#include "Bindings.h"
#include "Callback.h"
#include "Values.h"

namespace python {

namespace {

using Vanto::Feature;
using Vanto::FeatureMap;

template <class Enumeration>
auto Numbered(Enumeration (Feature::*operation)() const) {
    return [operation](const Feature& feature) {
        return static_cast<int>(WithoutGil([&] { return (feature.*operation)(); }));
    };
}

void SetValue(const Feature& feature, const py::object& object) {
    const Vanto::FeatureValue value = ToValue(object);
    WithoutGil([&] { feature.SetValue(value); });
}

void Execute(const Feature& feature, double timeout) {
    WithoutGil([&] { feature.Execute(ToMilliseconds(timeout)); });
}

Vanto::Subscription OnChange(const Feature& feature, const py::function& function) {
    return WithoutGil([&feature, callback = Callback(function)] {
        return feature.OnChange([callback](const Feature&) { callback(); });
    });
}

py::list Names(const FeatureMap& map, int most) {
    py::list names;
    for (const std::string& name : WithoutGil([&] { return map.Names(static_cast<Vanto::FeatureVisibility>(most)); }))
        names.append(ToPython(name));
    return names;
}

void BindFeature(py::module_& module) {
    py::class_<Feature, Holder<Feature>>(module, "Feature", "A feature of a node map.")
        .def("name", Giving(&Feature::Name))
        .def("kind", Numbered(&Feature::Kind))
        .def("display_name", Giving(&Feature::DisplayName))
        .def("tool_tip", Giving(&Feature::ToolTip))
        .def("description", Giving(&Feature::Description))
        .def("visibility", Numbered(&Feature::Visibility))
        .def("unit", Giving(&Feature::Unit))
        .def("is_streamable", &Feature::IsStreamable, Released())
        .def("selectors", &Feature::Selectors, Released())
        .def("selected", &Feature::Selected, Released())
        .def("access", Numbered(&Feature::Access))
        .def("range", Giving(&Feature::Range))
        .def("entries", Giving(&Feature::Entries))
        .def("allowed", Giving(&Feature::Allowed))
        .def("value", Giving(&Feature::Value))
        .def("text", Giving(&Feature::Text))
        .def("set_value", SetValue, py::arg("value"))
        .def("refresh", &Feature::Refresh, Released())
        .def("execute", Execute, py::arg("timeout"))
        .def("start", &Feature::Start, Released())
        .def("is_done", &Feature::IsDone, Released())
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
    py::class_<Vanto::Subscription, Holder<Vanto::Subscription>>(module, "Subscription", "A registered callback.")
        .def("cancel", &Vanto::Subscription::Cancel, Released())
        .def("is_active", &Vanto::Subscription::IsActive);
    BindFeature(module);
    py::class_<FeatureMap, Holder<FeatureMap>>(module, "FeatureMap", "The features of a node map.")
        .def(
            "find",
            [](const FeatureMap& map, const py::str& name) {
                return WithoutGil([&, text = ToText(name)] { return map.Find(text); });
            },
            py::arg("name"))
        .def(
            "get",
            [](const FeatureMap& map, const py::str& name) {
                return WithoutGil([&, text = ToText(name)] { return map[text]; });
            },
            py::arg("name"))
        .def("names", Names, py::arg("most"))
        .def("refresh", &FeatureMap::Refresh, Released());
}

}  // namespace python
