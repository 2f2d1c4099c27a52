/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The cameras' descriptions as a node map over the cameras' registers
 */

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "FirmwarePort.h"
#include "GenApi/GenApi.h"

namespace MarlowSim {
namespace {

using GenICam::gcstring;

CameraOptions Of(const std::string& model) {
    CameraOptions options;
    options.model = model;
    options.serial = "4711";
    return options;
}

class DescriptionNodes : public testing::TestWithParam<const char*> {
protected:
    DescriptionNodes() : m_port(Of(GetParam())) {
        const CameraOptions options = Of(GetParam());
        m_nodes._LoadXMLFromString(DescriptionText(FindModel(options.model), options).c_str());
        m_nodes._Connect(&m_port);
    }

    bool Has(const char* name) const { return m_nodes._GetNode(name) != nullptr; }

    GenApi::IValue& Value(const char* name) const {
        auto* value = dynamic_cast<GenApi::IValue*>(m_nodes._GetNode(name));
        if (value == nullptr)
            throw std::runtime_error(std::string("no node ") + name);
        return *value;
    }

    std::string Get(const char* name) const { return Value(name).ToString().c_str(); }
    void Set(const char* name, const char* text) const { Value(name).FromString(text); }
    void Execute(const char* name) const { dynamic_cast<GenApi::ICommand&>(Value(name)).Execute(); }

