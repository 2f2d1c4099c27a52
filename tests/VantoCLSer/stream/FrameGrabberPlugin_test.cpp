/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Choosing, loading and unloading a frame-grabber plug-in
 */

#include "VantoCLSer/stream/FrameGrabberPlugin.h"

#include <future>
#include <optional>
#include <thread>
#include <utility>

#include "StreamTest.h"
#include "os/File.h"
#include "os/Path.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::InvalidArgumentException;
using GenICam::RuntimeException;
using testing::ElementsAre;

class FrameGrabberPlugin : public testing::Test {
protected:
    void UseTree(const std::string& tree) { m_root.emplace("VANTO_ROOT", tree); }
    std::string FailureOf(const std::string& parameters) {
        return MessageOf<RuntimeException>([&] {
            CVantoCLSerStreamGrabber grabber(parameters.c_str(), m_device.Get());
            grabber.Initialize();
        });
    }
    bool HasText(std::uint32_t level, const std::string& text) const { return m_log.CountText(text, level) == 1; }
    bool HasBeginning(std::uint32_t level, const std::string& text) const {
        for (const tracelog::LogMessage& message : m_log.GetMessages()) {
            if (message.level == level && message.text.starts_with(text))
                return true;
        }
        return false;
    }

    OpenDevice m_device;
    std::optional<scripted::ScopedVariable> m_root;
    tracelog::LogRecorder m_log{"Vanto.CLSer.Stream:trace"};
};

TEST_F(FrameGrabberPlugin, NeedsADevice) {
    CVantoCLSerStreamGrabber grabber("", nullptr);
    EXPECT_EQ(MessageOf<InvalidArgumentException>([&] { grabber.Initialize(); }),
              "Invalid device passed to streamgrabber.");
    EXPECT_EQ(grabber.RegisterDeviceNodeCallback(
                  "Width", [](auto...) {}, nullptr, 0),
              0U);
    EXPECT_TRUE(HasText(tracelog::kError, "Invalid device pointer."));
}

TEST_F(FrameGrabberPlugin, NeedsParametersBeforeAnythingElse) {
    const std::string text = "Skipping loading of plug-in DLL since there are no device specific parameters!";
    CVantoCLSerStreamGrabber grabber("", m_device.Get());
    EXPECT_EQ(MessageOf<RuntimeException>([&] { grabber.Initialize(); }), text);
    EXPECT_EQ(grabber.GetNodeMap(), nullptr);
    ASSERT_EQ(m_log.GetMessages().size(), 1U);
    EXPECT_TRUE(HasText(tracelog::kInfo, text));
}

TEST_F(FrameGrabberPlugin, IsNamedByTheParameters) {
    UseTree(TreeOf("plain"));
    for (const char* parameters : {"Grabber", "sapera", "SAPERA", "Saper a"}) {
        m_log.Clear();
        EXPECT_EQ(FailureOf(parameters),
                  "Skipping loading of plug-in DLL since the name of the DLL cannot be deduced from the device "
                  "specific parameters!");
        EXPECT_TRUE(HasText(tracelog::kInfo, "Don't know which plug-in DLL must be loaded!"));
        EXPECT_FALSE(HasBeginning(tracelog::kError, "Error loading"));
    }
}

TEST_F(FrameGrabberPlugin, IsLoadedInitialisedAndUnloaded) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    const std::string parameters = "xSaperax;%s%n;Mono";
    {
        CVantoCLSerStreamGrabber grabber(parameters.c_str(), m_device.Get());
        grabber.Initialize();
        EXPECT_STREQ(plugin->createParameters, parameters.c_str());
        EXPECT_STREQ(plugin->initParameters, parameters.c_str());
        EXPECT_STREQ(plugin->calls, "Create Init ");
    }
    EXPECT_STREQ(plugin->calls, "Create Init Shutdown Destroy ");
    EXPECT_TRUE(HasText(tracelog::kInfo, "About to load FGPlugin DLL from directory '" + PluginFolderOf("plain") +
                                             os::kPathSeparator + ".'"));
    EXPECT_TRUE(HasText(tracelog::kInfo, "Sucessfully loaded FGPlugin DLL."));
    EXPECT_EQ(CountLevel(m_log, tracelog::kError), 0U);
}

TEST_F(FrameGrabberPlugin, MustExist) {
    const scripted::TemporaryFolder folder;
    UseTree(folder.Path());
    EXPECT_EQ(FailureOf("Sapera"), "Could not load FrameGrabber plug-in DLL.");
    EXPECT_TRUE(HasText(tracelog::kWarning, "Could not load FGPlugin DLL"));
    EXPECT_TRUE(HasBeginning(tracelog::kError, "Error loading FGPlugin DLL (Could not load FrameGrabber plug-in DLL."));
}

