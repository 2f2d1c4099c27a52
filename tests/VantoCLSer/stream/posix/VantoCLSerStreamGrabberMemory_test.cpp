/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A stream grabber for whose node map there is no memory
 */

#include <new>

#include "AllocationCount.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

TEST(StreamMemory, LogsADescriptionThatCannotBeParsed) {
    const OpenDevice device;
    CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
    const tracelog::LogRecorder log("Vanto.CLSer.Stream:trace");
    {
        const AllocationLimit limit(2048);  // bytes; the description alone is larger
        EXPECT_THROW(grabber.Initialize(), std::bad_alloc);
    }
    EXPECT_EQ(log.CountText("Error parsing stream grabber XML (std::bad_alloc)", tracelog::kError), 1U);
    EXPECT_EQ(log.GetMessages().size(), 1U);
}

}  // namespace
