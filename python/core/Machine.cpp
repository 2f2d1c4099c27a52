/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What can be told without a camera: ports of the machine, descriptions in files
 */
#include <pybind11/pybind11.h>

#include <vector>

#include "Bindings.h"
#include "CLProtocol/Diagnostics.h"
#include "Interruptible.h"
#include "Values.h"
#include "vanto/Description.h"

namespace python {

namespace {

/// As CLProtocol names it; libraries that tell no maker have no other name in front.
std::string NameOf(const CLProtocol::LibraryReport& library, const GenICam::gcstring& port) {
    return library.maker.empty() ? port.str() : library.maker.str() + "#" + port.str();
}

/// (port, file of the serial library, its maker) of each
py::list Ports() {
    py::list list;
    for (const CLProtocol::LibraryReport& library : Interruptible(CLProtocol::GetSerialLibraries))
        for (const GenICam::gcstring& port : library.offers)
            list.append(py::make_tuple(ToPython(NameOf(library, port)), ToPython(library.path.str()),
                                       ToPython(library.maker.str())));
    return list;
}

template <class Items, class Convert>
py::list ListOf(const Items& items, Convert convert) {
    py::list list;
    for (const auto& item : items)
        list.append(convert(item));
    return list;
}

py::str Text(const std::string& text) {
    return ToPython(text);
}

py::tuple FeatureOf(const Vanto::DescribedFeature& feature) {
    return py::make_tuple(
        ToPython(feature.name), static_cast<int>(feature.kind), ToPython(feature.category),
        ToPython(feature.displayName), ToPython(feature.toolTip), ToPython(feature.description), ToPython(feature.unit),
        static_cast<int>(feature.visibility), ListOf(feature.selectors, Text),
        ListOf(feature.entries, [](const auto& entry) { return py::make_tuple(ToPython(entry.first), entry.second); }));
}

/// (vendor, model, tool tip, features, warnings)
py::tuple Describe(const py::str& path) {
    const Vanto::Description description = Interruptible([text = ToText(path)] { return Vanto::DescribeFile(text); });
    return py::make_tuple(ToPython(description.vendor), ToPython(description.model), ToPython(description.toolTip),
                          ListOf(description.features, FeatureOf), ListOf(description.warnings, Text));
}

}  // namespace

void BindMachine(py::module_& module) {
    module.def("ports", Ports);
    module.def("describe", Describe, py::arg("path"));
}

}  // namespace python
