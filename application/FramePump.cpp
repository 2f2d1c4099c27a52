/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FramePump: a thread that calls an application for each frame
 */
#include "FramePump.h"

#include <utility>

#include "CallbackList.h"
#include "StreamCore.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

using Failed = std::function<void(std::exception_ptr)>;

void CallForEach(StreamCore& stream, const std::function<void(Frame&)>& callback) {
    while (auto frame = stream.Next(std::nullopt)) {
        const InsideCallback inside;
        callback(*frame);
    }
}

void Report(const Failed& failed, const std::exception_ptr& failure) noexcept {
    try {
        const InsideCallback inside;
        if (failed)
            return failed(failure);
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kError, "Frames end with an error: %s",
                           error.what());
    } catch (...) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kError, "Frames end with an error");
    }
}

void Run(std::shared_ptr<StreamCore> stream, const std::function<void(Frame&)>& callback, const Failed& failed) {
    try {
        CallForEach(*stream, callback);
    } catch (...) {
        Report(failed, std::current_exception());
    }
}

void StopQuietly(StreamCore& stream) noexcept {
    try {
        stream.Stop();
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning,
                           "A stream was not stopped as it should be: %s", error.what());
    }
}

}  // namespace

FramePump::FramePump(std::shared_ptr<StreamCore> stream, std::function<void(Frame&)> callback, Failed failed)
    : m_stream(std::move(stream)),
      m_thread([stream = m_stream, callback = std::move(callback), failed = std::move(failed)] {
          Run(stream, callback, failed);
      }) {}

// The thread that is stopped by its own callback ends behind it, and holds what it still needs.
FramePump::~FramePump() {
    StopQuietly(*m_stream);
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else
        m_thread.join();
}

}  // namespace Vanto
