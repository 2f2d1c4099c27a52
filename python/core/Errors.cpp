/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions of the library as those of vanto._errors
 */
#include "Errors.h"

#include <pybind11/pybind11.h>

#include <exception>

#include "Base/GCException.h"
#include "Values.h"
#include "vanto/CameraError.h"

namespace python {

namespace {

py::object Made(const char* type, const std::string& text) {
    return py::module_::import("vanto._errors").attr(type)(ToPython(text));
}

void Raise(const py::object& error) {
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
}

void RaiseCameraError(const char* type, const Vanto::CameraError& failure) {
    const py::object error = Made(type, failure.what());
    error.attr("camera") = ToPython(failure.CameraName());
    Raise(error);
}

void RaiseFeatureError(const char* type, const Vanto::FeatureError& failure) {
    const py::object error = Made(type, failure.what());
    error.attr("camera") = ToPython(failure.CameraName());
    error.attr("feature") = ToPython(failure.FeatureName());
    error.attr("allowed") = ToPython(failure.Allowed());
    Raise(error);
}

void RaiseRefusal(const Vanto::SettingsRefused& failure) {
    const py::object error = Made("SettingsRefused", failure.what());
    error.attr("camera") = ToPython(failure.CameraName());
    error.attr("faults") = ToPython(failure.Faults());
    Raise(error);
}

void TranslateFeatureError(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const Vanto::UnknownFeature& failure) {
        RaiseFeatureError("UnknownFeature", failure);
    } catch (const Vanto::FeatureNotAccessible& failure) {
        RaiseFeatureError("NotAccessible", failure);
    } catch (const Vanto::FeatureOutOfRange& failure) {
        RaiseFeatureError("OutOfRange", failure);
    } catch (const Vanto::FeatureTypeError& failure) {
        RaiseFeatureError("WrongType", failure);
    } catch (const Vanto::FeatureError& failure) {
        RaiseFeatureError("FeatureError", failure);
    }
}

// What it does not catch goes to pybind11's own translators.
void Translate(std::exception_ptr thrown) {
    try {
        if (thrown)
            std::rethrow_exception(thrown);
    } catch (const Vanto::FeatureError&) {
        TranslateFeatureError(thrown);
    } catch (const Vanto::SettingsRefused& failure) {
        RaiseRefusal(failure);
    } catch (const Vanto::NoCamera& failure) {
        RaiseCameraError("NoCamera", failure);
    } catch (const Vanto::CameraGone& failure) {
        RaiseCameraError("CameraGone", failure);
    } catch (const Vanto::CameraClosed& failure) {
        RaiseCameraError("CameraClosed", failure);
    } catch (const Vanto::CameraTimeout& failure) {
        RaiseCameraError("Timeout", failure);
    } catch (const Vanto::GrabError& failure) {
        RaiseCameraError("GrabError", failure);
    } catch (const Vanto::CameraError& failure) {
        RaiseCameraError("Error", failure);
    } catch (const GenICam::GenericException& failure) {
        Raise(Made("Error", failure.GetDescription()));
    } catch (const ForkedProcess& failure) {
        Raise(Made("ForkedError", failure.what()));
    }
}

}  // namespace

ForkedProcess::ForkedProcess()
    : std::runtime_error(
          "this process was forked by one that had used cameras, and can't use them itself; start it "
          "anew instead, as multiprocessing does with its start method 'spawn'") {}

/// Has exceptions of the library arrive as Python's.
void BindErrors() {
    py::register_exception_translator(Translate);
}

}  // namespace python
