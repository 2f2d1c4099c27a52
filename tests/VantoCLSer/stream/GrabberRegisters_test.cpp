/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The stream grabber's own node map: its description and its registers
 */

#include <future>

#include "StreamTest.h"

extern const char kStreamGrabberDescription[];

namespace {

using namespace stream_test;
using namespace Vanto;
using testing::ElementsAre;

constexpr std::int64_t kPixelClock = 0xC05EC0C10C;
constexpr std::int64_t kPoCL = 0x90C157A7E;

class StreamNodeMap : public StreamTest {
protected:
    GenApi::INode* Node(const char* name) { return m_grabber->GetNodeMap()->GetNode(name); }
    GenApi::CIntegerPtr Integer(const char* name) { return Node(name); }
    std::string Property(const char* node, const char* name) {
        GenICam::gcstring value;
        GenICam::gcstring attribute;
        return Node(node)->GetProperty(name, value, attribute) ? value.str() : std::string("-");
    }
    std::vector<std::string> FeaturesOf(const char* category) {
        GenApi::FeatureList_t features;
        GenApi::CCategoryPtr(Node(category))->GetFeatures(features);
        std::vector<std::string> names;
        for (GenApi::IValue* feature : features)
            names.push_back(feature->GetNode()->GetName().str());
        return names;
    }
};

TEST_F(StreamNodeMap, SaysWhatItIs) {
    EXPECT_EQ(m_grabber->_GetModelName(), "CLSerStreamGrabber");
    EXPECT_EQ(m_grabber->_GetVendorName(), "Marlow");
    EXPECT_EQ(m_grabber->_GetToolTip(), "Interface to the CLSer camera stream parameters");
    EXPECT_EQ(m_grabber->_GetStandardNameSpace(), "None");
    EXPECT_EQ(m_grabber->_GetVersionGuid(), "4D7A2C19-5E83-4B06-9F1D-2A6C8E0B7D53");
    EXPECT_EQ(m_grabber->_GetProductGuid(), "0B6E91F4-7C2A-4D38-A5E7-93F1C6B2D840");
    EXPECT_EQ(m_grabber->_GetDeviceName(), "Device");
}

TEST_F(StreamNodeMap, HasItsNodesInTheirOrder) {
    const std::string text = kStreamGrabberDescription;
    std::size_t at = 0;
    for (const char* name : {"Root",
                             "MaxNumBuffer",
                             "MaxBufferSize",
                             "PayloadSize",
                             "PixelSizeByte",
                             "PayloadSize_CtrlValueFao",
                             "AOI",
                             "Height",
                             "Width",
                             "CopyAOIFromCamera",
                             "StreamGrabber",
                             "OutputThread",
                             "ThreadPriority",
                             "PixelClockDetected",
                             "PoCLState",
                             "PoCLStateReg",
                             "PoCLStateReg_Impl",
                             "PoCLStateReg_Avail",
                             "Debug",
                             "DebugData1",
                             "Device"}) {
        EXPECT_NE(Node(name), nullptr) << name;
        const std::size_t found = text.find(std::string(" Name=\"") + name + "\"", at);
        EXPECT_NE(found, std::string::npos) << name;
        at = found;
    }
    EXPECT_THAT(FeaturesOf("Root"),
                ElementsAre("MaxNumBuffer", "MaxBufferSize", "PayloadSize", "AOI", "StreamGrabber"));
    EXPECT_THAT(FeaturesOf("AOI"), ElementsAre("Width", "Height", "CopyAOIFromCamera"));
    EXPECT_THAT(FeaturesOf("StreamGrabber"), ElementsAre("OutputThread", "PixelClockDetected", "PoCLState"));
    EXPECT_THAT(FeaturesOf("OutputThread"), ElementsAre("ThreadPriority"));
    EXPECT_THAT(FeaturesOf("Debug"), ElementsAre("DebugData1"));
}

TEST_F(StreamNodeMap, DoesNotLeadFromTheRootToDebugging) {
    std::vector<std::string> names{"Root"};
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (GenApi::CCategoryPtr(Node(names[index].c_str())).IsValid()) {
            for (const std::string& name : FeaturesOf(names[index].c_str()))
                names.push_back(name);
        }
    }
    EXPECT_THAT(names, testing::Contains("ThreadPriority"));
    EXPECT_THAT(names, testing::Not(testing::Contains("Debug")));
    EXPECT_THAT(names, testing::Not(testing::Contains("DebugData1")));
}

struct Texts {
    const char* node;
    const char* toolTip;
    const char* description;
    GenApi::EVisibility visibility;
};

constexpr char kBuffers[] = " Raising this value may cause higher resource demands on a subsequent PrepareGrab call.";
constexpr char kArea[] = "This category includes items used to set the size and position of the area of interest";

