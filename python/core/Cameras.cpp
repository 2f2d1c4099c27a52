/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Cameras for Python
 */
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Bindings.h"
#include "Callback.h"
#include "Dispatcher.h"
#include "Holder.h"
#include "Interruptible.h"
#include "OpenCameras.h"
#include "Values.h"

namespace python {

namespace {

using Vanto::Camera;
using Vanto::Subscription;
using SharedCamera = std::shared_ptr<Camera>;

SharedCamera Opened(const std::optional<std::string>& name) {
    SharedCamera camera = Shared(name ? Camera(*name) : Camera());
    camera->SetStopCheck(AskForSignals);
    OpenCameras::Instance().Add(camera);
    return camera;
}

SharedCamera Open(const std::optional<py::str>& name) {
    const auto text = name ? std::optional(ToText(*name)) : std::nullopt;
    return Interruptible([text] { return Opened(text); });
}

py::list List() {
    py::list list;
    for (const Vanto::CameraRecord& record : Interruptible(&Camera::List))
        list.append(ToPython(record));
    return list;
}

std::shared_ptr<Subscription> Select(const SharedCamera& camera, const py::str& selector, const py::object& object) {
    return Interruptible(
        [camera, name = ToText(selector), value = ToValue(object)] { return Shared(camera->Select(name, value)); });
}

std::shared_ptr<Vanto::FrameStream> Stream(const SharedCamera& camera, std::size_t buffers, double timeout,
                                           std::uint64_t count) {
    Vanto::StreamOptions options;
    options.buffers = buffers;
    options.timeout = ToMilliseconds(timeout);
    options.count = count;
    return Interruptible([camera, options] { return Shared(camera->Stream(options)); });
}

std::shared_ptr<Subscription> OnRemoval(const SharedCamera& camera, const py::function& function) {
    return Interruptible([camera, callback = Callback(function)] {
        return Shared(camera->OnRemoval([callback] { Dispatcher::Instance().Post(callback); }));
    });
}

py::list Save(const SharedCamera& camera, const py::str& path) {
    return ToPython(Interruptible([camera, text = ToText(path)] { return camera->Save(text); }));
}

void Load(const SharedCamera& camera, const py::str& path) {
    Interruptible([camera, text = ToText(path)] { camera->Load(text); });
}

py::bytes ReadRegisters(const SharedCamera& camera, std::int64_t address, std::size_t length) {
    const Vanto::FeatureBytes bytes =
        Interruptible([camera, address, length] { return camera->ReadRegisters(address, length); });
    return py::bytes(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void WriteRegisters(const SharedCamera& camera, std::int64_t address, const py::object& data) {
    Interruptible([camera, address, bytes = ToBytes(data)] { camera->WriteRegisters(address, bytes); });
}

}  // namespace

void BindCameras(py::module_& module) {
    py::class_<Camera, SharedCamera>(module, "Camera", "An open camera.")
        .def("name", [](const Camera& camera) { return ToPython(camera.Name()); })
        .def("record", Giving(&Camera::Record))
        .def("is_open", &Camera::IsOpen)
        .def("is_gone", &Camera::IsGone)
        .def("close", WaitingShared(&Camera::Close))
        .def("features", WaitingShared(&Camera::Features))
        .def("stream_features", WaitingShared(&Camera::StreamFeatures))
        .def("transport_features", WaitingShared(&Camera::TransportFeatures))
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
