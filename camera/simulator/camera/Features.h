/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The features of a camera behind its registers: limits, what depends on what, user sets
 */
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <set>
#include <utility>
#include <vector>

#include "camera/CameraModel.h"
#include "camera/RegisterFile.h"

namespace MarlowSim {

/// Lays its registers into a register file and keeps them consistent. Thread-bound; outlives no use of the file.
class Features {
public:
    /// \param[in] temperature Gives tenths of a degree whenever it is read
    Features(const CameraModel& model, RegisterFile& file, std::function<std::uint32_t()> temperature);
    Features(const Features&) = delete;

    void PowerOn();
    bool IsSlow(std::uint64_t address) const;

private:
    using Values = std::vector<std::pair<gencp::Register, gencp::Bytes>>;

    void AddSetting(gencp::Register where, gencp::Bytes factory);
    void AddNumber(gencp::Register where, std::uint32_t factory, std::uint32_t min, std::uint32_t max,
                   std::uint32_t inc = 1);
    void AddChoice(gencp::Register where, std::uint32_t factory, std::set<std::uint32_t> choices);
    void AddFloat(gencp::Register where, float factory, float min, float max);
    void AddCommand(gencp::Register where, std::function<std::uint16_t()> action);
    void AddInformation();
    void AddGeometry();
    void AddFormat();
    void AddAcquisition();
    void AddTriggers();
    void AddLines();
    void AddAnalog();
    void AddTransport();
    void AddUserSets();

    std::uint32_t WidthMax() const;
    std::uint32_t HeightMax() const;
    std::uint32_t PixelBits() const;
    float ResultingRate() const;
    std::uint16_t ChangeExposureAuto(std::uint32_t mode);
    std::uint16_t ChangeWindow(gencp::Register size, gencp::Register offset, gencp::ByteView value, bool isSize);
    void FitWindow(gencp::Register size, gencp::Register offset, std::uint32_t max, std::uint32_t inc) const;
    std::uint16_t TriggerSoftware();
    std::uint16_t LoadUserSet(std::uint32_t number);
    std::uint16_t SaveUserSet(std::uint32_t number);
    Values Present() const;

    const CameraModel& m_model;
    RegisterFile& m_file;
    std::vector<gencp::Register> m_settings;  // what a user set holds
    std::array<Values, 3> m_userSets;         // the first is that of the factory
};

}  // namespace MarlowSim
