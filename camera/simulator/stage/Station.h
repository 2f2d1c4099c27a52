/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera, its faults and its line together, in time
 */
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>

#include "Time.h"
#include "camera/Device.h"
#include "gencp/StreamParser.h"
#include "line/FaultSource.h"
#include "line/Line.h"
#include "simulator/CameraOptions.h"
#include "simulator/Simulator.h"
#include "simulator/Statistics.h"

namespace MarlowSim {

/// Thread-bound.
class Station {
public:
    Station(std::filesystem::path link, const CameraOptions& options, TimePoint now);

    void Advance(TimePoint now);
    std::optional<TimePoint> NextEvent() const;

    void Plug(Power power, TimePoint now);
    void Unplug();
    void Exchange(const CameraOptions& options, TimePoint now);
    Line* PluggedLine() const { return m_line.get(); }

    FaultSettings& Faults() { return m_options.faults; }
    Statistics& Figures() { return m_statistics; }
    Device& Camera() { return *m_device; }
    const CameraOptions& Options() const { return m_options; }
    const std::filesystem::path& Link() const { return m_link; }

private:
    /// A packet on its way to the host.
    struct Leaving {
        Device::Outgoing outgoing;
        bool isCarried = true;  // else it takes its time, but no byte arrives
        bool isOwn = true;      // else it is a repetition that the line made
        bool isLast = false;
        std::optional<TimePoint> start;
        std::uint32_t bitsPerSecond = 0;  // of the camera when the packet began
        std::size_t sent = 0;
    };

    void EndCountdowns(TimePoint now);
    static TimePoint NextChunk(const Leaving& leaving);
    void TakeFromLine(TimePoint now);
    void GiveUpPartial(TimePoint now);
    void HandleParsed(TimePoint at);
    void HandleCommand(const gencp::Packet& packet, TimePoint at);
    void WatchPartial(TimePoint at);
    void CollectFromCamera();
    void Enqueue(Device::Outgoing outgoing, const FaultSource::Fate& fate);
    void SendToHost(TimePoint now);
    void SendNoise(TimePoint now);
    bool Progress(Leaving& leaving, TimePoint now);
    bool IsCarried(std::uint32_t hostRate) const;
    void Carry(const Leaving& leaving, std::size_t begin, std::size_t end);
    void Obey(const FaultSource::Fate& fate, TimePoint now);
    void ClearLine();

    const std::filesystem::path m_link;
    CameraOptions m_options;
    Statistics m_statistics;
    FaultSource m_chance;
    std::unique_ptr<Device> m_device;
    std::unique_ptr<Line> m_line;
    gencp::StreamParser m_parser;
    std::deque<Leaving> m_leaving;
    TimePoint m_inputFree{};                  // when the line to the camera has carried all that was sent
    TimePoint m_outputFree{};                 // the same of the line to the host
    std::optional<TimePoint> m_noiseEnd;      // of the noise that was sent, as long as there is to be some
    std::optional<TimePoint> m_partialBegin;  // of a packet that is not whole yet
    std::optional<TimePoint> m_partialEnd;
    std::optional<TimePoint>
        m_pullEnd;  // the cable is being pulled: as soon as the host has read, at this time at last
};

}  // namespace MarlowSim
