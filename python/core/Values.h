/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of features, texts and records as Python objects, and back
 */
#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Gil.h"
#include "Interruptible.h"
#include "vanto/Camera.h"

namespace python {

py::str ToPython(const std::string& text);
py::object ToPython(const Vanto::FeatureValue& value);
py::object ToPython(const std::optional<Vanto::FeatureRange>& range);
py::list ToPython(const std::vector<Vanto::FeatureEntry>& entries);
py::list ToPython(const std::vector<Vanto::SettingFault>& faults);
py::tuple ToPython(const Vanto::CameraRecord& record);
Vanto::FeatureValue ToValue(const py::handle& object);
std::string ToText(const py::str& text);
Vanto::FeatureBytes ToBytes(const py::handle& object);

/// Binds an operation that gives something ToPython takes, and waits for nobody.
template <class Class, class Result>
auto Giving(Result (Class::*operation)() const) {
    return [operation](const Class& self) { return ToPython(WithoutGil([&] { return (self.*operation)(); })); };
}

/// The same of one that may wait, of something that is a handle.
template <class Class, class Result>
auto WaitingFor(Result (Class::*operation)() const) {
    return [operation](const Class& self) {
        return ToPython(Interruptible([operation, self] { return (self.*operation)(); }));
    };
}

}  // namespace python
