/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FramePump: a thread that calls an application for each frame
 */
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <thread>

#include "vanto/Frame.h"

namespace Vanto {

class StreamCore;

/// Calls for each frame of a stream until it ends. Stopped by the destructor, which waits for a call that runs unless
/// it is in that call itself.
class FramePump {
public:
    FramePump(std::shared_ptr<StreamCore> stream, std::function<void(Frame&)> callback,
              std::function<void(std::exception_ptr)> failed);
    ~FramePump();
    FramePump(const FramePump&) = delete;
    FramePump& operator=(const FramePump&) = delete;

private:
    std::shared_ptr<StreamCore> m_stream;
    std::thread m_thread;
};

}  // namespace Vanto
