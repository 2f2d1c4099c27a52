/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Follows the nodes that the simulated grabber depends on
 */
#pragma once

#include <array>
#include <atomic>
#include <functional>

#include "Geometry.h"
#include "vanto/FgPlugin.h"

namespace grabber {

/// Keeps the last values of the camera's geometry nodes, and tells when the trigger node changes. Thread-safe after
/// Begin.
class NodeWatch {
public:
    using TriggerFunction = std::function<void(std::int64_t)>;

    void Begin(Vanto::FgCallee& callee, TriggerFunction onTrigger);
    void End() noexcept;
    CameraValues Values() const noexcept;

private:
    static void OnCameraNode(std::int64_t value, void* target, std::uint32_t kind);
    static void OnTriggerNode(std::int64_t value, void* watch, std::uint32_t kind);

    Vanto::FgCallee* m_callee = nullptr;
    TriggerFunction m_onTrigger;
    std::atomic<std::int64_t> m_width{-1};
    std::atomic<std::int64_t> m_height{-1};
    std::atomic<std::int64_t> m_pixelFormat{-1};
    std::atomic<std::int64_t> m_pixelSize{-1};
    std::array<Vanto::FgNodeCallbackHandle, 5> m_handles{};
};

}  // namespace grabber
