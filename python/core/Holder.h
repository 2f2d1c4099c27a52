/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How Python objects hold what is the library's
 */
#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <utility>

#include "Gil.h"
#include "Helper.h"

namespace python {

/// Lets an object of the library go when its Python object goes: without the GIL, as that may wait, and where it does,
/// Ctrl-C ends the wait. In a forked process it stays, as the threads that it would wait for are not there.
template <bool kWaits>
struct LettingGo {
    template <class Object>
    void operator()(Object* object) const noexcept {
        if (IsForked())
            return;
        const bool held = PyGILState_Check() != 0;
        const Inside inside;
        PyThreadState* const thread = held && inside ? PyEval_SaveThread() : nullptr;
        if (kWaits && thread != nullptr && IsMainThread())
            Helper::Finish([object] { delete object; });
        else
            delete object;
        if (thread != nullptr)
            PyEval_RestoreThread(thread);
    }
};
using LetGo = LettingGo<true>;

/// Holds what is gone in a moment.
template <class Object>
using Light = std::unique_ptr<Object, LettingGo<false>>;

/// Holds what may have to wait for the camera, or for a callback, when it goes.
template <class Object>
using Holder = std::unique_ptr<Object, LetGo>;

/// The same for what a call that was left still uses.
template <class Object>
std::shared_ptr<Object> Shared(Object object) {
    return std::shared_ptr<Object>(new Object(std::move(object)), LetGo());
}

}  // namespace python
