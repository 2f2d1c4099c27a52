/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of deliveries have in common
 */
#pragma once

#include "StreamTest.h"

namespace stream_test {

class FrameDelivery : public StreamTest {
protected:
    explicit FrameDelivery(const CameraXml& camera = CameraXml()) : StreamTest(camera) { m_grabber->PrepareGrab(); }

    /// Delivers a frame into a new buffer.
    Vanto::GrabResult Grab(const PlainFrame& frame, std::size_t bufferSize = 32) {
        m_grabber->QueueBuffer(AddBuffer(bufferSize), nullptr);
        EXPECT_FALSE(m_plugin.Deliver(frame));
        return Retrieve();
    }
};

}  // namespace stream_test
