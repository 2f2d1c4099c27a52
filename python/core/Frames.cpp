/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames and streams for Python
 */
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <chrono>
#include <optional>

#include "Bindings.h"
#include "Holder.h"
#include "Interruptible.h"
#include "Values.h"

namespace python {

namespace {

using Vanto::Frame;
using Vanto::FrameStream;

/// The bytes of the image where they lie; who has them keeps the frame, and so its buffer.
py::buffer_info BytesOf(Frame& frame) {
    return py::buffer_info(frame.Data(), static_cast<py::ssize_t>(frame.Size()));
}

/// Seconds since the beginning of 1970, as time.time() has them.
double TimeOf(const Frame& frame) {
    return std::chrono::duration<double>(frame.Time().time_since_epoch()).count();
}

void Save(const Frame& frame, const py::str& path) {
    Interruptible([frame, text = ToText(path)] { frame.Save(text); });
}

/// It asks for signals itself.
std::optional<Frame> Next(FrameStream& stream, std::optional<double> timeout) {
    const auto limit = timeout ? std::optional(ToMilliseconds(*timeout)) : std::nullopt;
    return WithoutGil([&] { return limit ? stream.Next(*limit) : stream.Next(); });
}

py::tuple CountsOf(const FrameStream& stream) {
    const Vanto::StreamCounts counts = WithoutGil([&] { return stream.Counts(); });
    return py::make_tuple(counts.delivered, counts.missed, counts.cut, counts.failed, counts.bytes);
}

}  // namespace

void BindFrames(py::module_& module) {
    py::class_<Frame, Light<Frame>>(module, "Frame", "An image in its buffer.", py::buffer_protocol())
        .def_buffer(BytesOf)
        .def("status", [](const Frame& frame) { return static_cast<int>(frame.Status()); })
        .def("error", [](const Frame& frame) { return ToPython(frame.Error()); })
        .def("number", &Frame::Number)
        .def("missed", &Frame::Missed)
        .def("tag", &Frame::Tag)
        .def("time", TimeOf)
        .def("size", &Frame::Size)
        .def("width", &Frame::Width)
        .def("height", &Frame::Height)
        .def("offset_x", &Frame::OffsetX)
        .def("offset_y", &Frame::OffsetY)
        .def("bits_per_pixel", &Frame::BitsPerPixel)
        .def("pixel_format", [](const Frame& frame) { return ToPython(frame.PixelFormat()); })
        .def("save", Save, py::arg("path"));
    py::class_<FrameStream, std::shared_ptr<FrameStream>>(module, "FrameStream", "A running acquisition.")
        .def("next", Next, py::arg("timeout"))
        .def("try_next", &FrameStream::TryNext, Released())
        .def("counts", CountsOf)
        .def("is_running", &FrameStream::IsRunning, Released())
        .def("stop", WaitingShared(&FrameStream::Stop));
}

}  // namespace python
