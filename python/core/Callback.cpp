/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Callback: a Python function that the library calls
 */
#include "Callback.h"

#include <utility>

namespace python {

namespace {

// An interpreter that ends takes the function with it.
void Forget(py::function* function) {
    if (const HeldGil held; held)
        delete function;
}

}  // namespace

Callback::Callback(py::function function) : m_function(new py::function(std::move(function)), Forget) {}

void Callback::operator()() const noexcept {
    const HeldGil held;
    if (!held)
        return;
    if (PyObject* const result = PyObject_CallNoArgs(m_function->ptr()))
        Py_DECREF(result);
    else
        PyErr_WriteUnraisable(m_function->ptr());
}

}  // namespace python