TEST_F(FrameGrabberPlugin, MustBeALibrary) {
    const scripted::TemporaryFolder folder;
    UseTree(folder.Path());
    ASSERT_TRUE(os::CreateFolders(folder / VANTO_DIR_PLUGINS));
    folder.Write(VANTO_DIR_PLUGINS "/SaperaFgPlugin_MD_VC100.dll", "This is no library.");
    EXPECT_EQ(FailureOf("Sapera"), "Could not load FrameGrabber plug-in DLL.");
}

TEST_F(FrameGrabberPlugin, MayTakeItsTimeToLoad) {
    UseTree(TreeOf("slow"));
    EXPECT_EQ(FailureOf("Sapera"),
              "Could not create Framegrabber object using FGPlugin DLL and parameterstring 'Sapera'.");
}

TEST_F(FrameGrabberPlugin, PathOfTwoHundredAndSixtyCharactersIsTooLong) {
    const std::string rest = "/" VANTO_DIR_PLUGINS "/SaperaFgPlugin_MD_VC100.dll";
    const scripted::TemporaryFolder folder;
    // Empty path elements lengthen the path to the built tree without leading anywhere else.
    const auto treeOfLength = [&](std::size_t pathLength) {
        std::string tree = TreeOf("plain");
        return tree.insert(tree.find_first_of("/\\", 4), pathLength - rest.size() - tree.size(), os::kPathSeparator);
    };
    UseTree(treeOfLength(259));
    EXPECT_EQ(FailureOf("Sapera"), "Could not load FrameGrabber plug-in DLL.");
    UseTree(treeOfLength(258));
    PlainPlugin plugin;
    CVantoCLSerStreamGrabber grabber("Sapera", m_device.Get());
    grabber.Initialize();
}

TEST_F(FrameGrabberPlugin, MustExportBothFunctions) {
    for (const char* tree : {"no_create", "no_destroy"}) {
        m_log.Clear();
        UseTree(TreeOf(tree));
        PlainPlugin plugin(tree);
        EXPECT_EQ(FailureOf("Sapera"), "Missing necessary functions in FGPlugin DLL '" + PluginFolderOf(tree) +
                                           os::kPathSeparator + "SaperaFgPlugin_MD_VC100.dll'.");
        EXPECT_TRUE(HasText(tracelog::kError, "Could not find functions in FGPlugin DLL."));
        EXPECT_TRUE(HasBeginning(tracelog::kError, "Error loading FGPlugin DLL (Missing necessary functions"));
        EXPECT_STREQ(plugin->calls, "");
    }
}

TEST_F(FrameGrabberPlugin, MustMakeAnObject) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->makesObject = false;
    const std::string text = "Could not create Framegrabber object using FGPlugin DLL and parameterstring 'Sapera %s'.";
    EXPECT_EQ(FailureOf("Sapera %s"), text);
    EXPECT_TRUE(HasText(tracelog::kError, text));
    EXPECT_TRUE(HasBeginning(tracelog::kError, "Error loading FGPlugin DLL (" + text));
    EXPECT_STREQ(plugin->calls, "Create ");
}

TEST_F(FrameGrabberPlugin, HasNoRegistersWithoutAnObject) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->makesObject = false;
    CVantoCLSerStreamGrabber grabber("Sapera", m_device.Get());
    EXPECT_THROW(grabber.Initialize(), RuntimeException);
    m_log.Clear();
    std::uint8_t byte = 0x5A;
    grabber.Read(&byte, 0xC05EC0C10C, 1);
    grabber.Read(&byte, 0x90C157A7E, 1);
    grabber.Write(&byte, 0x90C157A7E, 1);
    EXPECT_EQ(byte, 0x5A);
    EXPECT_TRUE(m_log.GetMessages().empty());
}

TEST_F(FrameGrabberPlugin, SaysItselfWhyItCannotBeInitialised) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->initResult = false;
    plugin->errorText = "Server 'X' is missing %d";
    EXPECT_EQ(FailureOf("Sapera"), "Server 'X' is missing %d");
    EXPECT_EQ(plugin->textSizes[0], 0U);
    EXPECT_EQ(plugin->textSizes[1], 25U);
    EXPECT_TRUE(HasBeginning(tracelog::kError, "Error initializing grabber (Server 'X' is missing %d"));
    EXPECT_STREQ(plugin->calls, "Create Init Shutdown Destroy ");
}

