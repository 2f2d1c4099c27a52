/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls of functions of foreign libraries
 */

#include "ForeignCall.h"

#include <utility>

#include "os/PerThread.h"

namespace CLProtocol {

namespace {

// Not an owner: to note a destructor of a thread, the system takes the very lock that it holds while it runs a
// library's constructor, which may hang.
thread_local ForeignActivity* t_activity = nullptr;

// Of a thread that nobody watches.
struct OwnActivity {
    ForeignActivity activity;
    ~OwnActivity() { t_activity = nullptr; }
};

}  // namespace

/// Notes what is entered and returns what was current before, for Leave.
ForeignActivity::Entry ForeignActivity::Enter(const Entry& entry) noexcept {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_entry, entry);
}

/// Notes a return.
void ForeignActivity::Leave(const Entry& previous) noexcept {
    const std::lock_guard lock(m_mutex);
    m_entry = previous;
    ++m_returned;
}

/// The innermost foreign function that has not returned.
ForeignActivity::Place ForeignActivity::Current() const {
    const std::lock_guard lock(m_mutex);
    return {m_entry.library != nullptr ? *m_entry.library : std::string(), m_entry.function};
}

/// A number that grows with each foreign function that returns.
std::uint64_t ForeignActivity::Progress() const {
    const std::lock_guard lock(m_mutex);
    return m_returned;
}

ForeignActivity& CurrentActivity() {
    if (t_activity == nullptr)
        t_activity = &os::PerThread<OwnActivity>().activity;
    return *t_activity;
}

ActivityWatch::ActivityWatch(ForeignActivity& activity) noexcept {
    t_activity = &activity;
}

ActivityWatch::~ActivityWatch() {
    t_activity = nullptr;
}

std::string CurrentForeignLibrary() {
    return t_activity != nullptr ? t_activity->Current().library : std::string();
}

void ThrowForeignException(const std::string& library, const char* function, const char* what) {
    throw RUNTIME_EXCEPTION("Function '%s' of '%s' threw an exception: %s", function, library, what);
}

}  // namespace CLProtocol
