/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Acquisition: moves buffers between a stream's queue and the stream grabber
 */
#include "stream/Acquisition.h"

#include "Base/GCException.h"
#include "support/Log.h"

namespace gentl {

Acquisition::Acquisition(Vanto::IStreamGrabber& grabber, std::shared_ptr<BufferQueue> queue, LockListener onLock)
    : m_grabber(grabber),
      m_queue(std::move(queue)),
      m_onLock(std::move(onLock)),
      m_end(Vanto::WaitObjectEx::Create()) {}

Acquisition::~Acquisition() {
    Stop();
}

/**
 * \brief Start
 * \param[in] wanted Frames, GENTL_INFINITE for no end
 * \throw GenericException The camera's features can't be locked, or the frame grabber doesn't start
 */
void Acquisition::Start(std::uint64_t wanted) {
    m_grabber.PrepareGrab();
    m_onLock();
    {
        const std::lock_guard lock(m_queue->Mutex());
        m_queue->StartCounting(wanted);
    }
    m_end.Reset();
    m_canceled.reserve(m_queue->Announced().size());
    m_thread = std::thread([this] { Run(); });
    try {
        Feed();
    } catch (...) {
        Stop();
        throw;
    }
}

/// Gives the grabber what is in the input pool, as far as so many frames are still wanted. The first buffer starts it.
void Acquisition::Feed() {
    for (;;) {
        StreamBuffer* buffer = nullptr;
        {
            const std::lock_guard lock(m_queue->Mutex());
            buffer = m_queue->FeedOldest();
        }
        if (buffer == nullptr)
            return;
        m_grabber.QueueBuffer(buffer->grabberHandle, buffer);
    }
}

void Acquisition::Run() {
    Vanto::WaitObjects objects;
    objects.Add(m_end);
    objects.Add(m_grabber.GetWaitObject());
    for (;;) {
        std::size_t signalled = 0;
        objects.WaitForAny(Vanto::kWaitForever, &signalled);
        if (signalled == 0)
            return;
        const std::lock_guard taking(m_taking);
        TakeResults();
    }
}

// The grabber's lock is taken without the queue's: who fetches a frame never waits for the grabber.
void Acquisition::TakeResults() {
    Vanto::GrabResult result;
    while (m_grabber.RetrieveResult(result)) {
        auto* const buffer = static_cast<StreamBuffer*>(const_cast<void*>(result.context));
        if (result.Status() == Vanto::Canceled) {
            m_canceled.push_back(buffer);
            continue;
        }
        {
            const std::lock_guard lock(m_queue->Mutex());
            m_queue->Deliver(*buffer, result);
        }
        m_queue->Changed().notify_one();
    }
}

void Acquisition::Cancel() {
    m_grabber.CancelGrab();
    TakeResults();
    const std::lock_guard lock(m_queue->Mutex());
    m_queue->TakeBack(m_canceled);
    m_canceled.clear();
}

/// Takes all buffers without a frame back into the input pool, for which the grabber pauses until it is fed again.
void Acquisition::TakeBack() {
    const std::lock_guard taking(m_taking);
    Cancel();
}

/// Stops; frames that are there stay in the output queue, the other buffers in the input pool. Does nothing where
/// nothing runs.
void Acquisition::Stop() {
    if (!IsRunning())
        return;
    m_end.Signal();
    m_thread.join();
    try {
        // Taking the last result makes the grabber ready again, so all are taken before it finishes.
        Cancel();
        m_grabber.FinishGrab();
    } catch (const GenICam::GenericException& error) {
        // A camera that is gone can't be told; the grabber has stopped all the same.
        LogTrace(LogCategory(), Vanto::tracelog::kWarning, "The grab did not end well: %s", error.GetDescription());
    }
    m_onLock();
}

}  // namespace gentl
