/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values of each thread's own on Windows
 */

#include "os/PerThread.h"

#include <windows.h>

namespace os {

ThreadSlot::ThreadSlot(void (*destroy)(void*)) noexcept : m_index(::FlsAlloc(destroy)) {}

/// Destroys the values of all threads.
ThreadSlot::~ThreadSlot() {
    ::FlsFree(m_index);
}

/// The calling thread's value, null at first.
void* ThreadSlot::Get() const noexcept {
    return ::FlsGetValue(m_index);
}

/// Sets the calling thread's value; the one before is not destroyed.
void ThreadSlot::Set(void* value) noexcept {
    ::FlsSetValue(m_index, value);
}

}  // namespace os
