/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the simulator have in common
 */
#pragma once

#include "simulator/Simulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "../../../support/TemporaryFolder.h"
#include "../Host.h"
#include "gencp/Memory.h"

namespace MarlowSimTest {

namespace fs = std::filesystem;
using namespace MarlowSim;
using namespace gencp;
using std::chrono::seconds;
using std::chrono::steady_clock;

class SimulatorTest : public testing::Test {
protected:
    fs::path Add(const std::string& name, const std::string& options = "") {
        m_simulator.Add(name, ParseCamera(name + "," + options).options);
        return m_simulator.LinkOf(name);
    }

    static Bytes ReadCommand(Register where, std::uint16_t id, bool resend = false) {
        const MemoryRange range{where.address, static_cast<std::uint16_t>(where.length)};
        return BuildCommand(kReadMem, id, EncodeRanges({&range, 1}), resend);
    }

    static Bytes WriteCommand(Register where, std::uint32_t value, std::uint16_t id, bool resend = false) {
        Bytes data(4);
        Store32(data, 0, value);
        return BuildCommand(kWriteMem, id, EncodeWrite(where.address, data), resend);
    }

    /// Waits until the camera's figures are as wanted.
    template <typename Condition>
    bool WaitForFigures(const std::string& name, Condition condition) const {
        const auto deadline = steady_clock::now() + seconds(20);
        while (!condition(m_simulator.StatisticsOf(name))) {
            if (steady_clock::now() > deadline)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    test_support::TemporaryFolder m_folder;
    Simulator m_simulator{m_folder / "links"};
};

}  // namespace MarlowSimTest
