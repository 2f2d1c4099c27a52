/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Cameras for Python
 */
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>
#include <utility>

#include "Bindings.h"
#include "Callback.h"
#include "Dispatcher.h"
#include "Interruptible.h"
#include "OpenCameras.h"
#include "Values.h"

namespace python {

namespace {

using Vanto::Camera;
using Shared = std::shared_ptr<Camera>;

Shared Opened(const std::optional<std::string>& name) {
    Shared camera(name ? new Camera(*name) : new Camera, LetGo());
    camera->SetStopCheck(AskForSignals);
    OpenCameras::Instance().Add(camera);
    return camera;
}

Shared Open(const std::optional<py::str>& name) {
    const auto text = name ? std::optional(ToText(*name)) : std::nullopt;
    return Interruptible([text] { return Opened(text); });
}

py::list List() {
    py::list list;
    for (const Vanto::CameraRecord& record : Interruptible(&Camera::List))
        list.append(ToPython(record));
    return list;
}

Vanto::Subscription Select(const Camera& camera, const py::str& selector, const py::object& object) {
    const std::string name = ToText(selector);
    const Vanto::FeatureValue value = ToValue(object);
    return WithoutGil([&] { return camera.Select(name, value); });
}

Vanto::FrameStream Stream(const Camera& camera, std::size_t buffers, double timeout, std::uint64_t count) {
    Vanto::StreamOptions options;
    options.buffers = buffers;
    options.timeout = ToMilliseconds(timeout);
    options.count = count;
    return WithoutGil([&] { return camera.Stream(options); });
}

Vanto::Subscription OnRemoval(const Camera& camera, const py::function& function) {
    return WithoutGil([&camera, callback = Callback(function)] {
        return camera.OnRemoval([callback] { Dispatcher::Instance().Post(callback); });
    });
}

py::list Save(const Camera& camera, const py::str& path) {
    const std::string text = ToText(path);
    return ToPython(WithoutGil([&] { return camera.Save(text); }));
}

void Load(const Camera& camera, const py::str& path) {
    const std::string text = ToText(path);
    WithoutGil([&] { camera.Load(text); });
}

py::bytes ReadRegisters(const Camera& camera, std::int64_t address, std::size_t length) {
    const Vanto::FeatureBytes bytes = WithoutGil([&] { return camera.ReadRegisters(address, length); });
    return py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void WriteRegisters(const Camera& camera, std::int64_t address, const py::object& data) {
    const Vanto::FeatureBytes bytes = ToBytes(data);
    WithoutGil([&] { camera.WriteRegisters(address, bytes); });
}

}  // namespace

void BindCameras(py::module_& module) {
    py::class_<Camera, Shared>(module, "Camera", "An open camera.")
        .def("name", [](const Camera& camera) { return ToPython(camera.Name()); })
        .def("record", Giving(&Camera::Record))
        .def("is_open", &Camera::IsOpen)
        .def("is_gone", &Camera::IsGone)
        .def("close", &Camera::Close, Released())
        .def("features", &Camera::Features, Released())
        .def("stream_features", &Camera::StreamFeatures, Released())
        .def("transport_features", &Camera::TransportFeatures, Released())
        .def("select", Select, py::arg("selector"), py::arg("value"))
        .def("save", Save, py::arg("path"))
        .def("load", Load, py::arg("path"))
        .def("stream", Stream, py::arg("buffers"), py::arg("timeout"), py::arg("count"))
        .def("read_registers", ReadRegisters, py::arg("address"), py::arg("length"))
        .def("write_registers", WriteRegisters, py::arg("address"), py::arg("data"))
        .def("on_removal", OnRemoval, py::arg("callback"));
    module.def("find_cameras", List);
    module.def("open", Open, py::arg("name"));
}

}  // namespace python
