/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto._core: the library's own classes, for the Python part of the module
 */
#include <pybind11/pybind11.h>

#include "Bindings.h"
#include "Errors.h"
#include "Gil.h"

PYBIND11_MODULE(_core, module) {
    module.doc() = "Cameras as the library has them. Use vanto instead, which is made of it.";
    module.attr("__version__") = VANTO_VERSION;
    python::RememberMainThread();
    python::BindErrors();
    python::BindFeatures(module);
    python::BindFrames(module);
    python::BindCameras(module);
    python::BindMachine(module);
    python::BindSystem(module);
}
