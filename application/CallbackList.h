/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CallbackList: callbacks that may cancel themselves, and each other, while they run
 */
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>

#include "os/LockName.h"
#include "vanto/Subscription.h"

namespace Vanto {

/// Whether this thread runs a callback of an application, in which it must not destroy what called it.
class InsideCallback {
public:
    InsideCallback() noexcept { ++s_depth; }
    ~InsideCallback() { --s_depth; }
    InsideCallback(const InsideCallback&) = delete;
    InsideCallback& operator=(const InsideCallback&) = delete;

    static bool IsSo() noexcept { return s_depth != 0; }

private:
    static thread_local int s_depth;
};

/// Callbacks without arguments, in the order in which they were added. Thread-safe; owned by a shared pointer.
class CallbackList : public std::enable_shared_from_this<CallbackList> {
public:
    Subscription Add(std::function<void()> callback);
    void Run();

private:
    struct Entry {
        std::recursive_mutex running;  // held by the thread that runs it, which may cancel it
        [[no_unique_address]] const os::LockName runningName{&running, "application's callback"};
        std::function<void()> callback;
    };
    void Remove(const std::shared_ptr<Entry>& entry);

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "application's callbacks"};
    std::list<std::shared_ptr<Entry>> m_entries;
};

}  // namespace Vanto
