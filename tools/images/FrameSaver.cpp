/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameSaver: saves frames beside the grab
 */
#include "images/FrameSaver.h"

#include <algorithm>
#include <utility>

namespace tools {

FrameSaver::FrameSaver(FrameFiles& files, std::size_t threads, std::size_t waiting)
    : m_files(files), m_places(std::max<std::size_t>(waiting, 1)) {
    for (; threads != 0; --threads)
        m_threads.emplace_back([this] { Run(); });
}

FrameSaver::~FrameSaver() {
    End();
}

void FrameSaver::Save(const FrameImage& image, const Vanto::ImageNotes& notes) {
    std::optional<FrameFile> file = m_files.Next(image);
    if (!file)
        return;
    Job job{std::move(*file), image, notes};
    std::unique_lock guard(m_lock);
    if (m_first == std::chrono::steady_clock::time_point())
        m_first = m_last = std::chrono::steady_clock::now();
    // The grab waits here for a thread that has taken a job, which needs nothing of the grab's.
    m_changed.wait(guard, [this] { return m_jobs.size() < m_places || m_failure; });
    if (m_failure)
        std::rethrow_exception(m_failure);
    m_jobs.push_back(std::move(job));
    m_changed.notify_all();
}

void FrameSaver::Finish() {
    End();
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
}

double FrameSaver::Seconds() const {
    const std::lock_guard guard(m_lock);
    return std::chrono::duration<double>(m_last - m_first).count();
}

void FrameSaver::End() noexcept {
    {
        const std::lock_guard guard(m_lock);
        m_ending = true;
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads)
        if (thread.joinable())
            thread.join();
}

void FrameSaver::Run() {
    std::unique_lock guard(m_lock);
    for (;;) {
        m_changed.wait(guard, [this] { return !m_jobs.empty() || m_ending; });
        if (m_jobs.empty())
            return;
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_changed.notify_all();
        guard.unlock();
        Write(job);
        guard.lock();
    }
}

void FrameSaver::Write(const Job& job) {
    std::exception_ptr failure;
    try {
        m_files.Write(job.file, job.image.view, job.notes);
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard guard(m_lock);
    m_last = std::chrono::steady_clock::now();
    if (failure && !m_failure)
        m_failure = failure;
    m_changed.notify_all();
}

}  // namespace tools
