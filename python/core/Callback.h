/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Callback: a Python function that the library calls
 */
#pragma once

#include <pybind11/pybind11.h>

#include <memory>

#include "Gil.h"

namespace python {

/// A Python function without arguments. Copies are the same function. May be called and destroyed on any thread, with
/// or without the GIL; does nothing once the interpreter ends. What it throws goes to sys.unraisablehook.
class Callback {
public:
    explicit Callback(py::function function);
    void operator()() const noexcept;

private:
    std::shared_ptr<py::function> m_function;
};

}  // namespace python
