/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of connections have in common
 */
#pragma once

#include "Connection.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "clser/ClSerial.h"

namespace marlow::test {

struct ConnectionTest : testing::Test, OpenRig {
    std::string OpenedAs(const std::string& request = "Marlow") {
        Connection fresh(serial, clock, logger, known);
        fresh.Open(DeviceRequest(request), kTimeout, nullptr);
        return fresh.ShortDeviceId();
    }
    /// The camera hears all of a change and is too late with each answer.
    void LoseByAChange() {
        Open();
        camera.responseDelay = std::chrono::milliseconds(250);
        EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x80, kTimeout); }), CL_ERR_TIMEOUT);
        ASSERT_EQ(camera.Rate(), 0x80u);
    }
};

}  // namespace marlow::test
