/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The interpreter's lock (GIL): given up before anything that may wait, taken for callbacks
 */
#include "Gil.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "Errors.h"
#include "Helper.h"
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

/// Called in a forked process. Where its parent never used the library, the library is as good as new; the thread that
/// forked is the main thread now.
void NoteFork() noexcept {
    mainThread = PyThread_get_thread_ident();
    if (!Gate::Instance().WasUsed() || isForked.exchange(true))
        return;
    on_exit(EndForked, nullptr);
}

/// The thread whose call into the library this thread works on: the main thread's where it is a helper of its.
unsigned long ThreadOfProgram() noexcept {
    return Helper::IsOne() ? mainThread : PyThread_get_thread_ident();
}

/**
 * \brief Run the handlers of signals that came; called by waits every few milliseconds, without the GIL
 * \return Whether the wait shall end: the interpreter does, or nobody wants what is waited for any more
 * \throw py::error_already_set What a handler threw: KeyboardInterrupt
 */
bool AskForSignals() {
    if (!IsMainThread())
        return Gate::Instance().IsClosed() || Helper::IsAlone();
    const HeldGil held;
    if (!held)
        return true;
    if (PyErr_CheckSignals() != 0)
        throw py::error_already_set();
    return false;
}

/// Whether Ctrl-C was pressed, for those who can't throw what its handler throws: that runs as soon as Python goes on.
bool IsInterrupted() {
    const HeldGil held;
    if (!held)
        return true;
    if (PyOS_InterruptOccurred() == 0)
        return false;
    PyErr_SetInterrupt();
    return true;
}

/// What a callback throws to end its program ends it as soon as Python goes on, where that can't be thrown.
void InterruptLater(py::error_already_set& error) {
    const HeldGil held;
    if (!held)
        return;
    if (error.matches(PyExc_KeyboardInterrupt))
        PyErr_SetInterrupt();
    else
        error.discard_as_unraisable(py::none());
}

}  // namespace python
