/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A function of the host that is called by any thread and may be exchanged meanwhile
 */
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "os/LockName.h"

namespace CLProtocol {

/// Holds at most one function. One that ends in calling itself is not called again. Thread-safe.
template <class... Arguments>
class CallbackHolder {
public:
    using Function = std::function<void(Arguments...)>;

    /// Exchanges the function; returns when nothing uses the previous one any more, unless called by that very one.
    /// \a beside runs in the same moment, with whether there is a function now.
    template <class Beside>
    void Set(Function function, Beside beside) {
        std::shared_ptr<const Function> previous =
            function ? std::make_shared<const Function>(std::move(function)) : nullptr;
        std::unique_lock lock(m_mutex);
        beside(previous != nullptr);
        m_function.swap(previous);
        const long own = t_inside > 0 ? 2 : 1;
        m_returned.wait(lock, [&] { return previous.use_count() <= own; });
    }

    void Call(Arguments... arguments) {
        std::unique_lock lock(m_mutex);
        std::shared_ptr<const Function> function = m_function;
        lock.unlock();
        if (!function)
            return;
        ++t_inside;
        try {
            (*function)(arguments...);
        } catch (...) {  // what the host's function throws is no reason to fail
        }
        --t_inside;
        lock.lock();
        function.reset();
        m_returned.notify_all();
    }

    /// Whether this thread is inside the function.
    static bool IsInside() noexcept { return t_inside > 0; }

private:
    // How often this thread is inside. A function that causes a call would otherwise call itself for ever.
    static inline thread_local int t_inside = 0;

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "listeners"};
    std::condition_variable m_returned;
    std::shared_ptr<const Function> m_function;
};

}  // namespace CLProtocol
