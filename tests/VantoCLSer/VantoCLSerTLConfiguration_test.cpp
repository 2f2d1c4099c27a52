/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of reading the configuration
 */

#include "VantoCLSer/VantoCLSerTL.h"

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "TlFixture.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kTlSource[] = "VantoCLSer/VantoCLSerTL";

class Configuration : public TlTest {};

TEST_F(Configuration, IsReadAtTheFirstRefresh) {
    WriteConfiguration(PortElement("a") + PortElement("b"));
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 2u);
    EXPECT_EQ(Readings(), 1u);
}

TEST_F(Configuration, IsNotReadAgainWithoutAChange) {
    WriteConfiguration(PortElement("a") + PortElement("b"));
    m_tl.UpdatePortConfiguration();
    m_log.Clear();
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 2u);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Configuration, IsReadAgainWhenItsTimeChanges) {
    WriteConfiguration(PortElement("a"));
    m_tl.UpdatePortConfiguration();
    WriteConfiguration(PortElement("a") + PortElement("b") + PortElement("c"));
    Touch();
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 3u);
    EXPECT_EQ(Readings(), 2u);
}

TEST_F(Configuration, IsReadAgainWhenItsPathChanges) {
    WriteConfiguration(PortElement("a"));
    m_tl.UpdatePortConfiguration();
    const scripted::TemporaryFolder other;
    other.Write("PortConfiguration_x64.xml", "<r/>");
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", other.Path());
    std::filesystem::last_write_time(other / "PortConfiguration_x64.xml",
                                     std::filesystem::last_write_time(ConfigurationPath()));
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 0u);
    EXPECT_EQ(Readings(), 2u);
}

TEST_F(Configuration, OfTheFirstSecondOfAllIsReadAgain) {
    WriteConfiguration(PortElement("a"));
    const auto first = std::chrono::file_clock::from_sys(std::chrono::sys_seconds{});
    std::filesystem::last_write_time(ConfigurationPath(), first);
    m_tl.UpdatePortConfiguration();
    m_tl.UpdatePortConfiguration();
    EXPECT_EQ(Readings(), 2u);
}

TEST_F(Configuration, IsAnErrorWhenItsFolderIsAFile) {
    m_folder.Write("file", "");
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", m_folder / "file");
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 0u);
    EXPECT_EQ(CountFormat("CLBindings file '%s' does not exist or could not be read."), 1u);
}

TEST_F(Configuration, IsEmptyWithoutAFile) {
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 0u);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Configuration, IsEmptiedWhenTheFileIsDeleted) {
    WriteConfiguration(PortElement("a"));
    m_tl.UpdatePortConfiguration();
    std::filesystem::remove(ConfigurationPath());
    m_log.Clear();
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 0u);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Configuration, IsReadAgainWhenTheFileIsBackWithItsOldTime) {
    WriteConfiguration(PortElement("a"));
    const auto time = std::filesystem::last_write_time(ConfigurationPath());
    m_tl.UpdatePortConfiguration();
    std::filesystem::rename(ConfigurationPath(), m_folder / "aside");
    m_tl.UpdatePortConfiguration();
    std::filesystem::rename(m_folder / "aside", ConfigurationPath());
    std::filesystem::last_write_time(ConfigurationPath(), time);
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 1u);
    EXPECT_EQ(Readings(), 2u);
}

TEST_F(Configuration, IsEmptyWithoutItsFolder) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", m_folder / "missing");
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 0u);
}

TEST_F(Configuration, IsAnErrorWhenItsPathDoesNotFit) {
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", std::string(250, 'x'));
    constexpr char kText[] = "Couldn't get full path to the PortConfiguration.xml file.";
    EXPECT_EQ(ThrownBy<GenICam::GenericException>([&] { m_tl.UpdatePortConfiguration(); }),
              (Thrown{"GenericException", kText, kTlSource}));
    EXPECT_THAT(LoggedIn(kTl), ElementsAre(Logged{kError, kText, {}}));
}

TEST_F(Configuration, KeepsItsEntriesWhenTheFileIsDamaged) {
    WriteConfiguration(PortElement("a"));
    const auto time = std::filesystem::last_write_time(ConfigurationPath());
    m_tl.UpdatePortConfiguration();
    m_folder.Write("PortConfiguration_x64.xml", "<r>");
    Touch();
    EXPECT_THROW(m_tl.UpdatePortConfiguration(), GenICam::RuntimeException);
    // Path and time are still those of the good one: with that time the file counts as read.
    std::filesystem::last_write_time(ConfigurationPath(), time);
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 1u);
}

TEST_F(Configuration, IsReadByManyThreadsAtOnce) {
    WriteConfiguration(PortElement("a"));
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([this] {
            for (int round = 0; round < 50; ++round)
                EXPECT_EQ(m_tl.UpdatePortConfiguration(), 1u);
        });
    for (int round = 0; round < 50; ++round)
        Touch();
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(Configuration, LeavesTheLockToOthersWhileItIsRead) {
    WriteConfiguration(PortElement("a"));
    std::future<void> other;
    std::future_status status = std::future_status::deferred;
    const tracelog::LogSubscription whileReading(
        [&](const tracelog::LogMessage& message) {
            if (message.format != kLoading)
                return;
            other = std::async(std::launch::async, [this] { m_tl.GetOrCreatePort("a"); });
            status = other.wait_for(std::chrono::seconds(60));
        },
        "Vanto.CLSer.TL:debug");
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 1u);
    EXPECT_EQ(status, std::future_status::ready);
}

TEST_F(Configuration, LiesInTheWorkingFolderWithAnEmptyVariable) {
    WriteConfiguration(PortElement("a") + PortElement("b"));
    const scripted::ScopedVariable folder("VANTO_CL_BINDINGS", "");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    EXPECT_EQ(m_tl.UpdatePortConfiguration(), 2u);
    std::filesystem::current_path(before);
    EXPECT_EQ(CountLogged(kTl, {kDebug, kLoading, {"PortConfiguration_x64.xml"}}), 1u);
}

}  // namespace
}  // namespace Vanto
