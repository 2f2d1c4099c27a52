/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameSaver: saves frames beside the grab
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "images/FrameFiles.h"
#include "os/LockName.h"

namespace tools {

/// Threads that write frames, so that an encoder does not hold the camera up. A bounded number of frames waits for
/// them; when all places are taken, whoever brings the next frame waits, too. What was brought is written before it is
/// destroyed. Thread-bound.
class FrameSaver {
public:
    /// \param[in] files Must outlive this
    /// \param[in] waiting How many frames may wait, from 1
    FrameSaver(FrameFiles& files, std::size_t threads, std::size_t waiting);
    ~FrameSaver();
    FrameSaver(const FrameSaver&) = delete;
    FrameSaver& operator=(const FrameSaver&) = delete;

    /// Holds the frame until it is written. Throws what an earlier frame failed with.
    void Save(const FrameImage& image, const Vanto::ImageNotes& notes);
    /// Waits for the last file. Throws what a frame failed with.
    void Finish();
    /// From the first frame to the end of the last file so far.
    double Seconds() const;

private:
    struct Job {
        FrameFile file;
        FrameImage image;
        Vanto::ImageNotes notes;
    };
    void Run();
    void Write(const Job& job);
    void End() noexcept;

    FrameFiles& m_files;
    const std::size_t m_places;
    mutable std::mutex m_lock;  // of what follows, but for the threads
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "frames to save"};
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    std::exception_ptr m_failure;
    std::chrono::steady_clock::time_point m_first;
    std::chrono::steady_clock::time_point m_last;
    bool m_ending = false;
    std::vector<std::thread> m_threads;
};

}  // namespace tools
