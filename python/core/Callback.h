/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Callback: a Python function that the library calls
 */
#pragma once

#include <pybind11/pybind11.h>

#include <memory>

namespace python {

namespace py = pybind11;

/// A Python function without arguments. Copies are the same function. May be called and destroyed on any thread, with
/// or without the GIL; does nothing once the interpreter ends. What it throws goes to sys.unraisablehook; but where the
/// main thread made the change, and so runs it, KeyboardInterrupt and its like end the call that made it.
class Callback {
public:
    explicit Callback(py::function function);
    void operator()() const;

private:
    void Run(bool passes) const;

    std::shared_ptr<py::function> m_function;
};

}  // namespace python
