/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Node maps of devices: from files and texts, with one injected fragment at most, and those of chunks
 */

#include "vanto/internal/VantoDevicePrivateImpl.h"

#include "scripted/Thrown.h"
#include "tests/VantoCLSer/device/DeviceFixture.h"
#include "tests/include/vanto/internal/TestTl.h"
#include "tests/support/TemporaryFolder.h"

namespace clser_test {
namespace {

using scripted::Thrown;
using scripted::ThrownBy;

const char kChunkNodes[] = "<Category Name=\"ChunkData\"></Category>";

struct UnknownDevice : TestDevice {
    UnknownDevice() : TestDevice(CDeviceInfo()) {}
};

class ChunkDevice : public Vanto::CVantoDevicePrivateImpl<UnknownDevice> {
public:
    GenApi::INodeMap* GetNodeMap() override { return map._GetNodeMap(); }
    void CreateNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) override {
        LoadFromFile(map, path, injected);
    }
    void CreateNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) override {
        LoadFromString(map, xml, injected);
    }
    bool SupportsChunkParsing() const override { return supportsChunks; }
    void DestroySelf() override {}

    GenApi::CNodeMapRef map{"Device"};
    bool supportsChunks = true;
};

class PrivateImpl : public testing::Test {
protected:
    void LoadWithChunks() { m_device.CreateNodeMapFromString(Description(kChunkNodes).c_str(), {}); }

    ChunkDevice m_device;
    test_support::TemporaryFolder m_folder;
    const gcstring m_path = m_folder.Write("device.xml", Description(kChunkNodes)).c_str();
    const gcstring_vector m_one{kInjected};
    const gcstring_vector m_two{kInjected, kInjected};
};

TEST_F(PrivateImpl, LoadsAFileOrATextWithoutAFragment) {
    m_device.CreateNodeMapFromFile(m_path, {});
    EXPECT_NE(m_device.map._GetNode("Width"), nullptr);
    EXPECT_EQ(m_device.map._GetNode("Injected"), nullptr);
    ChunkDevice other;
    other.CreateNodeMapFromString(Description("").c_str(), {});
    EXPECT_NE(other.map._GetNode("Width"), nullptr);
    EXPECT_EQ(other.map._GetNode("Injected"), nullptr);
}

TEST_F(PrivateImpl, InjectsOneFragmentIntoAFileOrAText) {
    m_device.CreateNodeMapFromFile(m_path, m_one);
    EXPECT_NE(m_device.map._GetNode("Width"), nullptr);
    EXPECT_NE(m_device.map._GetNode("Injected"), nullptr);
    ChunkDevice other;
    other.CreateNodeMapFromString(Description("").c_str(), m_one);
    EXPECT_NE(other.map._GetNode("Width"), nullptr);
    EXPECT_NE(other.map._GetNode("Injected"), nullptr);
}

TEST_F(PrivateImpl, RefusesTwoFragmentsBeforeItLooksForAFile) {
    const Thrown tooMany{"RuntimeException",
                         "Cannot create node map. Too many strings(2) to inject. Currently the injection of only one "
                         "XML string is supported.",
                         "include/vanto/internal/VantoDevicePrivateImpl"};
    EXPECT_EQ(ThrownBy([&] { m_device.CreateNodeMapFromFile("/none.xml", m_two); }), tooMany);
    EXPECT_EQ(ThrownBy([&] { m_device.CreateNodeMapFromString("", m_two); }), tooMany);
    EXPECT_EQ(ThrownBy([&] { m_device.CreateChunkNodeMapFromFile("/none.xml", m_two); }), tooMany);
    EXPECT_EQ(ThrownBy([&] { m_device.CreateChunkNodeMapFromString("", m_two); }), tooMany);
}

TEST_F(PrivateImpl, MakesMapsOfChunksFromATextOrAFile) {
    LoadWithChunks();
    EXPECT_FALSE(m_device.IsChunkParsingAvailable());
    EXPECT_EQ(m_device.CreateChunkNodeMapCopy(), nullptr);
    m_device.CreateChunkNodeMapFromString(Description(kChunkNodes).c_str(), {});
    EXPECT_TRUE(m_device.IsChunkParsingAvailable());
    const auto copy = m_device.CreateChunkNodeMapCopy();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy->_GetNode("ChunkData"), nullptr);
    EXPECT_NE(m_device.CreateChunkNodeMapCopy(), copy);
    m_device.CreateChunkNodeMapFromFile(m_path, m_one);
    EXPECT_TRUE(m_device.IsChunkParsingAvailable());
}

TEST_F(PrivateImpl, ForgetsTheMapOfChunksWhenAnotherCanNotBeMade) {
    LoadWithChunks();
    m_device.CreateChunkNodeMapFromString(Description(kChunkNodes).c_str(), {});
    EXPECT_THROW(m_device.CreateChunkNodeMapFromString("no description", {}), GenICam::GenericException);
    EXPECT_FALSE(m_device.IsChunkParsingAvailable());
    EXPECT_EQ(m_device.CreateChunkNodeMapCopy(), nullptr);
}

TEST_F(PrivateImpl, MakesNoMapOfChunksForADeviceWithoutThem) {
    const std::string xml = Description(kChunkNodes);
    m_device.CreateChunkNodeMapFromString(xml.c_str(), {});
    EXPECT_FALSE(m_device.IsChunkParsingAvailable()) << "no node map";
    m_device.supportsChunks = false;
    LoadWithChunks();
    m_device.CreateChunkNodeMapFromString(xml.c_str(), {});
    m_device.supportsChunks = true;
    EXPECT_FALSE(m_device.IsChunkParsingAvailable()) << "not supported";
    ChunkDevice plain;
    plain.CreateNodeMapFromString(Description("").c_str(), {});
    plain.CreateChunkNodeMapFromString(xml.c_str(), {});
    EXPECT_FALSE(plain.IsChunkParsingAvailable()) << "no node of that name";
}

TEST_F(PrivateImpl, OffersNoChunksOnceTheyAreNotSupported) {
    LoadWithChunks();
    m_device.CreateChunkNodeMapFromString(Description(kChunkNodes).c_str(), {});
    m_device.supportsChunks = false;
    EXPECT_FALSE(m_device.IsChunkParsingAvailable());
}

}  // namespace
}  // namespace clser_test
