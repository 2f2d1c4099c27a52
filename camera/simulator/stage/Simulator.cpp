/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Any number of simulated cameras, each on a serial line of its own
 */

#include "simulator/Simulator.h"

#include <stdexcept>

#include "gencp/Protocol.h"
#include "stage/ControlCommand.h"
#include "stage/Loop.h"

namespace MarlowSim {

/**
 * \brief Start without any camera
 * \param[in] folder Where the links lie; made when it does not exist
 */
Simulator::Simulator(std::filesystem::path folder) {
    std::filesystem::create_directories(folder);
    m_loop = std::make_unique<Loop>(std::move(folder));
}

/// Hangs up all lines and removes their links.
Simulator::~Simulator() = default;

/**
 * \brief Plug in a new camera
 * \param[in] name Of the camera and of its link
 */
void Simulator::Add(const std::string& name, const CameraOptions& options) {
    m_loop->Do([&](Loop& loop) { loop.Add(name, options); });
}

/// The cameras' names, sorted.
std::vector<std::string> Simulator::Names() const {
    return m_loop->Do([](Loop& loop) { return loop.Names(); });
}

/// The path of a camera's link.
std::filesystem::path Simulator::LinkOf(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).Link(); });
}

/**
 * \brief Pull a camera's cable: the host sees its line hang up, and the link goes
 */
void Simulator::Unplug(const std::string& name) {
    m_loop->Do([&](Loop& loop) { loop.Find(name).Unplug(); });
}

/**
 * \brief Put a camera's cable in again: a new line under the same link
 * \param[in] power Whether the camera had power meanwhile
 */
void Simulator::Plug(const std::string& name, Power power) {
    m_loop->Do([&](Loop& loop) { loop.Find(name).Plug(power, Clock::now()); });
}

/**
 * \brief Put another camera at the end of the same cable; the line stays
 */
void Simulator::Exchange(const std::string& name, const CameraOptions& options) {
    m_loop->Do([&](Loop& loop) { loop.Exchange(name, options); });
}

/// A camera's options, its faults as they are now.
CameraOptions Simulator::OptionsOf(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).Options(); });
}

/**
 * \brief Replace all faults of a camera, from the next packet on
 */
void Simulator::SetFaults(const std::string& name, const FaultSettings& faults) {
    m_loop->Do([&](Loop& loop) { loop.Find(name).Faults() = faults; });
}

/**
 * \brief Change one fault of a camera, from the next packet on
 * \param[in] key As in the options, for example "drop-after"
 */
void Simulator::SetFault(const std::string& name, std::string_view key, std::string_view value) {
    m_loop->Do([&](Loop& loop) {
        if (!MarlowSim::SetFault(loop.Find(name).Faults(), key, value))
            throw std::invalid_argument("there is no fault '" + std::string(key) + "'");
    });
}

bool Simulator::IsPlugged(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).PluggedLine() != nullptr; });
}

/// What a camera has seen and done since it was added or its figures were reset.
Statistics Simulator::StatisticsOf(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).Figures(); });
}

void Simulator::ResetStatistics(const std::string& name) {
    m_loop->Do([&](Loop& loop) { loop.Find(name).Figures() = {}; });
}

/// The camera's present baud rate.
std::uint32_t Simulator::BitsPerSecond(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).Camera().BitsPerSecond(); });
}

/// The description file as the camera holds it.
std::vector<std::uint8_t> Simulator::DescriptionFile(const std::string& name) const {
    return m_loop->Do([&](Loop& loop) { return loop.Find(name).Camera().Registers().Description(); });
}

/**
 * \brief Read a camera's registers past its line
 * \throw std::invalid_argument The camera refuses
 */
std::vector<std::uint8_t> Simulator::ReadRegister(const std::string& name, std::uint64_t address,
                                                  std::size_t length) const {
    return m_loop->Do([&](Loop& loop) {
        gencp::Bytes data;
        if (gencp::IsError(loop.Find(name).Camera().Registers().Read(address, length, data, Clock::now())))
            throw std::invalid_argument("the camera refuses the read");
        return data;
    });
}

/**
 * \brief Write a camera's registers past its line; the statistics do not count it
 * \throw std::invalid_argument The camera refuses
 */
void Simulator::WriteRegister(const std::string& name, std::uint64_t address, const std::vector<std::uint8_t>& data) {
    m_loop->Do([&](Loop& loop) {
        if (gencp::IsError(loop.Find(name).Camera().Registers().Write(address, data, Clock::now())))
            throw std::invalid_argument("the camera refuses the write");
    });
}

/**
 * \brief Carry out a command as the control socket takes it
 * \param[in] command One line, for example "unplug cam0"
 * \return One line that begins with "ok" or "error"
 */
std::string Simulator::Control(std::string_view command) noexcept {
    return DoControlCommand(*this, command);
}

}  // namespace MarlowSim
