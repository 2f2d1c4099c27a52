/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a COM port is told when it is opened
 */

#include <windows.h>

#include <stdexcept>

#include "../Fixture.h"

namespace ClSerTtyTest {
namespace {

/// Settings of the one COM port that this process has open.
DCB SettingsOfOpenPort() {
    constexpr std::uintptr_t kLastHandle = 0x10000;
    for (std::uintptr_t value = 4; value < kLastHandle; value += 4) {
        const HANDLE handle = reinterpret_cast<HANDLE>(value);
        DCB settings{};
        settings.DCBlength = sizeof(settings);
        if (::GetFileType(handle) == FILE_TYPE_CHAR && ::GetCommState(handle, &settings) != 0)
            return settings;
    }
    throw std::runtime_error("no COM port is open");
}

class ComDeviceTest : public ClSerTtyTest {};

// Windows refuses settings whose two are the same, even when neither is used.
TEST_F(ComDeviceTest, HasDifferentCharactersForGoingOnAndStopping) {
    const hSerRef ref = Open();
    const DCB settings = SettingsOfOpenPort();
    EXPECT_NE(settings.XonChar, settings.XoffChar);
    EXPECT_EQ(settings.fOutX + settings.fInX, 0U);
    m_library.SerialClose(ref);
}

}  // namespace
}  // namespace ClSerTtyTest
