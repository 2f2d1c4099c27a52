/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The interpreter's lock (GIL): given up before anything that may wait, taken for callbacks
 *
 * The rule that keeps the two sides from waiting for each other: nobody who holds the GIL takes a lock of the library.
 * T1 would hold the GIL and wait for a node map's lock, T2 would hold that and wait for the GIL, in a callback. So each
 * call into the library gives the GIL up first, and so does the end of each object that the library made.
 */
#pragma once

#include <pybind11/pybind11.h>

#include <utility>

#include "Gate.h"

namespace python {

namespace py = pybind11;

/// Gives the GIL up for as long as it lives. Throws when the interpreter ends, and in a forked process.
class ReleasedGil {
public:
    ReleasedGil();
    ~ReleasedGil();
    ReleasedGil(const ReleasedGil&) = delete;
    ReleasedGil& operator=(const ReleasedGil&) = delete;

private:
    PyThreadState* m_thread;
};

/// For functions that are bound as they are.
using Released = py::call_guard<ReleasedGil>;

/// Runs something of the library without the GIL.
template <class Action>
decltype(auto) WithoutGil(Action&& action) {
    const ReleasedGil released;
    return std::forward<Action>(action)();
}

/// Holds the GIL for as long as it lives, on any thread; not when the interpreter ends, which must be asked.
class HeldGil {
public:
    HeldGil();
    ~HeldGil();
    HeldGil(const HeldGil&) = delete;
    HeldGil& operator=(const HeldGil&) = delete;

    /// Whether it holds it.
    explicit operator bool() const noexcept { return static_cast<bool>(m_inside); }

private:
    Inside m_inside;
    PyGILState_STATE m_state{};
};

void RememberMainThread();
bool IsMainThread() noexcept;
bool IsForked() noexcept;
void NoteFork() noexcept;
bool AskForSignals();
bool IsInterrupted();
void InterruptLater(py::error_already_set& error);
unsigned long ThreadOfProgram() noexcept;

}  // namespace python
