/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Holds the locks of node maps: those of a camera and its stream grabber, or one that may not be had
 */
#pragma once

#include <chrono>
#include <optional>
#include <thread>

#include "GenApi/GenApi.h"

namespace Vanto {

/// Holds both locks for its own lifetime; taken in the one order that all use. Either map may be null.
class CNodeMapLocks {
public:
    CNodeMapLocks(GenApi::INodeMap* camera, GenApi::INodeMap* stream) {
        if (camera != nullptr)
            m_camera.emplace(camera->GetLock());
        if (stream != nullptr)
            m_stream.emplace(stream->GetLock());
    }

private:
    std::optional<GenApi::AutoLock> m_camera;
    std::optional<GenApi::AutoLock> m_stream;
};

/// Holds one lock for its own lifetime, unless \a givesUp, which is asked while another thread has it, says that it is
/// not to be waited for any longer.
class CImpatientLock {
public:
    template <class Predicate>
    CImpatientLock(GenApi::CLock& lock, Predicate givesUp) : m_lock(lock), m_isHeld(lock.TryLock()) {
        for (unsigned tries = 0; !m_isHeld && !givesUp(); ++tries) {
            if (tries < kYields)
                std::this_thread::yield();
            else
                std::this_thread::sleep_for(kPause);
            m_isHeld = lock.TryLock();
        }
    }
    ~CImpatientLock() {
        if (m_isHeld)
            m_lock.Unlock();
    }
    CImpatientLock(const CImpatientLock&) = delete;
    CImpatientLock& operator=(const CImpatientLock&) = delete;
    explicit operator bool() const noexcept { return m_isHeld; }

private:
    // Node maps are mostly locked for less than the first, and by a slow serial line for much longer than the second.
    static constexpr unsigned kYields = 100;
    static constexpr std::chrono::microseconds kPause{200};

    GenApi::CLock& m_lock;
    bool m_isHeld;
};

}  // namespace Vanto
