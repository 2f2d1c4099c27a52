/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interruption: Ctrl-C and requests to end, turned into an orderly end
 */
#pragma once

#include <functional>
#include <memory>

namespace tools {

/// Takes Ctrl-C and the system's requests to end for the whole process. Make it first, before any other thread exists.
///
/// The first request sets a flag that a command may watch. A command that does not watch it is ended at once: the
/// clean-ups run, newest first, and the process ends as the signal would have ended it. So does a second request.
class Interruption {
public:
    /// \param[in] onRequest Called at the first request, by another thread
    explicit Interruption(std::function<void()> onRequest = {});
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether somebody asked to end. Any thread.
    static bool Requested() noexcept;

    /// While one lives, the first request only sets the flag.
    class Watch {
    public:
        Watch() noexcept;
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;
    };

    /// Something to do before the process is ended, as long as this object lives. The action runs on another thread.
    class CleanUp {
    public:
        explicit CleanUp(std::function<void()> action);
        ~CleanUp();
        CleanUp(const CleanUp&) = delete;
        CleanUp& operator=(const CleanUp&) = delete;

    private:
        std::function<void()> m_action;
    };

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace tools
