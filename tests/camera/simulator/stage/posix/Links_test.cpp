/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The links that name the lines of simulated cameras
 */

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "../../../../support/TemporaryFolder.h"
#include "../../Host.h"
#include "simulator/Simulator.h"

namespace MarlowSimTest {
namespace {

namespace fs = std::filesystem;

class SimulatorLinks : public testing::Test {
protected:
    test_support::TemporaryFolder m_folder;
    MarlowSim::Simulator m_simulator{m_folder / "links"};
    const fs::path m_link = m_folder / "links/cam0";
};

TEST_F(SimulatorLinks, NameTheLines) {
    m_simulator.Add("cam0");
    EXPECT_EQ(m_simulator.LinkOf("cam0"), m_link);
    EXPECT_TRUE(fs::is_symlink(m_link));
}

TEST_F(SimulatorLinks, DoNotReplaceAFile) {
    std::ofstream(m_link) << "mine";
    EXPECT_THROW(m_simulator.Add("cam0"), std::system_error);
    EXPECT_TRUE(fs::is_regular_file(m_link));
}

TEST_F(SimulatorLinks, ReplaceOneThatWasLeftBehind) {
    fs::create_symlink("/nowhere", m_link);
    m_simulator.Add("cam0");
    EXPECT_EQ(Host(m_link).Number(gencp::abrm::kGenCpVersion), 0x00010003U);
}

}  // namespace
}  // namespace MarlowSimTest
