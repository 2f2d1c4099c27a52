/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is kept of the camera's words about frames
 */

#include "VantoCLSer/stream/ResultData.h"

#include <future>

#include "StreamTest.h"

extern const char kStreamGrabberDescription[];

namespace {

using namespace std::chrono_literals;
using namespace stream_test;
using namespace Vanto;

std::string CachedRegister(const std::string& name, std::int64_t address, const std::string& caching = "WriteThrough") {
    std::string xml = CameraXml::Register(name, address);
    return xml.replace(xml.find("NoCache"), 7, caching);
}

/// Two node maps without a device, and the data that are read from the one.
class ResultData : public testing::Test {
protected:
    explicit ResultData(const CameraXml& xml = CameraXml()) {
        m_camera._LoadXMLFromString(xml.Text().c_str());
        m_camera._Connect(&m_port);
        m_stream._LoadXMLFromString(kStreamGrabberDescription);
        m_nodes.emplace(m_camera._GetNodeMap());
        m_nodes->Bind(m_stream._GetNodeMap());
        m_data.emplace(m_camera._GetNodeMap(), *m_nodes);
        m_data->Watch();
        m_port.onRead = [this] { ++m_reads; };
    }

    GenApi::CLock& Lock() { return m_camera._GetNodeMap()->GetLock(); }
    void Set(const char* node, std::int64_t value) { GenApi::CIntegerPtr(m_camera._GetNode(node))->SetValue(value); }
    std::optional<GrabResult> Read() {
        GrabResult result;
        if (!m_data->Read(result, [] { return false; }))
            return std::nullopt;
        return result;
    }
    /// Reads on another thread while this one has the node map locked, and gives up where nothing is kept.
    std::optional<GrabResult> ReadKept() {
        const GenApi::AutoLock lock(Lock());
        return std::async(std::launch::async,
                          [this]() -> std::optional<GrabResult> {
                              GrabResult result;
                              if (!m_data->Read(result, [] { return true; }))
                                  return std::nullopt;
                              return result;
                          })
            .get();
    }
    std::int32_t KeptOffsetX() {
        const auto kept = ReadKept();
        return kept ? kept->offsetX : -1000;
    }

    MemoryPort m_port;
    GenApi::CNodeMapRef m_camera{"Device"};
    GenApi::CNodeMapRef m_stream{"Device"};
    std::optional<CGrabberNodes> m_nodes;
    std::optional<CResultData> m_data;
    int m_reads = 0;
    tracelog::LogRecorder m_log{"Vanto.CLSer.Stream:trace"};
};

TEST_F(ResultData, AreReadFromTheCamera) {
    Set("OffsetX", 3);
    Set("OffsetY", 5);
    const auto result = Read();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->pixelType, PixelType_Mono8);
    EXPECT_EQ(result->offsetX, 3);
    EXPECT_EQ(result->offsetY, 5);
}

TEST_F(ResultData, AreKeptForWhoCannotHaveTheNodeMap) {
    Set("OffsetX", 3);
    Set("OffsetY", 5);
    Read();
    const auto kept = ReadKept();
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->pixelType, PixelType_Mono8);
    EXPECT_EQ(kept->offsetX, 3);
    EXPECT_EQ(kept->offsetY, 5);
}

TEST_F(ResultData, AreNotKnownBeforeTheyAreRead) {
    EXPECT_FALSE(ReadKept());
    EXPECT_EQ(m_log.CountText("Could not read values from device nodemap (It is locked by who ends the grab.)",
                              tracelog::kError),
              1U);
}

TEST_F(ResultData, AreNotKeptUnwatched) {
    m_data->Unwatch();
    Read();
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreForgottenWhenTheWatchEnds) {
    Read();
    m_data->Unwatch();
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreForgottenOnDemand) {
    Read();
    m_data->Forget();
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreForgottenWhenANodeChanges) {
    for (const char* node : {"OffsetX", "OffsetY"}) {
        Read();
        Set(node, 7);
        EXPECT_FALSE(ReadKept()) << node;
    }
    Read();
    GenApi::CEnumerationPtr(m_camera._GetNode("PixelFormat"))->SetIntValue(0x01100005);
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreReadAgainAtOnceWhileFramesCome) {
    m_data->SetFollowing(true);
    Set("OffsetX", 7);
    EXPECT_EQ(KeptOffsetX(), 7);
    m_data->SetFollowing(false);
    Set("OffsetX", 8);
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, CanBeReadInAdvance) {
    Set("OffsetX", 9);
    m_data->Refresh();
    EXPECT_EQ(KeptOffsetX(), 9);
}

