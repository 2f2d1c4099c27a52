/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one thread that plays all cameras of a simulator
 */
#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "line/Line.h"
#include "os/LockName.h"
#include "simulator/Simulator.h"
#include "stage/Station.h"

namespace MarlowSim {

/// Everything but Run is thread-safe. The stations belong to the thread: what others want of them is done by it.
class Simulator::Loop {
public:
    explicit Loop(std::filesystem::path folder);
    ~Loop();

    /// Has the thread do something, and gives what it gives or throws what it throws.
    template <typename Task>
    auto Do(Task&& task) -> std::invoke_result_t<Task, Loop&>;

    Station& Find(const std::string& name);
    void Add(const std::string& name, CameraOptions options);
    void Exchange(const std::string& name, const CameraOptions& options);
    std::vector<std::string> Names() const;
    const std::filesystem::path& Folder() const { return m_folder; }

private:
    using Stations = std::map<std::string, std::unique_ptr<Station>, std::less<>>;

    void Run();
    void DoTasks();

    const std::filesystem::path m_folder;
    std::unique_ptr<LineWaiter> m_waiter;
    Stations m_stations;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "simulator's tasks"};
    std::vector<std::function<void()>> m_tasks;
    std::atomic<bool> m_ends{false};
    std::thread m_thread;
};

template <typename Task>
auto Simulator::Loop::Do(Task&& task) -> std::invoke_result_t<Task, Loop&> {
    std::packaged_task<std::invoke_result_t<Task, Loop&>()> work([&] { return task(*this); });
    auto result = work.get_future();
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.emplace_back([&work] { work(); });
    }
    m_waiter->Wake();
    return result.get();
}

}  // namespace MarlowSim
