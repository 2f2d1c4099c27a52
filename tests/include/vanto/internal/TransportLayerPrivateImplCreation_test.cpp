/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the frame's choice of a description, and of the chunks' node maps
 */

#include <stdexcept>

#include "tests/VantoCLSer/Fixture.h"
#include "tests/include/vanto/internal/TestTl.h"

namespace Vanto {
namespace {

using namespace clser_test;

constexpr char kBindings[] =
    "<DescriptionBindings><Binding UseDeviceDescription=\"true\"><Description File=\"camera.xml\"/></Binding>"
    "</DescriptionBindings>";

class FrameCreation : public PluginTest {
protected:
    FrameCreation() {
        m_bound.Write("DescriptionBindings.xml", kBindings);
        m_record.SetDeviceClass("MarlowCameraLink").SetFullName("full name");
        m_record.GetInfoImpl().ClearUserProvidedFlag();
        PrivateTestDevice::filesLoaded = 0;
        PrivateTestDevice::chunksFromFile = 0;
        PrivateTestDevice::chunksFromString = 0;
    }

    void CreateAndDestroy() { m_tl.DestroyDevice(m_tl.CreateDevice(m_record)); }

    // Has the transport layer have a node map with these nodes.
    void SetParameters(const std::string& nodes) {
        m_parameters._LoadXMLFromString(
            ("<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"M\" "
             "VendorName=\"V\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
             "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"\" "
             "ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
             "VersionGuid=\"22222222-2222-2222-2222-222222222222\"><Category Name=\"Root\"/>" +
             nodes + "</RegisterDescription>")
                .c_str());
        m_tl.nodeMap = m_parameters._GetNodeMap();
    }

    scripted::TemporaryFolder m_bound;
    scripted::ScopedVariable m_variable{"VANTO_XML_BINDINGS", m_bound.Path()};
    GenApi::CNodeMapRef m_parameters{"Device"};
    CDeviceInfo m_record;
    TestTl m_tl;
};

TEST_F(FrameCreation, TriesNoFileWhenTheCamerasDescriptionCantBeRead) {
    m_tl.onProvide = [] { throw std::runtime_error("of the line"); };
    EXPECT_THROW(CreateAndDestroy(), std::runtime_error);
    EXPECT_EQ(PrivateTestDevice::filesLoaded, 0);
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_log.CountText("Error downloading XML from device 'full name': of the line", kDebug), 1u);
}

TEST_F(FrameCreation, PassesWhatIsNoStandardException) {
    m_tl.onProvide = [] { throw 5; };
    EXPECT_THROW(CreateAndDestroy(), int);
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_log.CountText("Error downloading XML from device 'full name'", kDebug), 1u);
}

TEST_F(FrameCreation, UsesTheFileForACameraWithoutDescription) {
    m_tl.canProvide = false;
    CreateAndDestroy();
    EXPECT_EQ(PrivateTestDevice::filesLoaded, 1);
    EXPECT_EQ(PrivateTestDevice::chunksFromFile, 1);
    EXPECT_EQ(PrivateTestDevice::chunksFromString, 0);
}

TEST_F(FrameCreation, EnablesChunksAsTheUsualParametersDo) {
    CreateAndDestroy();
    EXPECT_EQ(PrivateTestDevice::chunksFromString, 1);
    EXPECT_EQ(PrivateTestDevice::chunksFromFile, 0);
}

struct ChunkCase {
    const char* name;
    const char* nodes;
    bool isEnabled;
};

class FrameCreationChunks : public FrameCreation, public testing::WithParamInterface<ChunkCase> {};

TEST_P(FrameCreationChunks, AreEnabledByAReadableTrueBooleanOnly) {
    SetParameters(GetParam().nodes);
    CreateAndDestroy();
    m_tl.canProvide = false;
    CreateAndDestroy();
    EXPECT_EQ(PrivateTestDevice::chunksFromString, GetParam().isEnabled ? 1 : 0);
    EXPECT_EQ(PrivateTestDevice::chunksFromFile, GetParam().isEnabled ? 1 : 0);
}

constexpr ChunkCase kChunkCases[] = {
    {"Missing", "", false},
    {"True", "<Boolean Name=\"ChunkNodeMapSupportEnable\"><Value>1</Value></Boolean>", true},
    {"TrueReadOnly",
     "<Boolean Name=\"ChunkNodeMapSupportEnable\"><ImposedAccessMode>RO</ImposedAccessMode><Value>1</Value></Boolean>",
     true},
    {"False", "<Boolean Name=\"ChunkNodeMapSupportEnable\"><Value>0</Value></Boolean>", false},
    {"WriteOnly",
     "<Boolean Name=\"ChunkNodeMapSupportEnable\"><ImposedAccessMode>WO</ImposedAccessMode><Value>1</Value></Boolean>",
     false},
    {"NotAvailable",
     "<Boolean Name=\"ChunkNodeMapSupportEnable\"><pIsAvailable>No</pIsAvailable><Value>1</Value></Boolean>"
     "<Integer Name=\"No\"><Value>0</Value></Integer>",
     false},
    {"NotImplemented",
     "<Boolean Name=\"ChunkNodeMapSupportEnable\"><pIsImplemented>No</pIsImplemented><Value>1</Value></Boolean>"
     "<Integer Name=\"No\"><Value>0</Value></Integer>",
     false},
    {"Integer", "<Integer Name=\"ChunkNodeMapSupportEnable\"><Value>1</Value></Integer>", false}};

INSTANTIATE_TEST_SUITE_P(Nodes, FrameCreationChunks, testing::ValuesIn(kChunkCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace Vanto
