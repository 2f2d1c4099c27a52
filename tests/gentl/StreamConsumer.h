/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A consumer with an open stream
 */
#pragma once

#include "tests/gentl/Consumer.h"

namespace gentl_test {

class StreamConsumer : public Consumer {
protected:
    void Prepare(std::size_t count, const std::string& parameters = "FrameRate=200") {
        AddCamera(parameters);
        OpenStream();
        Announce(count);
    }
    GC_ERROR Flush(ACQ_QUEUE_TYPE operation) const { return TL().DSFlushQueue(stream, operation); }
    std::size_t Queued() const { return StreamSize(STREAM_INFO_NUM_QUEUED); }
    std::size_t Waiting() const { return StreamSize(STREAM_INFO_NUM_AWAIT_DELIVERY); }
    bool WaitFor(std::size_t waiting) const {
        for (int tries = 0; tries < 3000 && Waiting() < waiting; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return Waiting() >= waiting;
    }
    std::uint64_t FrameId(BUFFER_HANDLE buffer) const {
        return BufferValue<std::uint64_t>(buffer, BUFFER_INFO_FRAMEID, INFO_DATATYPE_UINT64);
    }
};

}  // namespace gentl_test
