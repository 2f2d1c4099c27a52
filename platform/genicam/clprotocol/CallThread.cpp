/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Runs foreign functions on another thread
 */

#include "CallThread.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

#include "CLProtocol/CLException.h"
#include "CLProtocol/Diagnostics.h"
#include "ErrorReporter.h"
#include "ForeignCall.h"
#include "ModuleLifetime.h"
#include "clser/ClSerial.h"
#include "os/LockName.h"

namespace CLProtocol {

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kWorkName[] = "driver call";

std::atomic<std::size_t> g_stuckThreads{0};

}  // namespace

struct CallThread::State {
    std::mutex mutex;
    [[no_unique_address]] const os::LockName mutexName{&mutex, "call"};
    std::condition_variable changed;
    Job job;
    std::vector<std::shared_ptr<void>> left;  // what the worker gives up when it is free
    bool hasJob = false;                      // from the moment it is given until it is done
    bool hasThread = false;
    bool isOver = false;
    bool isGivenUp = false;
    bool isStuck = false;  // was given up and has not come back; counts among the stuck threads
    std::exception_ptr error;
    ForeignActivity activity;
};

/**
 * \class CallThread
 * \brief Runs one job after the other on a thread of its own, which lives only while there is something to do
 *
 * The first job starts the thread; one that has waited for the next job for a while ends, and the next one starts it
 * anew. So a connection that nobody uses costs no thread.
 *
 * A job that hangs in foreign code is given up: the thread is left alone with all that the job holds, which is freed
 * when the foreign function returns after all. Nothing can interrupt such a function.
 *
 * \context Bound to one thread at a time. A job must own all that it uses, for it may outlive its caller.
 */
CallThread::CallThread() : m_state(std::make_shared<State>()) {}

CallThread::~CallThread() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->isOver = true;
        m_state->changed.notify_all();
    }
    if (m_isStuck)
        m_thread.detach();
    else if (m_thread.joinable())
        m_thread.join();
}

// With the lock held, for which a thread that has ended by itself does not wait any more.
void CallThread::StartThread() {
    if (m_state->hasThread)
        return;
    if (m_thread.joinable())
        m_thread.join();
    try {
        m_thread = std::thread([state = m_state] { Work(state); });
    } catch (const std::system_error& error) {
        throw RUNTIME_EXCEPTION("Could not start a thread: %s", error.what());
    }
    m_state->hasThread = true;
}

void CallThread::Work(const std::shared_ptr<State>& state) {
    const ActivityWatch watch(state->activity);
    std::unique_lock lock(state->mutex);
    while (HasWork(lock, *state)) {
        if (state->left.empty()) {
            DoJob(lock, *state);
            continue;
        }
        auto left = std::exchange(state->left, {});
        lock.unlock();
        left.clear();
        lock.lock();
    }
    state->hasThread = false;
}

// Waits for something to do. What was given up waits on: it may be left more to free.
bool CallThread::HasWork(std::unique_lock<std::mutex>& lock, State& state) {
    if (state.isStuck && !state.job && state.left.empty()) {
        state.isStuck = false;
        --g_stuckThreads;
    }
    const auto mustWake = [&] { return state.isOver || !state.left.empty() || state.job; };
    if (state.isGivenUp)
        state.changed.wait(lock, mustWake);
    else
        state.changed.wait_for(lock, kIdle, mustWake);
    return !state.left.empty() || state.job;
}

void CallThread::DoJob(std::unique_lock<std::mutex>& lock, State& state) {
    Job job = std::exchange(state.job, nullptr);
    lock.unlock();
    std::exception_ptr error;
    try {
        const os::AwaitedWork work(kWorkName);
        job();
    } catch (...) {
        error = std::current_exception();
    }
    job = nullptr;
    lock.lock();
    state.error = std::move(error);
    state.hasJob = false;
    state.changed.notify_all();
}

std::size_t CountStuckThreads() noexcept {
    return g_stuckThreads;
}

/**
 * \brief Run a job and wait for it
 * \param[in] job What to do
 * \param[in] silence Time that a foreign function may take without a sign of life, besides the module's patience
 * \param[in] limit Time that the whole job may take
 * \throw CLErrException Code -10004: a foreign function hangs, now or since an earlier job; the text names it
 * \throw GenICam::RuntimeException No thread could be started
 * \throw ... What the job throws
 */
void CallThread::Run(Job job, Milliseconds silence, Milliseconds limit) {
    if (m_isStuck) {
        // It may hold the last reference to what calls foreign functions when it goes.
        Leave(std::make_shared<Job>(std::move(job)));
        ThrowStuck();
    }
    const auto patience = Milliseconds(GetPatience().callMs) + silence;
    os::AwaitWork(kWorkName);
    std::unique_lock lock(m_state->mutex);
    StartThread();
    m_state->job = std::move(job);
    m_state->hasJob = true;
    m_state->changed.notify_all();
    const auto end = Clock::now() + limit;
    std::uint64_t progress = 0;
    do {
        progress = m_state->activity.Progress();
        const auto until = std::min(Clock::now() + patience, end);
        m_state->changed.wait_until(lock, until, [this] { return !m_state->hasJob; });
    } while (m_state->hasJob && Clock::now() < end && m_state->activity.Progress() != progress);
    if (m_state->hasJob) {
        m_isStuck = true;
        m_state->isGivenUp = true;
        m_state->isStuck = true;
        ++g_stuckThreads;
        KeepModuleLoaded();
        ThrowStuck();
    }
    if (std::exception_ptr error = std::exchange(m_state->error, nullptr)) {
        lock.unlock();
        std::rethrow_exception(std::move(error));
    }
}

/// Leaves something behind that must not be destroyed by the caller: a thread that is stuck gives it up when the
/// foreign function returns after all.
void CallThread::Leave(std::shared_ptr<void> last) {
    const std::lock_guard lock(m_state->mutex);
    m_state->left.push_back(std::move(last));
    m_state->changed.notify_all();
}

void CallThread::ThrowStuck() {
    const ForeignActivity::Place place = m_state->activity.Current();
    throw CL_ERR_EXCEPTION(CL_ERR_TIMEOUT)("Function '%s' of '%s' does not return", place.function, place.library);
}

}  // namespace CLProtocol
