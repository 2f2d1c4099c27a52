/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one thread that plays all cameras of a simulator
 */

#include "stage/Loop.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace MarlowSim {

Simulator::Loop::Loop(std::filesystem::path folder)
    : m_folder(std::move(folder)), m_waiter(LineWaiter::Create()), m_thread([this] { Run(); }) {}

Simulator::Loop::~Loop() {
    m_ends = true;
    m_waiter->Wake();
    m_thread.join();
}

void Simulator::Loop::DoTasks() {
    std::vector<std::function<void()>> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (const auto& task : tasks)
        task();
}

void Simulator::Loop::Run() {
    std::vector<Line*> lines;
    while (!m_ends) {
        DoTasks();
        lines.clear();
        std::optional<TimePoint> next;
        for (const auto& [name, station] : m_stations) {
            station->Advance(Clock::now());
            if (Line* line = station->PluggedLine())
                lines.push_back(line);
            const std::optional<TimePoint> event = station->NextEvent();
            next = !next ? event : !event ? next : std::min(*next, *event);
        }
        m_waiter->Wait(lines, next);
    }
    DoTasks();
}

Station& Simulator::Loop::Find(const std::string& name) {
    const auto found = m_stations.find(name);
    if (found == m_stations.end())
        throw std::invalid_argument("there is no camera '" + name + "'");
    return *found->second;
}

void Simulator::Loop::Add(const std::string& name, CameraOptions options) {
    constexpr std::size_t kFirstSerial = 24'000'001;
    if (name.empty() || name.find('/') != std::string::npos || m_stations.contains(name))
        throw std::invalid_argument("'" + name + "' is no name for another camera");
    if (options.serial.empty())
        options.serial = std::to_string(kFirstSerial + m_stations.size());
    m_stations.emplace(name, std::make_unique<Station>(m_folder / name, options, Clock::now()));
    if (options.paced)
        m_waiter->BePunctual();
}

void Simulator::Loop::Exchange(const std::string& name, const CameraOptions& options) {
    Find(name).Exchange(options, Clock::now());
    if (options.paced)
        m_waiter->BePunctual();
}

std::vector<std::string> Simulator::Loop::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, station] : m_stations)
        names.push_back(name);
    return names;
}

}  // namespace MarlowSim
