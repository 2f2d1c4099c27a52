/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls of functions of foreign libraries
 */

#include "ForeignCall.h"

#include <utility>

namespace CLProtocol {

namespace {

thread_local std::shared_ptr<ForeignActivity> t_activity;

}  // namespace

/// Notes what is entered and returns what was current before, for Leave.
ForeignActivity::Place ForeignActivity::Enter(const std::string& library, const char* function) {
    Place place{library, function};
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_place, std::move(place));
}

/// Notes a return.
void ForeignActivity::Leave(Place&& previous) noexcept {
    const std::lock_guard lock(m_mutex);
    m_place = std::move(previous);
    ++m_returned;
}

/// The innermost foreign function that has not returned.
ForeignActivity::Place ForeignActivity::Current() const {
    const std::lock_guard lock(m_mutex);
    return m_place;
}

/// A number that grows with each foreign function that returns.
std::uint64_t ForeignActivity::Progress() const {
    const std::lock_guard lock(m_mutex);
    return m_returned;
}

ForeignActivity& CurrentActivity() {
    if (!t_activity)
        t_activity = std::make_shared<ForeignActivity>();
    return *t_activity;
}

void SetCurrentActivity(std::shared_ptr<ForeignActivity> activity) {
    t_activity = std::move(activity);
}

std::string CurrentForeignLibrary() {
    return t_activity ? t_activity->Current().library : std::string();
}

void ThrowForeignException(const std::string& library, const char* function, const char* what) {
    throw RUNTIME_EXCEPTION("Function '%s' of '%s' threw an exception: %s", function, library, what);
}

}  // namespace CLProtocol
