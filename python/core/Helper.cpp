/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Helper: a thread that does what the main thread wants of the library, while the main thread looks for signals
 */
#include "Helper.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "Gil.h"
#include "vanto/CameraError.h"

namespace python {

namespace {

constexpr std::chrono::milliseconds kStep(50);  // between two questions for signals

thread_local Helper* t_self = nullptr;

}  // namespace

struct Helper::Errand {
    Work work;
    bool mustBegin = false;  // not even Ctrl-C takes it back
    bool isDone = false;
    bool isLeft = false;
    std::exception_ptr error;
};

/// A callback that H wants M to run.
struct Helper::Call {
    enum class State { kAsked, kRunning, kRun, kRefused };
    const Work& callback;
    State state = State::kAsked;
    bool IsOver() const noexcept { return state == State::kRun || state == State::kRefused; }
};

/// Which helpers M has; only M looks at it.
struct Helper::Turn {
    std::shared_ptr<Helper> idle;
    std::shared_ptr<Helper> calling;  // in whose callback M is
    static Turn& Instance() {
        static auto* const turn = new Turn;
        return *turn;
    }
};

std::shared_ptr<Helper> Helper::Started() {
    auto helper = std::make_shared<Helper>();
    std::thread([helper] { helper->Run(); }).detach();
    return helper;
}

/**
 * \brief Have something done, and wait for it
 * \param[in] work What to do, on another thread; it must own all that it uses
 * \throw py::error_already_set What a signal handler threw. What has not begun by then will not; else it is ended
 * \throw ... What the work throws
 */
void Helper::Do(Work work) {
    const auto errand = Ended(std::move(work), false, AskForSignals);
    if (!errand)
        throw Vanto::CameraClosed("the interpreter is ending");
    if (errand->error)
        std::rethrow_exception(std::exchange(errand->error, nullptr));
}

/// Has something done that must be, and waits for it unless Ctrl-C is pressed, whose handler runs later. The work
/// throws nothing.
void Helper::Finish(const Work& work) noexcept {
    try {
        Ended(work, true, IsInterrupted);
    } catch (py::error_already_set& error) {
        InterruptLater(error);
    } catch (const std::exception&) {
        work();  // there is no room for another thread
    }
}

/// Has something done; returns null where isLeft says that M shall not wait for its end.
std::shared_ptr<Helper::Errand> Helper::Ended(Work work, bool mustBegin, bool (*isLeft)()) {
    Turn& turn = Turn::Instance();
    const bool isInside = turn.calling != nullptr;
    auto helper = isInside ? turn.calling : std::exchange(turn.idle, nullptr);
    if (!helper)
        helper = Started();
    const auto errand = std::make_shared<Errand>();
    errand->work = std::move(work);
    errand->mustBegin = mustBegin;
    helper->Give(errand);
    bool isEnded = false;
    std::exception_ptr interruption;
    try {
        isEnded = helper->HasEnded(*errand, isLeft);
    } catch (...) {
        interruption = std::current_exception();
    }
    if (!isEnded)
        helper->Leave(errand);
    if (!isInside && isEnded && !turn.idle)
        turn.idle = helper;  // a signal handler may have brought another one meanwhile
    else if (!isInside)
        helper->Retire();
    if (interruption)
        std::rethrow_exception(interruption);
    return isEnded ? errand : nullptr;
}

void Helper::Give(const std::shared_ptr<Errand>& errand) {
    const std::lock_guard lock(m_mutex);
    m_errands.push_back(errand);
    m_wake.notify_one();
}

// M waits for H, and runs callbacks for it.
bool Helper::HasEnded(const Errand& errand, bool (*isLeft)()) {
    std::unique_lock lock(m_mutex);
    for (;;) {
        const bool isNews = m_news.wait_for(lock, kStep, [&] { return errand.isDone || IsAsked(); });
        if (errand.isDone)
            return true;
        if (isNews) {
            RunCallback(lock);
            continue;
        }
        lock.unlock();
        if (AsksOutside(isLeft))
            return false;
        lock.lock();
    }
}

// What a signal handler asks for is no part of the callback in which it happens to run: it may be what ends a wait.
bool Helper::AsksOutside(bool (*isLeft)()) {
    auto& calling = Turn::Instance().calling;
    const auto before = std::exchange(calling, nullptr);
    try {
        const bool isOver = isLeft();
        calling = before;
        return isOver;
    } catch (...) {
        calling = before;
        throw;
    }
}

bool Helper::IsAsked() const noexcept {
    return m_call != nullptr && m_call->state == Call::State::kAsked;
}

void Helper::RunCallback(std::unique_lock<std::mutex>& lock) {
    Call& call = *m_call;
    call.state = Call::State::kRunning;
    lock.unlock();
    Turn& turn = Turn::Instance();
    const auto before = std::exchange(turn.calling, shared_from_this());
    std::exception_ptr error;
    try {
        call.callback();
    } catch (...) {
        error = std::current_exception();
    }
    turn.calling = before;
    lock.lock();
    call.state = Call::State::kRun;
    m_wake.notify_one();
    if (error)
        std::rethrow_exception(error);
}

void Helper::Leave(const std::shared_ptr<Errand>& errand) noexcept {
    const std::lock_guard lock(m_mutex);
    errand->isLeft = true;
    if (!errand->mustBegin)
        m_errands.erase(std::remove(m_errands.begin(), m_errands.end(), errand), m_errands.end());
    if (IsAsked())
        m_call->state = Call::State::kRefused;
    m_wake.notify_one();
}

/// H ends when it has done what it was given.
void Helper::Retire() noexcept {
    const std::lock_guard lock(m_mutex);
    m_isRetired = true;
    m_wake.notify_one();
}

void Helper::Run() {
    t_self = this;
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_isRetired || !m_errands.empty(); });
        if (m_errands.empty())
            return;
        DoNext(lock);
    }
}

void Helper::DoNext(std::unique_lock<std::mutex>& lock) {
    const auto errand = m_errands.front();
    m_errands.pop_front();
    const Errand* const outer = std::exchange(m_current, errand.get());
    lock.unlock();
    {
        const Inside inside;  // the interpreter does not end before what the work owns has gone
        try {
            errand->work();
        } catch (...) {
            errand->error = std::current_exception();
        }
        errand->work = nullptr;
    }
    lock.lock();
    m_current = outer;
    errand->isDone = true;
    m_news.notify_one();
}

/**
 * \brief Have the main thread run a callback, where this thread is a helper of its
 * \return Whether it did; this thread runs it itself otherwise
 */
bool Helper::HasRun(const Work& callback) {
    Helper* const self = t_self;
    if (self == nullptr)
        return false;
    std::unique_lock lock(self->m_mutex);
    if (self->m_current->isLeft)
        return false;
    Call call{callback};
    Call* const outer = std::exchange(self->m_call, &call);
    self->m_news.notify_one();
    while (!call.IsOver()) {
        self->m_wake.wait(lock, [&] { return call.IsOver() || !self->m_errands.empty(); });
        if (!self->m_errands.empty())
            self->DoNext(lock);
    }
    self->m_call = outer;
    return call.state == Call::State::kRun;
}

/// Whether this thread is a helper and nobody waits for what it does any more.
bool Helper::IsAlone() noexcept {
    if (t_self == nullptr)
        return false;
    const std::lock_guard lock(t_self->m_mutex);
    return t_self->m_current->isLeft;
}

/// Whether this thread is a helper, and so stands for the main thread.
bool Helper::IsOne() noexcept {
    return t_self != nullptr;
}

}  // namespace python