TEST_F(StreamNodeMap, KeepsItsTexts) {
    const std::string maxNumBuffer =
        std::string("Maximum number of Buffers that are going to be used simultaneously.") + kBuffers;
    const std::string maxBufferSize = std::string("Size of the greatest buffer to be used. Unit is bytes.") + kBuffers;
    const Texts texts[] = {
        {"Root", "CLSer stream parameters", "Change following values to adopt driver ressources.", GenApi::Beginner},
        {"MaxNumBuffer", "Number of buffers to be used.", maxNumBuffer.c_str(), GenApi::Beginner},
        {"MaxBufferSize", "Buffer size in bytes", maxBufferSize.c_str(), GenApi::Beginner},
        {"PayloadSize", "Size of the payload in bytes",
         "Size of the payload in bytes. This is the total number of bytes sent in the payload. Image data + chunk data "
         "if present. No packet headers.",
         GenApi::Expert},
        {"PixelSizeByte", "Pixel Size in Bytes", "Bytes needed to store one pixel in memory.", GenApi::Expert},
        {"PayloadSize_CtrlValueFao", "", "", GenApi::Invisible},
        {"AOI", kArea, kArea, GenApi::Beginner},
        {"Height", "Height of the AOI on the grabber", "The height of the AOI configured on the grabber.",
         GenApi::Beginner},
        {"Width", "Height of the AOI", "The height of the AOI configured on the grabber.", GenApi::Beginner},
        {"CopyAOIFromCamera", "Copy AOI From Camera", "Copies the AOI values from the camera nodemap if possible.",
         GenApi::Beginner},
        {"StreamGrabber", "Stream Grabber related features", "", GenApi::Beginner},
        {"OutputThread", "Parameter of the output thread.", "", GenApi::Expert},
        {"ThreadPriority", "Priority value of the output thread (default=0).",
         "When the stream grabber is opened the output thread is started. Non-zero values are used to set the thread "
         "priority. It is not changed until the stream grabber is re-opened again.",
         GenApi::Expert},
        {"PixelClockDetected", "Pixel clock frequency as detected by the grabber.",
         "The Pixel clock frequency detected by the grabber in Hz.", GenApi::Expert},
        {"PoCLState", "PoCL State", "PoCL State", GenApi::Expert},
        {"PoCLStateReg", "!", "!", GenApi::Expert},
        {"PoCLStateReg_Impl", "", "", GenApi::Invisible},
        {"PoCLStateReg_Avail", "", "", GenApi::Invisible},
        {"Debug", "Debug", "", GenApi::Invisible},
        {"DebugData1", "", "", GenApi::Invisible},
        {"Device", "Port providing access to the camera.", "", GenApi::Beginner}};
    for (const Texts& expected : texts) {
        GenApi::INode* const node = Node(expected.node);
        EXPECT_EQ(node->GetToolTip(), expected.toolTip) << expected.node;
        EXPECT_EQ(node->GetDescription(), expected.description) << expected.node;
        EXPECT_EQ(node->GetVisibility(), expected.visibility) << expected.node;
    }
    EXPECT_EQ(Node("AOI")->GetDisplayName(), "AOI Controls");
    EXPECT_EQ(Node("CopyAOIFromCamera")->GetDisplayName(), "Copy AOI from Camera");
    EXPECT_EQ(Node("PoCLState")->GetDisplayName(), "PoCL State");
}

TEST_F(StreamNodeMap, HasItsRegisters) {
    EXPECT_EQ(Property("PixelClockDetected", "Address"), "0xc05ec0c10c");
    EXPECT_EQ(Property("PixelClockDetected", "Length"), "4");
    EXPECT_EQ(Property("PixelClockDetected", "AccessMode"), "RO");
    EXPECT_EQ(Property("PixelClockDetected", "Sign"), "Unsigned");
    EXPECT_EQ(Property("PixelClockDetected", "Endianess"), "LittleEndian");
    EXPECT_EQ(Property("PoCLStateReg", "Address"), "0x90c157a7e");
    EXPECT_EQ(Property("PoCLStateReg", "Length"), "1");
    EXPECT_EQ(Property("PoCLStateReg", "AccessMode"), "RW");
    EXPECT_EQ(Property("PoCLStateReg", "Sign"), "Signed");
    EXPECT_EQ(Property("PayloadSize_CtrlValueFao", "Formula"), "W * H * S");
    EXPECT_EQ(Property("PoCLStateReg_Impl", "Formula"), "P = 55 ? 0 : 1");
    EXPECT_EQ(Property("PoCLStateReg_Avail", "Formula"), "P >= 0 ? 1 : 0");
}

TEST_F(StreamNodeMap, HasItsLimits) {
    EXPECT_EQ(Integer("MaxNumBuffer")->GetValue(), 5);
    EXPECT_EQ(Integer("MaxNumBuffer")->GetMin(), 1);
    EXPECT_EQ(Integer("ThreadPriority")->GetMin(), -15);
    EXPECT_EQ(Integer("ThreadPriority")->GetMax(), 15);
    EXPECT_EQ(Integer("PayloadSize")->GetRepresentation(), GenApi::PureNumber);
    EXPECT_EQ(Node("PixelSizeByte")->GetNameSpace(), GenApi::Standard);
    EXPECT_EQ(Node("AOI")->GetNameSpace(), GenApi::Custom);
    EXPECT_EQ(Property("MaxBufferSize", "Value"), "5760000");
    EXPECT_EQ(Property("Height", "Value"), "513");
    EXPECT_EQ(Property("Width", "Value"), "1024");
    EXPECT_EQ(Property("PixelSizeByte", "Value"), "2");
}

