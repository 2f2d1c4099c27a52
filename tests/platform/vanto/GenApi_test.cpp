/* SPDX-License-Identifier: Apache-2.0 */
// What the base library makes of GenApi's node maps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/GenApi.h"
#include "vanto/LogListener.h"
#include "vanto/PixelTypeMapper.h"
#include "vanto/TransportLayerParams.h"

namespace {

using namespace Vanto;

constexpr const char* kHead =
    "<RegisterDescription xmlns='http://www.genicam.org/GenApi/Version_1_0' ModelName='M' VendorName='V' "
    "StandardNameSpace='None' SchemaMajorVersion='1' SchemaMinorVersion='0' SchemaSubMinorVersion='0' "
    "MajorVersion='1' MinorVersion='0' SubMinorVersion='0' ProductGuid='00000000-0000-0000-0000-000000000000' "
    "VersionGuid='00000000-0000-0000-0000-000000000000'>";

class Loaded : public GenApi::CNodeMapRef {
public:
    explicit Loaded(const std::string& nodes) { _LoadXMLFromString(kHead + nodes + "</RegisterDescription>"); }
    template <class Interface>
    Interface* Get(const char* name) const {
        return dynamic_cast<Interface*>(_GetNode(name));
    }
};

TEST(TransportLayerParams, HaveTheSwitchForChunkNodeMaps) {
    GenApi::INodeMap* const nodeMap = CreateDefaultTransportLayerParams();
    ASSERT_NE(nodeMap, nullptr);
    auto* const enable = dynamic_cast<GenApi::IBoolean*>(nodeMap->GetNode("ChunkNodeMapSupportEnable"));
    ASSERT_NE(enable, nullptr);
    EXPECT_EQ(enable->GetAccessMode(), GenApi::RW);
    EXPECT_TRUE(enable->GetValue());
    enable->SetValue(false);
    EXPECT_FALSE(enable->GetValue());
    DestroyDefaultTransportLayerParams(nodeMap);
}

TEST(TransportLayerParams, AreEachTheirOwn) {
    GenApi::INodeMap* const one = CreateDefaultTransportLayerParams();
    GenApi::INodeMap* const two = CreateDefaultTransportLayerParams();
    EXPECT_NE(one, two);
    DestroyDefaultTransportLayerParams(one);
    EXPECT_NE(two->GetNode("ChunkNodeMapSupportEnable"), nullptr);
    DestroyDefaultTransportLayerParams(two);
    DestroyDefaultTransportLayerParams(nullptr);
}

TEST(TransportLayerParams, LoadWithoutAWarning) {
    const tracelog::LogRecorder log("GenApi.NodeMap:warning");
    DestroyDefaultTransportLayerParams(CreateDefaultTransportLayerParams());
    EXPECT_TRUE(log.GetMessages().empty());
}

TEST(CPixelTypeMapper, MapsByTheNamesOfTheEntries) {
    const Loaded nodes(
        "<Enumeration Name='PixelFormat'><EnumEntry Name='Mono8'><Value>7</Value></EnumEntry>"
        "<EnumEntry Name='BayerRG12'><Value>3</Value></EnumEntry>"
        "<EnumEntry Name='RGB8Packed'><Value>35127316</Value></EnumEntry>"
        "<EnumEntry Name='Own'><Value>17301505</Value></EnumEntry><Value>7</Value></Enumeration>");
    const CPixelTypeMapper mapper(nodes.Get<GenApi::IEnumeration>("PixelFormat"));
    EXPECT_TRUE(mapper.IsValid());
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(7), PixelType_Mono8);
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(3), PixelType_BayerRG12);
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(35127316), PixelType_RGB8);
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(17301505), PixelType_Undefined);
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(8), PixelType_Undefined);
    EXPECT_EQ(static_cast<std::uint32_t>(PixelType_Undefined), 0xFFFFFFFFu);
}

TEST(CPixelTypeMapper, WithoutANodeEverythingIsUndefined) {
    const CPixelTypeMapper mapper(nullptr);
    EXPECT_FALSE(mapper.IsValid());
    EXPECT_EQ(mapper.GetVantoPixelTypeFromNodeValue(0x01080001), PixelType_Undefined);
}

TEST(CPixelTypeMapper, KnowsNamesBothWays) {
    EXPECT_EQ(CPixelTypeMapper::GetVantoPixelTypeByName("Mono16"), PixelType_Mono16);
    EXPECT_EQ(CPixelTypeMapper::GetVantoPixelTypeByName("mono16"), PixelType_Undefined);
    EXPECT_EQ(CPixelTypeMapper::GetVantoPixelTypeByName(nullptr), PixelType_Undefined);
    EXPECT_STREQ(CPixelTypeMapper::GetNameByPixelType(PixelType_RGB8), "RGB8");
    EXPECT_STREQ(CPixelTypeMapper::GetNameByPixelType(PixelType_Undefined), "Undefined");
}

TEST(EPixelType, TellsTheBitsOfAPixelInMemory) {
    EXPECT_EQ(BitPerPixel(PixelType_Mono8), 8u);
    EXPECT_EQ(BitPerPixel(PixelType_Mono12), 16u);
    EXPECT_EQ(BitPerPixel(PixelType_Mono12p), 12u);
    EXPECT_EQ(BitPerPixel(PixelType_RGB8), 24u);
    EXPECT_EQ(BitPerPixel(PixelType_Undefined), 0u);
}

TEST(WarningLog, TellsFaultsOfADescription) {
    const tracelog::LogRecorder log("GenApi.NodeMap:warning");
    const Loaded nodes("<Integer Name='I'><Value>1</Value><NoSuchElement/></Integer>");
    const auto messages = log.GetMessages();
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages[0].level, tracelog::kWarning);
    EXPECT_THAT(messages[0].text, testing::HasSubstr("NoSuchElement"));
}

}  // namespace
