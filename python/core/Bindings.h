/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The parts of vanto._core, and what they share
 */
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>

namespace python {

void BindFeatures(pybind11::module_& module);
void BindFrames(pybind11::module_& module);
void BindCameras(pybind11::module_& module);
void BindMachine(pybind11::module_& module);
void BindSystem(pybind11::module_& module);

std::chrono::milliseconds ToMilliseconds(double seconds);

}  // namespace python