TEST_F(FrameGrabberPlugin, MaySayNothing) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->initResult = false;
    EXPECT_EQ(FailureOf("Sapera"), "");
    EXPECT_EQ(plugin->textSizes[1], 1U);
}

TEST_F(FrameGrabberPlugin, IsNotTrustedForTheLengthOfItsText) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->initResult = false;
    plugin->errorText = "short";
    plugin->claimedLength = 0xFFFFFFFF;
    const std::string text = FailureOf("Sapera");
    EXPECT_EQ(plugin->textSizes[1], 65537U);
    EXPECT_EQ(text.size(), 65536U);
    EXPECT_TRUE(text.starts_with("short##"));
}

TEST_F(FrameGrabberPlugin, EndsATextAtItsClaimedLength) {
    UseTree(TreeOf("plain"));
    PlainPlugin plugin;
    plugin->initResult = false;
    plugin->errorText = "four letters";
    plugin->claimedLength = 4;
    EXPECT_EQ(FailureOf("Sapera"), "four");
}

TEST_F(FrameGrabberPlugin, MayThrowWhereItIsLoaded) {
    UseTree(TreeOf("throwing"));
    EXPECT_EQ(FailureOf("Sapera:Create"), "thrown by the plug-in");
    EXPECT_TRUE(HasBeginning(tracelog::kError, "Error loading FGPlugin DLL (thrown by the plug-in"));
    EXPECT_EQ(FailureOf("Sapera:Create:int"), "Unknown exception in FGPlugin DLL.");
    EXPECT_EQ(FailureOf("Sapera:Init"), "thrown by the plug-in");
    EXPECT_TRUE(HasBeginning(tracelog::kError, "Error initializing grabber (thrown by the plug-in"));
}

TEST_F(FrameGrabberPlugin, MayThrowWhereItIsUnloaded) {
    UseTree(TreeOf("throwing"));
    {
        CVantoCLSerStreamGrabber grabber("Sapera:Shutdown:Destroy", m_device.Get());
        grabber.Initialize();
    }
    EXPECT_EQ(m_log.CountText("Exception in FGPlugin DLL (thrown by the plug-in)", tracelog::kError), 2U);
}

TEST_F(FrameGrabberPlugin, MayThrowInAGrab) {
    UseTree(TreeOf("throwing"));
    char buffer = 0;
    for (const char* parameters : {"Sapera:Start", "Sapera:Text"}) {
        CVantoCLSerStreamGrabber grabber(parameters, m_device.Get());
        grabber.Initialize();
        grabber.Open();
        grabber.PrepareGrab();
        const StreamBufferHandle handle = grabber.RegisterBuffer(&buffer, 1);
        EXPECT_EQ(MessageOf<RuntimeException>([&] { grabber.QueueBuffer(handle, nullptr); }), "thrown by the plug-in");
        grabber.FinishGrab();
    }
}

TEST_F(FrameGrabberPlugin, MayThrowWhenItIsStopped) {
    UseTree(TreeOf("throwing"));
    CVantoCLSerStreamGrabber grabber("Sapera:Stop:int", m_device.Get());
    grabber.Initialize();
    grabber.Open();
    grabber.PrepareGrab();
    grabber.CancelGrab();
    EXPECT_TRUE(
        HasText(tracelog::kWarning, "Failed to stop the grab gracefully (Unknown exception in FGPlugin DLL.)."));
}

TEST_F(FrameGrabberPlugin, MayThrowWhenItsRegistersAreUsed) {
    UseTree(TreeOf("throwing"));
    CVantoCLSerStreamGrabber grabber("Sapera:Value:PoCL", m_device.Get());
    grabber.Initialize();
    std::uint8_t byte = 0x5A;
    grabber.Read(&byte, 0xC05EC0C10C, 1);
    grabber.Read(&byte, 0x90C157A7E, 1);
    grabber.Write(&byte, 0x90C157A7E, 1);
    EXPECT_EQ(byte, 0x5A);
    EXPECT_EQ(m_log.CountText("Exception in FGPlugin DLL (thrown by the plug-in)", tracelog::kError), 3U);
}

class ChannelOfDevice : public testing::Test {
protected:
    scripted::ScopedVariable m_root{"VANTO_ROOT", TreeOf("plain")};
    PlainPlugin m_plugin;
    OpenDevice m_device;
    tracelog::LogRecorder m_log{"Vanto.CLSer.*:trace"};
};

