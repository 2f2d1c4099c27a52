/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Any number of simulated cameras, each on a serial line of its own
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/CameraOptions.h"
#include "simulator/Statistics.h"

namespace MarlowSim {

/// What a camera keeps while its cable is out.
enum class Power {
    kLost,  ///< the cable is its supply, too: it starts anew, at its first baud rate
    kKept   ///< it goes on as it was
};

/**
 * Plays cameras on pseudo-terminals, which links of a folder name. Thread-safe. All operations throw
 * std::invalid_argument for a name that no camera has or a value that has no meaning, and std::system_error when the
 * system refuses a terminal or a link.
 */
class Simulator {
public:
    explicit Simulator(std::filesystem::path folder);
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    void Add(const std::string& name, const CameraOptions& options = {});
    std::vector<std::string> Names() const;
    std::filesystem::path LinkOf(const std::string& name) const;

    void Unplug(const std::string& name);
    void Plug(const std::string& name, Power power = Power::kLost);
    void Exchange(const std::string& name, const CameraOptions& options);
    CameraOptions OptionsOf(const std::string& name) const;
    void SetFaults(const std::string& name, const FaultSettings& faults);
    void SetFault(const std::string& name, std::string_view key, std::string_view value);
    bool IsPlugged(const std::string& name) const;

    Statistics StatisticsOf(const std::string& name) const;
    void ResetStatistics(const std::string& name);
    std::uint32_t BitsPerSecond(const std::string& name) const;
    std::vector<std::uint8_t> DescriptionFile(const std::string& name) const;
    std::vector<std::uint8_t> ReadRegister(const std::string& name, std::uint64_t address, std::size_t length) const;
    void WriteRegister(const std::string& name, std::uint64_t address, const std::vector<std::uint8_t>& data);

    std::string Control(std::string_view command) noexcept;

private:
    class Loop;
    std::unique_ptr<Loop> m_loop;
};

}  // namespace MarlowSim
