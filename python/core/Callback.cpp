/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Callback: a Python function that the library calls
 */
#include "Callback.h"

#include <utility>

#include "Gil.h"
#include "Helper.h"

namespace python {

namespace {

// An interpreter that ends takes the function with it.
void Forget(py::function* function) {
    if (const HeldGil held; held)
        delete function;
}

}  // namespace

Callback::Callback(py::function function) : m_function(new py::function(std::move(function)), Forget) {}

void Callback::operator()() const {
    if (!Helper::HasRun([this] { Run(true); }))
        Run(false);
}

void Callback::Run(bool passes) const {
    const HeldGil held;
    if (!held)
        return;
    if (PyObject* const result = PyObject_CallNoArgs(m_function->ptr()))
        Py_DECREF(result);
    else if (passes && PyErr_ExceptionMatches(PyExc_Exception) == 0)
        throw py::error_already_set();
    else
        PyErr_WriteUnraisable(m_function->ptr());
}

}  // namespace python
