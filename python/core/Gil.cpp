/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The interpreter's lock (GIL): given up before anything that may wait, taken for callbacks
 */
#include "Gil.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "Errors.h"
#include "vanto/CameraError.h"

namespace python {

namespace {

unsigned long mainThread = 0;
std::atomic<bool> isForked{false};

// What the parent's threads were to finish at the end of the process can't be finished here.
void EndForked(int status, void*) {
    std::fflush(nullptr);
    std::_Exit(status);
}

}  // namespace

ReleasedGil::ReleasedGil() {
    if (IsForked())
        throw ForkedProcess();
    if (!Gate::Instance().Enter())
        throw Vanto::CameraClosed("the interpreter is ending");
    m_thread = PyEval_SaveThread();
}

ReleasedGil::~ReleasedGil() {
    PyEval_RestoreThread(m_thread);
    Gate::Instance().Leave();
}

HeldGil::HeldGil() {
    if (m_inside)
        m_state = PyGILState_Ensure();
}

HeldGil::~HeldGil() {
    if (m_inside)
        PyGILState_Release(m_state);
}

/// Remembers which thread runs signal handlers.
void RememberMainThread() {
    mainThread = py::module_::import("threading").attr("main_thread")().attr("ident").cast<unsigned long>();
}

/// Whether this thread is the one that runs signal handlers.
bool IsMainThread() noexcept {
    return PyThread_get_thread_ident() == mainThread;
}

/// Whether this process was forked by one that used the library.
bool IsForked() noexcept {
    return isForked.load(std::memory_order_relaxed);
}

/// Called in a forked process. Where its parent never used the library, the library is as good as new.
void NoteFork() noexcept {
    if (!Gate::Instance().WasUsed() || isForked.exchange(true))
        return;
    on_exit(EndForked, nullptr);
}

/**
 * \brief Run the handlers of signals that came; called by waits every few milliseconds, without the GIL
 * \return Whether the wait shall end, because the interpreter does
 * \throw py::error_already_set What a handler threw: KeyboardInterrupt
 */
bool AskForSignals() {
    if (!IsMainThread())
        return Gate::Instance().IsClosed();
    const HeldGil held;
    if (!held)
        return true;
    if (PyErr_CheckSignals() != 0)
        throw py::error_already_set();
    return false;
}

}  // namespace python
