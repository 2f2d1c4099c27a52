/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls of functions of foreign libraries: their exceptions are stopped, and it is known which of them is at work
 */
#pragma once

#include <cstdint>
#include <exception>
#include <mutex>
#include <string>

#include "Base/GCException.h"
#include "os/LockName.h"

namespace CLProtocol {

/// Which foreign function a thread is in, and a count of those that have returned. Thread-safe.
class ForeignActivity {
public:
    /// Library and function; both empty outside of foreign code.
    struct Place {
        std::string library;
        const char* function = "";
    };

    /// The same without a text of its own, so that a call can be noted without memory. The library's is the caller's,
    /// who keeps it until Leave.
    struct Entry {
        const std::string* library = nullptr;
        const char* function = "";
    };

    Entry Enter(const Entry& entry) noexcept;
    void Leave(const Entry& previous) noexcept;
    Place Current() const;
    std::uint64_t Progress() const;

private:
    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "foreign activity"};
    Entry m_entry;
    std::uint64_t m_returned = 0;
};

/// The calling thread's activity.
ForeignActivity& CurrentActivity();
/// Makes an activity the calling thread's for its own lifetime, so that another thread can watch it.
class ActivityWatch {
public:
    explicit ActivityWatch(ForeignActivity& activity) noexcept;
    ~ActivityWatch();
    ActivityWatch(const ActivityWatch&) = delete;
    ActivityWatch& operator=(const ActivityWatch&) = delete;
};
/// Path of the library that the calling thread is in; empty outside of foreign code.
std::string CurrentForeignLibrary();

/// Marks the time that a thread spends in a foreign function.
class ForeignScope {
public:
    ForeignScope(const std::string& library, const char* function)
        : m_activity(CurrentActivity()), m_previous(m_activity.Enter({&library, function})) {}
    ForeignScope(std::string&& library, const char* function) = delete;  // it must outlive the scope
    ~ForeignScope() { m_activity.Leave(m_previous); }
    ForeignScope(const ForeignScope&) = delete;
    ForeignScope& operator=(const ForeignScope&) = delete;

private:
    ForeignActivity& m_activity;
    ForeignActivity::Entry m_previous;
};

[[noreturn]] void ThrowForeignException(const std::string& library, const char* function, const char* what);

/**
 * \brief Call a function of a foreign library
 * \param[in] library Path of the library
 * \param[in] function Name of the function
 * \return What the function returns
 * \throw GenICam::RuntimeException The function threw; the text names library, function and what it threw
 */
template <class Function, class... Arguments>
auto CallForeign(const std::string& library, const char* name, Function* function, Arguments... arguments) {
    const ForeignScope scope(library, name);
    try {
        return function(arguments...);
    } catch (const std::exception& error) {
        ThrowForeignException(library, name, error.what());
    } catch (...) {
        ThrowForeignException(library, name, "of unknown type");
    }
}

}  // namespace CLProtocol