TEST_F(ChannelOfDevice, IsMadeOnce) {
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 1U);
    IStreamGrabber* const grabber = m_device->GetStreamGrabber(0);
    ASSERT_NE(grabber, nullptr);
    EXPECT_EQ(m_device->GetStreamGrabber(0), grabber);
    EXPECT_STREQ(m_plugin->calls, "Create Init ");
    m_device.Destroy();
    EXPECT_STREQ(m_plugin->calls, "Create Init Shutdown Destroy ");
}

// The making of a stream grabber calls the application's functions for nodes that it changes.
TEST_F(ChannelOfDevice, IsNotThereYetForWhoIsCalledWhileItIsMade) {
    m_plugin->hookContext = &m_device;
    m_plugin->onInit = [](void* context) {
        const OpenDevice& device = *static_cast<OpenDevice*>(context);
        EXPECT_EQ(device->GetNumStreamGrabberChannels(), 0U);
        EXPECT_EQ(device->GetStreamGrabber(0), nullptr);
    };
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 1U);
    EXPECT_NE(m_device->GetStreamGrabber(0), nullptr);
    EXPECT_EQ(m_log.CountText("The stream grabber is still being made.", tracelog::kWarning), 2U);
}

// A plug-in uses the camera's nodes while it starts. It takes as long as the other thread has patience.
TEST_F(ChannelOfDevice, IsNotWaitedForForEverByWhoHoldsTheNodeMap) {
    m_plugin->hookContext = &m_device;
    m_plugin->onInit = [](void* context) {
        const OpenDevice& device = *static_cast<OpenDevice*>(context);
        GenApi::CLock& nodeMap = device->GetNodeMap()->GetLock();
        std::promise<void> held;
        std::thread other([&] {
            const GenApi::AutoLock lock(nodeMap);
            held.set_value();
            EXPECT_EQ(device->GetNumStreamGrabberChannels(), 0U);
        });
        held.get_future().wait();
        { const GenApi::AutoLock lock(nodeMap); }
        other.join();
    };
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 1U);
    EXPECT_EQ(m_log.CountText("The stream grabber is still being made.", tracelog::kWarning), 1U);
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 1U);
}

TEST_F(ChannelOfDevice, MarksBadFirmware) {
    m_plugin->initResult = false;
    m_plugin->errorText = "12: Invalid firmware on grabber detected!";
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0U);
    GenApi::INode* const node = m_device->GetTLNodeMap()->GetNode("BadFirmware");
    EXPECT_EQ(GenApi::CIntegerPtr(node)->GetValue(), 1);
    EXPECT_EQ(node->GetAccessMode(), GenApi::RO);
    EXPECT_EQ(m_device->GetStreamGrabber(0), nullptr);
    EXPECT_EQ(m_log.CountText("Error initializing stream grabber object (err='12: Invalid firmware on grabber "
                              "detected!')",
                              tracelog::kInfo),
              1U);
    m_plugin->initResult = true;
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0U);  // not tried again
}

TEST_F(ChannelOfDevice, MarksBadFirmwareForAnInvalidTapOutput) {
    m_plugin->initResult = false;
    m_plugin->errorText = "12: Parameter invalid value (Tap Output)";
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0U);
    EXPECT_EQ(GenApi::CIntegerPtr(m_device->GetTLNodeMap()->GetNode("BadFirmware"))->GetValue(), 1);
}

TEST_F(ChannelOfDevice, MarksNoBadFirmwareForOtherErrors) {
    m_plugin->initResult = false;
    m_plugin->errorText = "12: something else";
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0U);
    GenApi::INode* const node = m_device->GetTLNodeMap()->GetNode("BadFirmware");
    EXPECT_EQ(GenApi::CIntegerPtr(node)->GetValue(), 0);
    EXPECT_EQ(node->GetAccessMode(), GenApi::RW);
    EXPECT_EQ(m_log.CountText("Invalid StreamIndex 0 passed. StreamIndex must be less GetNumStreamGrabberChannels()!"),
              0U);
    EXPECT_EQ(m_device->GetStreamGrabber(0), nullptr);
    EXPECT_EQ(m_log.CountText("Invalid StreamIndex 0 passed. StreamIndex must be less GetNumStreamGrabberChannels()!",
                              tracelog::kWarning),
              1U);
}

TEST(ChannelOfThrowingPlugin, IsMissing) {
    const scripted::ScopedVariable root("VANTO_ROOT", TreeOf("throwing"));
    const OpenDevice device(CameraXml(), "Sapera:Init");
    EXPECT_EQ(device->GetNumStreamGrabberChannels(), 0U);
}

}  // namespace
