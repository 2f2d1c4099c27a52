/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description that a stream grabber's node map is made of, element by element
 */

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../../support/Flattened.h"

extern const char kStreamGrabberDescription[];

namespace {

#define RAISING " Raising this value may cause higher resource demands on a subsequent PrepareGrab call."
#define AREA "This category includes items used to set the size and position of the area of interest"

/// A node: its element with attributes, then its children as "Name=Text".
using Node = std::vector<std::string>;

const std::vector<Node> kNodes = {
    {R"(Category Name="Root")", "ToolTip=CLSer stream parameters",
     "Description=Change following values to adopt driver ressources.", "pFeature=MaxNumBuffer",
     "pFeature=MaxBufferSize", "pFeature=PayloadSize", "pFeature=AOI", "pFeature=StreamGrabber"},
    {R"(Integer Name="MaxNumBuffer")", "ToolTip=Number of buffers to be used.",
     "Description=Maximum number of Buffers that are going to be used simultaneously." RAISING, "Value=5", "Min=1"},
    {R"(Integer Name="MaxBufferSize")", "ToolTip=Buffer size in bytes",
     "Description=Size of the greatest buffer to be used. Unit is bytes." RAISING, "Value=5760000", "Min=1"},
    {R"(Integer Name="PayloadSize" NameSpace="Standard")", "ToolTip=Size of the payload in bytes",
     "Description=Size of the payload in bytes. This is the total number of bytes sent in the payload. Image data + "
     "chunk data if present. No packet headers.",
     "Visibility=Expert", "pValue=PayloadSize_CtrlValueFao", "Representation=PureNumber"},
    {R"(Integer Name="PixelSizeByte" NameSpace="Standard")", "ToolTip=Pixel Size in Bytes",
     "Description=Bytes needed to store one pixel in memory.", "Visibility=Expert", "Value=2",
     "Representation=PureNumber"},
    {R"(IntSwissKnife Name="PayloadSize_CtrlValueFao" NameSpace="Custom")", "Visibility=Invisible",
     R"(pVariable Name="W"=Width)", R"(pVariable Name="H"=Height)", R"(pVariable Name="S"=PixelSizeByte)",
     "Formula=W * H * S"},
    {R"(Category Name="AOI" NameSpace="Custom")", "ToolTip=" AREA, "Description=" AREA, "DisplayName=AOI Controls",
     "pFeature=Width", "pFeature=Height", "pFeature=CopyAOIFromCamera"},
    {R"(Integer Name="Height")", "ToolTip=Height of the AOI on the grabber",
     "Description=The height of the AOI configured on the grabber.", "Visibility=Beginner", "Value=513", "Min=1"},
    {R"(Integer Name="Width")", "ToolTip=Height of the AOI",
     "Description=The height of the AOI configured on the grabber.", "Visibility=Beginner", "Value=1024", "Min=1"},
    {R"(Boolean Name="CopyAOIFromCamera")", "ToolTip=Copy AOI From Camera",
     "Description=Copies the AOI values from the camera nodemap if possible.", "DisplayName=Copy AOI from Camera",
     "Visibility=Beginner", "Value=1"},
    {R"(Category Name="StreamGrabber")", "ToolTip=Stream Grabber related features", "pFeature=OutputThread",
     "pFeature=PixelClockDetected", "pFeature=PoCLState"},
    {R"(Category Name="OutputThread")", "ToolTip=Parameter of the output thread.", "Visibility=Expert",
     "pFeature=ThreadPriority"},
    {R"(Integer Name="ThreadPriority")", "ToolTip=Priority value of the output thread (default=0).",
     "Description=When the stream grabber is opened the output thread is started. Non-zero values are used to set the "
     "thread priority. It is not changed until the stream grabber is re-opened again.",
     "Visibility=Expert", "Value=0", "Min=-15", "Max=15"},
    {R"(IntReg Name="PixelClockDetected")", "ToolTip=Pixel clock frequency as detected by the grabber.",
     "Description=The Pixel clock frequency detected by the grabber in Hz.", "Visibility=Expert",
     "Address=0xc05ec0c10c", "Length=4", "AccessMode=RO", "pPort=Device", "Sign=Unsigned", "Endianess=LittleEndian"},
    {R"(Boolean Name="PoCLState")", "ToolTip=PoCL State", "Description=PoCL State", "DisplayName=PoCL State",
     "Visibility=Expert", "pIsImplemented=PoCLStateReg_Impl", "pIsAvailable=PoCLStateReg_Avail", "pValue=PoCLStateReg"},
    {R"(IntReg Name="PoCLStateReg")", "ToolTip=!", "Description=!", "Visibility=Expert", "Address=0x90c157a7e",
     "Length=1", "AccessMode=RW", "pPort=Device", "Sign=Signed", "Endianess=LittleEndian"},
    {R"(IntSwissKnife Name="PoCLStateReg_Impl" NameSpace="Custom")", "Visibility=Invisible",
     R"(pVariable Name="P"=PoCLStateReg)", "Formula=P = 55 ? 0 : 1"},
    {R"(IntSwissKnife Name="PoCLStateReg_Avail" NameSpace="Custom")", "Visibility=Invisible",
     R"(pVariable Name="P"=PoCLStateReg)", "Formula=P &gt;= 0 ? 1 : 0"},
    {R"(Category Name="Debug")", "ToolTip=Debug", "Visibility=Invisible", "pFeature=DebugData1"},
    {R"(Integer Name="DebugData1")", "Visibility=Invisible", "Value=0"},
    {R"(Port Name="Device" NameSpace="Standard")", "ToolTip=Port providing access to the camera."}};

/// The element of a start tag's text.
std::string ElementOf(const std::string& tag) {
    return tag.substr(0, tag.find(' '));
}

std::string XmlOf(const Node& node) {
    std::string xml = "<" + node.front() + ">";
    for (std::size_t index = 1; index < node.size(); ++index) {
        // The first "=" behind the attributes.
        const std::size_t quote = node[index].starts_with("pVariable") ? node[index].rfind('"') : 0;
        const std::size_t equals = node[index].find('=', quote);
        const std::string tag = node[index].substr(0, equals);
        xml += "<" + tag + ">" + node[index].substr(equals + 1) + "</" + ElementOf(tag) + ">";
    }
    return xml + "</" + ElementOf(node.front()) + ">";
}

TEST(StreamDescription, HasTheseNodesInThisOrderAndNothingElse) {
    const std::string text = test_support::Flattened(kStreamGrabberDescription);
    const std::size_t root = text.find("<RegisterDescription ");
    ASSERT_NE(root, std::string::npos);
    std::size_t at = text.find('>', root) + 1;
    for (const Node& node : kNodes) {
        const std::string expected = XmlOf(node);
        EXPECT_EQ(text.substr(at, expected.size()), expected);
        at += expected.size();
    }
    EXPECT_EQ(text.substr(at), "</RegisterDescription>");
}

TEST(StreamDescription, SaysWhatItIs) {
    const std::string text = kStreamGrabberDescription;
    const std::string root = text.substr(0, text.find("<Category"));
    for (const char* attribute :
         {R"( xmlns="http://www.genicam.org/GenApi/Version_1_0")", R"( SchemaMajorVersion="1")",
          R"( SchemaMinorVersion="0")", R"( SchemaSubMinorVersion="0")", R"( MajorVersion="0")", R"( MinorVersion="0")",
          R"( SubMinorVersion="0")", R"( VendorName="Marlow")", R"( ModelName="CLSerStreamGrabber")",
          R"( StandardNameSpace="None")", R"( VersionGuid="4D7A2C19-5E83-4B06-9F1D-2A6C8E0B7D53")",
          R"( ProductGuid="0B6E91F4-7C2A-4D38-A5E7-93F1C6B2D840")",
          R"( ToolTip="Interface to the CLSer camera stream parameters")"})
        EXPECT_NE(root.find(attribute), std::string::npos) << attribute;
}

}  // namespace
