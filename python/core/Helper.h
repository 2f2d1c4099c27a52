/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Helper: a thread that does what the main thread wants of the library, while the main thread looks for signals
 */
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

namespace python {

/**
 * \brief Lets Ctrl-C end a wait for something that asks nobody whether to go on
 *
 * Python runs signal handlers on the main thread only, so that one must not wait within the library itself. The
 * schedule, of M, the main thread, and H, a helper:
 *
 * - M gives the GIL up, gives H an errand, and waits for its end. Every 50 ms it takes the GIL for a moment and asks
 * for signals. It takes no lock of the library and holds none.
 * - H does the errand without the GIL, and takes the library's locks as any thread does.
 * - A callback in Python that the errand brings about is run by M, as if M had made the change itself: H waits for
 * that, with no lock of a node map held. What M asks for in the callback H does meanwhile, in the callback's place: to
 * the library both are one thread, so that a callback may cancel itself.
 * - A signal handler throws: M leaves the errand and goes on. H ends it alone, runs callbacks itself, destroys what it
 *   gave, and is over. M's next errand goes to another helper, which waits for H where both want the same lock; that
 *   wait can be left as well. So a camera is not closed before the last access to it has ended.
 *
 * All but HasRun and IsAlone are for the main thread, without the GIL.
 */
class Helper : public std::enable_shared_from_this<Helper> {
public:
    using Work = std::function<void()>;

    static void Do(Work work);
    static void Finish(const Work& work) noexcept;

    static bool HasRun(const Work& callback);
    static bool IsAlone() noexcept;
    static bool IsOne() noexcept;

private:
    struct Errand;
    struct Call;
    struct Turn;

    static std::shared_ptr<Helper> Started();
    static std::shared_ptr<Errand> Ended(Work work, bool mustBegin, bool (*isLeft)());
    void Run();
    void DoNext(std::unique_lock<std::mutex>& lock);
    void Give(const std::shared_ptr<Errand>& errand);
    bool HasEnded(const Errand& errand, bool (*isLeft)());
    static bool AsksOutside(bool (*isLeft)());
    bool IsAsked() const noexcept;
    void RunCallback(std::unique_lock<std::mutex>& lock);
    void Leave(const std::shared_ptr<Errand>& errand) noexcept;
    void Retire() noexcept;

    std::mutex m_mutex;              // of what follows; held for moments
    std::condition_variable m_wake;  // H waits for an errand, or for the end of a callback
    std::condition_variable m_news;  // M waits for the end of an errand, or for a callback
    std::deque<std::shared_ptr<Errand>> m_errands;
    const Errand* m_current = nullptr;
    Call* m_call = nullptr;
    bool m_isRetired = false;
};

}  // namespace python
