/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A plug-in whose function that destroys the grabber object is not found any more when it is wanted
 */

#include <optional>

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

class HidingPlugin : public testing::Test {
protected:
    HidingPlugin() {
        m_grabber->Initialize();
        m_plugin->Script().hidesDestroy = true;
    }

    scripted::ScopedVariable m_root{"VANTO_ROOT", TreeOf("hiding")};
    std::optional<PlainPlugin> m_plugin{"hiding"};
    OpenDevice m_device;
    tracelog::LogRecorder m_log{"Vanto.CLSer.Stream:trace"};
    std::unique_ptr<CVantoCLSerStreamGrabber> m_grabber =
        std::make_unique<CVantoCLSerStreamGrabber>("Sapera", m_device.Get());
};

TEST_F(HidingPlugin, IsShutDownButKeepsItsObject) {
    m_grabber.reset();
    EXPECT_STREQ(m_plugin->Script().calls, "Create Init Shutdown ");
    EXPECT_EQ(m_log.CountText("Could not find destroy function in FGPlugin DLL. Cannot destroy framegrabber object!",
                              tracelog::kError),
              1U);
}

TEST_F(HidingPlugin, IsUnloadedAllTheSame) {
    const void* const address = &m_plugin->Script();
    m_plugin.reset();
    EXPECT_NE(os::PathOfCode(address), "");
    m_grabber.reset();
    EXPECT_EQ(os::PathOfCode(address), "");
}

}  // namespace
