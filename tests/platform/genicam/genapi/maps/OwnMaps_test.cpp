/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The node maps that the plug-in itself lives in: transport-layer parameters and stream grabber
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

namespace {

/// The registers that a stream grabber serves.
class GrabberPort final : public IPort {
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override {
        if (address == 0xC05EC0C10C && length == 4)
            *static_cast<std::uint32_t*>(buffer) = 85000000;
        else if (address == 0x90C157A7E && length == 1)
            *static_cast<std::int8_t*>(buffer) = powerState;
    }
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override {
        if (address == 0x90C157A7E && length == 1)
            powerState = *static_cast<const std::int8_t*>(buffer);
    }
    std::int8_t powerState = 1;
};

class OwnMaps : public testing::Test {
protected:
    void LoadLayer() { map._LoadXMLFromFile(VANTO_TEST_DATA "/TransportLayer.xml"); }
    void LoadGrabber() {
        map._LoadXMLFromFile(VANTO_TEST_DATA "/StreamGrabber.xml");
        ASSERT_TRUE(map._Connect(&port, "Device"));
    }
    CNodeMapRef map{"Device"};
    GrabberPort port;
};

}  // namespace

TEST_F(OwnMaps, LoadWithoutWarnings) {
    LoadLayer();
    EXPECT_TRUE(map._GetWarnings().empty());
    EXPECT_EQ(map._GetModelName(), "CLSerTransportLayer");
    LoadGrabber();
    EXPECT_TRUE(map._GetWarnings().empty());
    EXPECT_EQ(map._GetModelName(), "CLSerStreamGrabber");
}

TEST_F(OwnMaps, TheTransportLayerMapNeedsNoPort) {
    LoadLayer();
    EXPECT_FALSE(map._Connect(&port, "Device"));
    CIntegerPtr timeout = map._GetNode("AutoCloseTimeout");
    EXPECT_EQ(timeout->GetMax(), 86400);
    EXPECT_EQ(timeout->GetRepresentation(), Linear);
    timeout->SetValue(500);
    EXPECT_EQ(timeout->GetValue(), 500);
    EXPECT_THROW(timeout->SetValue(86401), OutOfRangeException);
}

TEST_F(OwnMaps, AnInvalidatedTimeOutTellsItsValue) {
    LoadLayer();
    std::vector<std::int64_t> told;
    INode* node = map._GetNode("AutoCloseTimeout");
    const CallbackHandleType handle =
        Register(node, [&told](INode* changed) { told.push_back(CIntegerPtr(changed)->GetValue()); });
    node->InvalidateNode();
    CIntegerPtr(node)->SetValue(500);
    EXPECT_EQ(told, (std::vector<std::int64_t>{0, 500}));
    EXPECT_TRUE(node->DeregisterCallback(handle));
    EXPECT_FALSE(node->DeregisterCallback(handle));
}

TEST_F(OwnMaps, AFlagMayBeSetAndThenFixed) {
    LoadLayer();
    CIntegerPtr flag = map._GetNode("BadFirmware");
    flag->SetValue(1);
    flag->GetNode()->ImposeAccessMode(RO);
    EXPECT_EQ(flag->GetAccessMode(), RO);
    EXPECT_THROW(flag->SetValue(0), AccessException);
    EXPECT_EQ(flag->GetValue(), 1);
    EXPECT_FALSE(flag->GetNode()->IsFeature());
}

TEST_F(OwnMaps, ThePayloadFollowsItsFactors) {
    LoadGrabber();
    CIntegerPtr payload = map._GetNode("PayloadSize");
    EXPECT_EQ(payload->GetValue(), 1024 * 513 * 2);
    EXPECT_EQ(payload->GetAccessMode(), RO);
    CIntegerPtr(map._GetNode("Width"))->SetValue(640);
    CIntegerPtr(map._GetNode("PixelSizeByte"))->SetValue(3);
    EXPECT_EQ(payload->GetValue(), 640 * 513 * 3);
}

TEST_F(OwnMaps, TheBufferSizeCanBeSetToThePayload) {
    LoadGrabber();
    CIntegerPtr buffer = map._GetNode("MaxBufferSize");
    buffer->SetValue(CIntegerPtr(map._GetNode("PayloadSize"))->GetValue(), true);
    EXPECT_EQ(buffer->GetValue(), 1050624);
}

TEST_F(OwnMaps, RegistersReachTheGrabber) {
    LoadGrabber();
    EXPECT_EQ(CIntegerPtr(map._GetNode("PixelClockDetected"))->GetValue(), 85000000);
    EXPECT_TRUE(CBooleanPtr(map._GetNode("PoCLState"))->GetValue());
    CBooleanPtr(map._GetNode("PoCLState"))->SetValue(false);
    EXPECT_EQ(port.powerState, 0);
}

