/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What takes long and asks nobody whether to go on, made so that Ctrl-C ends the wait for it
 */
#pragma once

#include <chrono>
#include <future>
#include <thread>
#include <utility>

#include "Gil.h"

namespace python {

/**
 * \brief Run something of the library that may take seconds, without the GIL
 *
 * On the main thread it runs on a thread of its own, and a signal handler that throws ends the wait for it: what it
 * gives later is destroyed. Other threads run it themselves, as signals are none of their business.
 */
template <class Action>
auto Interruptible(Action action) -> decltype(action()) {
    const ReleasedGil released;
    if (!IsMainThread())
        return action();
    constexpr std::chrono::milliseconds kStep(50);
    std::packaged_task<decltype(action())()> task(std::move(action));
    auto result = task.get_future();
    std::thread([task = std::move(task)]() mutable {
        const Inside inside;
        auto own = std::move(task);  // what nobody waits for any more goes with it, before this thread leaves
        own();
    }).detach();
    while (result.wait_for(kStep) != std::future_status::ready)
        AskForSignals();
    return result.get();
}

}  // namespace python
