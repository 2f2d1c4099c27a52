/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The Shift key, held while a device is closed, keeps the camera at its baud rate
 */

#include "tests/integration/Machine.h"
#include "tests/integration/SmallDescription.h"
#include "tests/support/display/VirtualDisplay.h"

namespace integration {
namespace {

using test_support::VirtualDisplay;

class ShiftAtClosing : public Machine {
protected:
    void SetUp() override {
        if (!VirtualDisplay::IsInstalled())
            GTEST_SKIP() << "Xvfb is not installed (package xvfb)";
        m_descriptions.Write("camera.xml", SmallDescription());
        auto camera = Camera("21");
        camera.descriptionFile = m_descriptions / "camera.xml";
        Add("cam0", camera);
    }

    void OpenAndClose() {
        Vanto::IVantoDevice* const device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        device->Open();
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), 921600u);
        device->Close();
        CTlFactory::GetInstance().DestroyDevice(device);
    }

    scripted::TemporaryFolder m_descriptions;
};

TEST_F(ShiftAtClosing, HeldKeepsTheBaudRate) {
    VirtualDisplay display;
    const scripted::ScopedVariable variable("DISPLAY", display.Name());
    display.PressShift();
    OpenAndClose();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 921600u);
    EXPECT_EQ(m_log.CountFormat("Restored old baud rate for device '%hs'."), 0u);
}

TEST_F(ShiftAtClosing, ReleasedBeforeChangesNothing) {
    VirtualDisplay display;
    const scripted::ScopedVariable variable("DISPLAY", display.Name());
    display.PressShift();
    display.ReleaseShift();
    OpenAndClose();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
    EXPECT_EQ(m_log.CountFormat("Restored old baud rate for device '%hs'."), 1u);
}

}  // namespace
}  // namespace integration
