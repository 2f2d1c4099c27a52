/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whether this process is a copy of the one that initialised the producer
 */
#include "support/ForkGuard.h"

#include <pthread.h>

#include <atomic>

namespace gentl {

namespace {

std::atomic<bool> g_isForkedChild{false};

}  // namespace

void WatchForks() {
    [[maybe_unused]] static const int result =
        pthread_atfork(nullptr, nullptr, [] { g_isForkedChild.store(true, std::memory_order_relaxed); });
}

bool IsForkedChild() noexcept {
    return g_isForkedChild.load(std::memory_order_relaxed);
}

}  // namespace gentl
