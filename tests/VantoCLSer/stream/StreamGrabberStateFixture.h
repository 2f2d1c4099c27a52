/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the states of a stream grabber have in common
 */
#pragma once

#include "StreamTest.h"

namespace stream_test {

class StreamGrabberState : public StreamTest {
protected:
    void Close() { m_grabber->Close(); }
    std::vector<std::string> TextsOf(std::uint32_t level) {
        std::vector<std::string> texts;
        for (const Vanto::tracelog::LogMessage& message : m_log->GetMessages()) {
            if (message.level == level)
                texts.push_back(message.text);
        }
        return texts;
    }
};

}  // namespace stream_test