    FirmwarePort m_port;
    GenApi::CNodeMapRef m_nodes;
};

TEST_P(DescriptionNodes, LoadWithoutAWarning) {
    std::string text;
    for (const auto& warning : m_nodes._GetWarnings())
        text += std::to_string(warning.Line) + ": " + warning.Message.c_str() + "\n";
    EXPECT_EQ(text, "");
    EXPECT_STREQ(m_nodes._GetModelName().c_str(), GetParam());
}

TEST_P(DescriptionNodes, AllReadableValuesCanBeRead) {
    GenApi::NodeList_t nodes;
    m_nodes._GetNodes(nodes);
    int values = 0;
    for (GenApi::INode* node : nodes) {
        auto* value = dynamic_cast<GenApi::IValue*>(node);
        if (value != nullptr && GenApi::IsReadable(node) && node->GetPrincipalInterfaceType() != GenApi::intfICommand) {
            EXPECT_NO_THROW(value->ToString()) << node->GetName().c_str();
            ++values;
        }
    }
    EXPECT_GT(values, 100);
}

TEST_P(DescriptionNodes, AllStreamableFeaturesTakeTheirOwnValues) {
    GenApi::NodeList_t nodes;
    m_nodes._GetNodes(nodes);
    int features = 0;
    for (GenApi::INode* node : nodes) {
        auto* value = dynamic_cast<GenApi::IValue*>(node);
        if (value != nullptr && node->IsStreamable() && GenApi::IsWritable(node)) {
            const gcstring text = value->ToString();
            EXPECT_NO_THROW(value->FromString(text)) << node->GetName().c_str();
            EXPECT_STREQ(value->ToString(false, true).c_str(), text.c_str()) << node->GetName().c_str();
            ++features;
        }
    }
    EXPECT_GT(features, 20);
}

TEST_P(DescriptionNodes, TellWhoTheCameraIs) {
    EXPECT_EQ(Get("DeviceVendorName"), "Marlow");
    EXPECT_EQ(Get("DeviceModelName"), GetParam());
    EXPECT_EQ(Get("DeviceFamilyName"), "Heron");
    EXPECT_EQ(Get("DeviceID"), "4711");
    EXPECT_EQ(Get("DeviceSerialNumber"), "4711");
    Set("DeviceUserID", "left");
    EXPECT_EQ(Get("DeviceUserID"), "left");
}

TEST_P(DescriptionNodes, TheBaudRateHasTheValuesOfTheDriver) {
    auto& baud = dynamic_cast<GenApi::IEnumeration&>(Value("ClSerialPortBaudRate"));
    EXPECT_EQ(baud.GetIntValue(), 15);
    std::vector<std::int64_t> values;
    GenApi::NodeList_t entries;
    baud.GetEntries(entries);
    for (GenApi::INode* entry : entries)
        values.push_back(dynamic_cast<GenApi::IEnumEntry&>(*entry).GetValue());
    EXPECT_EQ(values, (std::vector<std::int64_t>{15, 17, 18, 19, 20, 21, 22, 23}));
    baud.SetIntValue(23);
    EXPECT_EQ(Get("DeviceSerialPortBaudRate"), "Baud921600");
}

TEST_P(DescriptionNodes, TheImageMayBeMadeSmallerAndMoved) {
    auto& width = dynamic_cast<GenApi::IInteger&>(Value("Width"));
    auto& offset = dynamic_cast<GenApi::IInteger&>(Value("OffsetX"));
    const std::int64_t whole = width.GetMax();
    EXPECT_EQ(offset.GetMax(), 0);
    width.SetValue(whole / 2);
    EXPECT_EQ(offset.GetMax(), whole / 2);
    offset.SetValue(whole / 4);
    EXPECT_EQ(width.GetMax(), whole * 3 / 4);
    EXPECT_THROW(width.SetValue(whole), GenICam::GenericException);
}

TEST_P(DescriptionNodes, TheBinningChangesTheLimits) {
    auto& width = dynamic_cast<GenApi::IInteger&>(Value("Width"));
    const std::int64_t whole = width.GetValue();
    Set("BinningHorizontal", "2");
    EXPECT_EQ(width.GetValue(), whole / 2);
    EXPECT_EQ(width.GetMax(), whole / 2);
}

TEST_P(DescriptionNodes, ThePayloadFollowsTheFormat) {
    auto& payload = dynamic_cast<GenApi::IInteger&>(Value("PayloadSize"));
    auto& format = dynamic_cast<GenApi::IEnumeration&>(Value("PixelFormat"));
    GenApi::StringList_t symbolics;
    format.GetSymbolics(symbolics);
    EXPECT_EQ(symbolics.size(), FindModel(GetParam()).formats.size());
    for (const auto& pixel : FindModel(GetParam()).formats) {
        Set("PixelFormat", std::string(pixel.name).c_str());
        EXPECT_EQ(format.GetIntValue(), pixel.value);
        EXPECT_EQ(Get("PixelSize"), "Bpp" + std::to_string(pixel.Bits()));
        EXPECT_EQ(payload.GetValue(), dynamic_cast<GenApi::IInteger&>(Value("Width")).GetValue() *
                                          dynamic_cast<GenApi::IInteger&>(Value("Height")).GetValue() * pixel.Bits() /
                                          8);
    }
}

TEST_P(DescriptionNodes, AGrabLocksTheGeometry) {
    Set("TLParamsLocked", "1");
    for (const char* name : {"Width", "Height", "PixelFormat", "BinningHorizontal", "ClTapGeometry"})
        EXPECT_FALSE(GenApi::IsWritable(Value(name))) << name;
    Set("TLParamsLocked", "0");
    EXPECT_TRUE(GenApi::IsWritable(Value("Width")));
}

TEST_P(DescriptionNodes, EachTriggerHasItsOwnSettings) {
    Set("TriggerSelector", "AcquisitionStart");
    Set("TriggerDelay", "2.5");
    Set("TriggerSelector", "FrameStart");
    EXPECT_EQ(dynamic_cast<GenApi::IFloat&>(Value("TriggerDelay")).GetValue(), 0);
    Set("TriggerSelector", "AcquisitionStart");
    EXPECT_DOUBLE_EQ(dynamic_cast<GenApi::IFloat&>(Value("TriggerDelay")).GetValue(), 2.5);
}

TEST_P(DescriptionNodes, TheTableHasAValueAtEachPlace) {
    Set("LUTIndex", "255");
    EXPECT_EQ(Get("LUTValue"), "4080");
    Set("LUTValue", "9");
    Set("LUTIndex", "1");
    EXPECT_EQ(Get("LUTValue"), "16");
    Set("LUTIndex", "255");
    EXPECT_EQ(Get("LUTValue"), "9");
}

TEST_P(DescriptionNodes, ExposureAndGainAreInUnitsOfPeople) {
    Set("ExposureTime", "123.4");
    EXPECT_DOUBLE_EQ(dynamic_cast<GenApi::IFloat&>(Value("ExposureTime")).GetValue(), 123.4);
    Set("Gain", "3.5");
    EXPECT_EQ(Get("GainRaw"), "35");
    Set("Gamma", "0.5");
    EXPECT_DOUBLE_EQ(dynamic_cast<GenApi::IFloat&>(Value("Gamma")).GetValue(), 0.5);
}

TEST_P(DescriptionNodes, LoadingAUserSetShowsItsValues) {
    Set("Gain", "3.5");
    Set("UserSetSelector", "UserSet1");
    Execute("UserSetSave");
    Set("Gain", "1");
    Execute("UserSetLoad");
    EXPECT_EQ(Get("GainRaw"), "35");
}

TEST_P(DescriptionNodes, SoftwareTriggersAndTapsWork) {
    Execute("TriggerSoftware");
    EXPECT_EQ(Get("SoftwareTriggerCount"), "1");
    Set("ClTapGeometry", "Geometry_1X8_1Y");
    EXPECT_EQ(Get("DeviceTapGeometry"), "Geometry_1X8_1Y");
    EXPECT_EQ(Get("ClConfiguration"), "Full");
}

TEST_P(DescriptionNodes, MirroringOneAxisLeavesTheOther) {
    Set("ReverseX", "1");
    if (Has("ReverseY")) {
        Set("ReverseY", "1");
        Set("ReverseX", "0");
        EXPECT_EQ(Get("ReverseY"), "1");
    }
    EXPECT_EQ(Get("ReverseX"), Has("ReverseY") ? "0" : "1");
}

INSTANTIATE_TEST_SUITE_P(Models, DescriptionNodes, testing::Values("H2048", "H4096", "H8192L"));

}  // namespace
}  // namespace MarlowSim