TEST_F(StreamNodeMap, ComputesThePayload) {
    Integer("Width")->SetValue(100);
    Integer("Height")->SetValue(10);
    Integer("PixelSizeByte")->SetValue(3);
    EXPECT_EQ(Integer("PayloadSize")->GetValue(), 3000);
}

TEST_F(StreamNodeMap, ReadsThePixelClockFromThePlugin) {
    m_plugin->value = 0x1122334485A3E920;
    EXPECT_EQ(Integer("PixelClockDetected")->GetValue(), 0x85A3E920);
    EXPECT_EQ(m_plugin->valueParameter, 0xC10CU);
    EXPECT_EQ(Node("PixelClockDetected")->GetAccessMode(), GenApi::RO);
}

TEST_F(StreamNodeMap, CopiesAtMostEightBytesOfTheClock) {
    m_plugin->value = 0x0807060504030201;
    std::vector<std::uint8_t> bytes(10, 0xEE);
    m_grabber->Read(bytes.data(), kPixelClock, 10);
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8, 0xEE, 0xEE}));
    bytes.assign(4, 0xEE);
    m_grabber->Read(bytes.data(), kPixelClock, 3);
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3, 0xEE}));
    m_grabber->Read(nullptr, kPixelClock, 4);
    m_grabber->Read(bytes.data(), kPixelClock, -4);
}

TEST_F(StreamNodeMap, AsksThePluginForPoCL) {
    std::uint8_t byte = 0xEE;
    for (const auto& [answer, expected] : {std::pair{1, 1}, std::pair{0, 0}, std::pair{2, 0}, std::pair{-1, 0}}) {
        m_plugin->poCLResult = answer;
        m_grabber->Read(&byte, kPoCL, 1);
        EXPECT_EQ(byte, expected) << answer;
        EXPECT_EQ(m_plugin->poCLCommand, 20U);
    }
}

TEST_F(StreamNodeMap, SwitchesPoCL) {
    for (const auto& [value, command] : {std::pair{1, 1U}, std::pair{0, 0U}, std::pair{7, 0U}}) {
        const auto byte = static_cast<std::uint8_t>(value);
        m_grabber->Write(&byte, kPoCL, 1);
        EXPECT_EQ(m_plugin->poCLCommand, command) << value;
    }
}

TEST_F(StreamNodeMap, PoCLIsOneByte) {
    std::uint8_t bytes[2] = {0xEE, 0xEE};
    m_grabber->Read(bytes, kPoCL, 2);
    m_grabber->Read(nullptr, kPoCL, 1);
    m_grabber->Write(bytes, kPoCL, 2);
    m_grabber->Write(nullptr, kPoCL, 1);
    EXPECT_EQ(m_plugin->poCLCalls, 0);
    EXPECT_EQ(bytes[0], 0xEE);
}

TEST_F(StreamNodeMap, OffersPoCLAsABoolean) {
    m_plugin->poCLResult = 1;
    const GenApi::CBooleanPtr state = Node("PoCLState");
    EXPECT_EQ(state->GetAccessMode(), GenApi::RW);
    EXPECT_TRUE(state->GetValue());
    state->SetValue(false);
    EXPECT_EQ(m_plugin->poCLCommand, 0U);
}

TEST_F(StreamNodeMap, KnowsNoOtherRegisters) {
    std::uint8_t byte = 0xEE;
    m_grabber->Read(&byte, 0x10, 1);
    m_grabber->Write(&byte, 0x11, 1);
    m_grabber->Write(&byte, kPixelClock, 1);
    EXPECT_EQ(byte, 0xEE);
    EXPECT_EQ(m_log->CountFormat("Unknown read port address Address=%I64 (%I64#x)", tracelog::kWarning), 1U);
    EXPECT_EQ(m_log->CountFormat("Unknown write port address Address=%I64 (%I64#x)", tracelog::kWarning), 2U);
    EXPECT_EQ(m_log->CountText("Unknown read port address Address=%I64 (%I64#x)", tracelog::kWarning), 1U);
}

TEST_F(StreamNodeMap, RegistersWaitForAPluginThatIsBeingStopped) {
    struct Context {
        CVantoCLSerStreamGrabber* grabber;
        std::future<void> reading;
        std::atomic<int> running{0};
        std::atomic<bool> overlap{false};
    } context{m_grabber.get(), {}};
    m_plugin->hookContext = &context;
    m_plugin->onValue = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        self.overlap = self.running > 0;
    };
    m_plugin->onStop = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        ++self.running;
        self.reading = std::async(std::launch::async, [&self] {
            std::uint32_t clock = 0;
            self.grabber->Read(&clock, kPixelClock, 4);
        });
        EXPECT_EQ(self.reading.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        --self.running;
    };
    m_grabber->PrepareGrab();
    m_grabber->CancelGrab();
    EXPECT_EQ(context.reading.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_FALSE(context.overlap);
}

}  // namespace