TEST_F(OwnMaps, ThePowerStateIsThereAsItsRegisterSays) {
    LoadGrabber();
    const std::vector<std::pair<std::int8_t, EAccessMode>> cases = {{0, RW}, {1, RW}, {55, NI}, {-1, NA}};
    for (const auto& [state, mode] : cases) {
        port.powerState = state;
        map._InvalidateNodes();
        EXPECT_EQ(map._GetNode("PoCLState")->GetAccessMode(), mode) << static_cast<int>(state);
    }
}

TEST_F(OwnMaps, KeepTheirTexts) {
    LoadGrabber();
    EXPECT_EQ(map._GetNode("Root")->GetDescription(), "Change following values to adopt driver ressources.");
    EXPECT_EQ(map._GetNode("Width")->GetToolTip(), "Height of the AOI");
    EXPECT_EQ(map._GetNode("AOI")->GetDisplayName(), "AOI Controls");
    EXPECT_EQ(map._GetNode("Width")->GetDisplayName(), "Width");
    EXPECT_EQ(map._GetNode("Debug")->GetVisibility(), Invisible);
    EXPECT_EQ(map._GetNode("PayloadSize")->GetNameSpace(), Standard);
    EXPECT_EQ(map._GetNode("PayloadSize")->GetName(true), "Std::PayloadSize");
}

TEST_F(OwnMaps, CategoriesLeadToTheFeatures) {
    LoadGrabber();
    FeatureList_t features;
    CCategoryPtr(map._GetNode("Root"))->GetFeatures(features);
    std::vector<std::string> names;
    for (IValue* feature : features)
        names.push_back(feature->GetNode()->GetName().str());
    EXPECT_EQ(names,
              (std::vector<std::string>{"MaxNumBuffer", "MaxBufferSize", "PayloadSize", "AOI", "StreamGrabber"}));
    EXPECT_FALSE(map._GetNode("DebugData1") == nullptr);
}

// A camera's map drives the grabber's: the callback runs inside the camera map's lock and sets the other map.
TEST_F(OwnMaps, AChangeInOneMapMayBeCopiedToAnother) {
    LoadGrabber();
    CNodeMapRef camera;
    camera._LoadXMLFromString(Describe("<Integer Name='Width'><Value>100</Value></Integer>"));
    CIntegerPtr own = map._GetNode("Width");
    INode* node = camera._GetNode("Width");
    Register(node, [own](INode* changed) { own->SetValue(CIntegerPtr(changed)->GetValue()); });
    node->InvalidateNode();
    EXPECT_EQ(own->GetValue(), 100);
    CIntegerPtr(node)->SetValue(200);
    EXPECT_EQ(CIntegerPtr(map._GetNode("PayloadSize"))->GetValue(), 200 * 513 * 2);
}

TEST_F(OwnMaps, ABaudRateIsChosenAmongTheEntriesThatTheLineCanDo) {
    std::string entries;
    const std::vector<std::pair<const char*, int>> rates = {
        {"Baud9600", 15}, {"Baud38400", 18}, {"Baud57600", 19}, {"Baud115200", 20}};
    for (const auto& [name, value] : rates)
        entries +=
            std::string("<EnumEntry Name='") + name + "'><Value>" + std::to_string(value) + "</Value></EnumEntry>";
    map._LoadXMLFromString(
        Describe("<Enumeration Name='ClSerialPortBaudRate'>" + entries + "<Value>15</Value></Enumeration>"));
    CEnumerationPtr rate = map._GetNode("ClSerialPortBaudRate");
    NodeList_t list;
    rate->GetEntries(list);
    ASSERT_EQ(list.size(), 4U);
    for (INode* node : list) {
        CEnumEntryPtr entry = node;
        if (entry->GetValue() != 18 && entry->GetValue() != 20)
            node->ImposeAccessMode(NA);
    }
    StringList_t symbolics;
    rate->GetSymbolics(symbolics);
    EXPECT_EQ(symbolics, (StringList_t{"Baud38400", "Baud115200"}));
    EXPECT_EQ(rate->GetIntValue(), 15);
    rate->SetIntValue(20, true);
    EXPECT_THROW(rate->SetIntValue(0, true), OutOfRangeException);
    EXPECT_THROW(rate->FromString("Baud57600", true), AccessException);
    EXPECT_EQ(rate->ToString(), "Baud115200");
}

}  // namespace genapitest
