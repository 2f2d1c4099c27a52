/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The first buffer handles of a process: a program of its own, as no other buffer may come before
 */

#include "StreamTest.h"

namespace {

using stream_test::OpenDevice;
using stream_test::PlainPlugin;
using stream_test::TreeOf;
using Vanto::CVantoCLSerStreamGrabber;

TEST(BufferHandles, CountFromOneAcrossStreamGrabbers) {
    const scripted::ScopedVariable root("VANTO_ROOT", TreeOf("plain"));
    const PlainPlugin plugin;
    const OpenDevice device;
    CVantoCLSerStreamGrabber first("Sapera", device.Get());
    CVantoCLSerStreamGrabber second("Sapera", device.Get());
    for (CVantoCLSerStreamGrabber* grabber : {&first, &second}) {
        grabber->Initialize();
        grabber->Open();
    }
    char buffer = 0;
    EXPECT_EQ(first.RegisterBuffer(&buffer, 1), 1U);
    EXPECT_EQ(second.RegisterBuffer(&buffer, 1), 2U);
    first.DeregisterBuffer(1);
    EXPECT_EQ(first.RegisterBuffer(&buffer, 1), 3U);
}

}  // namespace
