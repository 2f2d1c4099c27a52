/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the camera says about a frame, and what it said last
 */

#include "VantoCLSer/stream/ResultData.h"

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/ImpatientLock.h"

namespace Vanto {

/**
 * \class CResultData
 * \brief What a frame's result says about the camera
 *
 * A delivery must not wait for the lock of the camera's node map: T writes features over a slow line, one after the
 * other, and holds the lock all the time but for moments. Nor need it: the values change when a node changes, and the
 * node tells so in a callback, which runs with the map's lock held. What was read last is kept as long as GenApi itself
 * would answer from its caches.
 */

/**
 * \brief Be told by the camera's nodes when what is kept is not true any more
 *
 * Nothing is kept without.
 */
void CResultData::Watch() {
    const auto nodes = m_nodes.ResultNodes();
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        if (nodes[index] != nullptr)
            m_registrations[index] = {nodes[index], GenApi::Register(nodes[index], *this, &CResultData::OnChanged)};
    }
}

void CResultData::Unwatch() noexcept {
    for (Registration& registration : m_registrations) {
        if (registration.node != nullptr)
            registration.node->DeregisterCallback(registration.handle);
        registration = {};
    }
    Forget();
}

/**
 * \brief Say whether frames come: then a change is read at once, by the thread that makes it
 */
void CResultData::SetFollowing(bool isFollowing) noexcept {
    m_isFollowing = isFollowing;
}

// Runs with the lock of the camera's node map held.
void CResultData::OnChanged(GenApi::INode*) {
    if (m_isFollowing)
        Refresh();
    else
        Forget();
}

/**
 * \brief Read the values, so that the next frame finds them
 *
 * Says nothing where that fails: the next frame tries again.
 *
 * \context Any thread; waits for the lock of the camera's node map
 */
void CResultData::Refresh() noexcept {
    if (m_camera == nullptr)
        return;
    try {
        const GenApi::AutoLock lock(m_camera->GetLock());
        GrabResult ignored;
        ReadNodes(ignored);
    } catch (const std::exception&) {
        // Nothing is kept now.
    }
}

/**
 * \brief Keep nothing: the next frame asks the camera
 */
void CResultData::Forget() noexcept {
    Keep({});
}

/**
 * \brief Read what the camera knows about a frame
 * \param[in,out] result A result without values; gets pixel type and offsets
 * \param[in] givesUp Asked while the camera's node map is locked by another thread and nothing is kept: true when it is
 *            not to be waited for any longer
 * \return false, logged where there is more to say, when the camera's node map lacks something or can't be had
 * \context Any thread; does not allocate
 */
bool CResultData::Read(GrabResult& result, const std::function<bool()>& givesUp) noexcept {
    if (m_camera == nullptr)
        return false;
    try {
        bool isTaken = false;
        const CImpatientLock lock(m_camera->GetLock(), [&] { return (isTaken = TakeKept(result)) || givesUp(); });
        if (lock)
            return ReadNodes(result);
        if (!isTaken)
            LogTrace(StreamLog(), tracelog::kError, "Could not read values from device nodemap (%s)",
                     "It is locked by who ends the grab.");
        return isTaken;
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Could not read values from device nodemap (%s)", error.what());
        return false;
    }
}

// Wants the lock of the camera's node map.
bool CResultData::ReadNodes(GrabResult& result) {
    try {
        const bool isComplete = m_nodes.ReadResultData(result);
        Kept now{true, static_cast<EPixelType>(result.pixelType), result.offsetX, result.offsetY};
        now.isValid = isComplete && IsWatching() && (IsKept(now) || m_nodes.AreResultDataCached());
        Keep(now);
        return isComplete;
    } catch (...) {
        Forget();
        throw;
    }
}

void CResultData::Keep(const Kept& kept) noexcept {
    const std::lock_guard lock(m_lock);
    m_kept = kept;
}

bool CResultData::IsKept(const Kept& values) const noexcept {
    const std::lock_guard lock(m_lock);
    return m_kept == values;
}

bool CResultData::TakeKept(GrabResult& result) const noexcept {
    const std::lock_guard lock(m_lock);
    if (!m_kept.isValid)
        return false;
    result.pixelType = m_kept.pixelType;
    result.offsetX = m_kept.offsetX;
    result.offsetY = m_kept.offsetY;
    return true;
}

}  // namespace Vanto
