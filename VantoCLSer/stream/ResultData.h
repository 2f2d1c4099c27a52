/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the camera says about a frame, and what it said last
 */
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <mutex>

#include "GenApi/GenApi.h"
#include "VantoCLSer/stream/GrabberNodes.h"
#include "os/LockName.h"
#include "vanto/GrabResult.h"

namespace Vanto {

/// Pixel type and offsets of the frames. The camera's nodes are read where their map is free; while another thread has
/// it locked, what was read last is still true: the nodes tell when it is not. Thread-safe.
class CResultData {
public:
    CResultData(GenApi::INodeMap* camera, const CGrabberNodes& nodes) : m_camera(camera), m_nodes(nodes) {}
    ~CResultData() { Unwatch(); }
    CResultData(const CResultData&) = delete;
    CResultData& operator=(const CResultData&) = delete;

    void Watch();
    void Unwatch() noexcept;
    void SetFollowing(bool isFollowing) noexcept;
    void Refresh() noexcept;
    void Forget() noexcept;
    bool Read(GrabResult& result, const std::function<bool()>& givesUp) noexcept;

private:
    /// What of a result comes from the camera.
    struct Kept {
        bool isValid = false;
        EPixelType pixelType = PixelType_Undefined;
        std::int32_t offsetX = -1;
        std::int32_t offsetY = -1;

        bool operator==(const Kept&) const noexcept = default;
    };
    struct Registration {
        GenApi::INode* node = nullptr;
        GenApi::CallbackHandleType handle = 0;
    };

    void OnChanged(GenApi::INode* node);
    bool ReadNodes(GrabResult& result);
    bool IsWatching() const noexcept { return m_registrations[0].node != nullptr; }
    void Keep(const Kept& kept) noexcept;
    bool IsKept(const Kept& values) const noexcept;
    bool TakeKept(GrabResult& result) const noexcept;

    GenApi::INodeMap* const m_camera;
    const CGrabberNodes& m_nodes;
    std::array<Registration, 3> m_registrations;
    std::atomic<bool> m_isFollowing{false};

    mutable std::mutex m_lock;  // a leaf: nothing is called with it
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "result data"};
    Kept m_kept;
};

}  // namespace Vanto