TEST_F(ResultData, AreForgottenWithTheCachesOfTheMap) {
    Read();
    m_camera._GetNodeMap()->InvalidateNodes();
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreForgottenWhenANodeMayNotBeReadAnyMore) {
    Read();
    m_camera._GetNode("OffsetX")->ImposeAccessMode(GenApi::NA);
    EXPECT_FALSE(ReadKept());
    Read();
    EXPECT_EQ(KeptOffsetX(), -1);
}

TEST_F(ResultData, AreNotKeptWhenTheyMakeNoSense) {
    Read();
    Set("OffsetY", 0x80000000);
    EXPECT_FALSE(Read());
    EXPECT_FALSE(ReadKept());
}

TEST_F(ResultData, AreWaitedForUntilAnotherThreadHasReadThem) {
    const GenApi::AutoLock lock(Lock());
    std::promise<void> isWaiting;
    auto read = std::async(std::launch::async, [&] {
        bool hasAsked = false;
        GrabResult result;
        return m_data->Read(result, [&] {
            if (!std::exchange(hasAsked, true))
                isWaiting.set_value();
            return false;
        });
    });
    isWaiting.get_future().wait();
    m_data->Refresh();
    EXPECT_TRUE(read.get());
}

class ResultDataOfCachedRegisters : public ResultData {
protected:
    ResultDataOfCachedRegisters()
        : ResultData(CameraXml()
                         .With("OffsetX", CachedRegister("OffsetX", 0x100))
                         .With("OffsetY", CachedRegister("OffsetY", 0x200, "WriteAround"))) {}
};

TEST_F(ResultDataOfCachedRegisters, CostNothingOnTheLineWhenNothingHasChanged) {
    Read();
    EXPECT_EQ(m_reads, 2);
    for (int frame = 0; frame < 10; ++frame)
        EXPECT_TRUE(Read());
    EXPECT_EQ(m_reads, 2);
    EXPECT_TRUE(ReadKept());
    EXPECT_EQ(m_reads, 2);
}

TEST_F(ResultDataOfCachedRegisters, CostOneReadWhenAWriteChangedWhatIsNotCached) {
    Read();
    m_reads = 0;
    m_data->SetFollowing(true);
    Set("OffsetX", 3);
    EXPECT_EQ(m_reads, 0);
    Set("OffsetY", 4);
    EXPECT_EQ(m_reads, 1);
    EXPECT_EQ(ReadKept()->offsetY, 4);
}

TEST_F(ResultDataOfCachedRegisters, AreReadAgainAfterACameraThatDidNotAnswer) {
    m_data->SetFollowing(true);
    Read();
    m_port.isGone = true;
    m_camera._GetNodeMap()->InvalidateNodes();
    EXPECT_TRUE(m_log.GetMessages().empty());  // nobody has asked
    EXPECT_FALSE(ReadKept());
    EXPECT_FALSE(Read());
    EXPECT_EQ(m_log.CountFormat("Could not read values from device nodemap (%s)", tracelog::kError), 2U);
    m_port.isGone = false;
    EXPECT_TRUE(Read());
    EXPECT_TRUE(ReadKept());
}

class ResultDataOfUncachedRegister : public ResultData {
protected:
    ResultDataOfUncachedRegister() : ResultData(CameraXml().With("OffsetX", CameraXml::Register("OffsetX", 0x100))) {}
};

TEST_F(ResultDataOfUncachedRegister, AreNeverKept) {
    EXPECT_TRUE(Read());
    EXPECT_FALSE(ReadKept());
    EXPECT_TRUE(Read());
    EXPECT_EQ(m_reads, 2);
}

}  // namespace
