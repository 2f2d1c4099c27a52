/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Follows the nodes that the simulated grabber depends on
 */

#include "NodeWatch.h"

namespace grabber {

/**
 * \brief Watch the nodes; each function is called once before this returns, if the camera has the node
 * \param[in] onTrigger Called with the values of the stream grabber's DebugData1; empty for none
 */
void NodeWatch::Begin(Vanto::FgCallee& callee, TriggerFunction onTrigger) {
    m_callee = &callee;
    m_onTrigger = std::move(onTrigger);
    m_handles[0] = callee.RegisterDeviceNodeCallback("Width", &OnCameraNode, &m_width, 0);
    m_handles[1] = callee.RegisterDeviceNodeCallback("Height", &OnCameraNode, &m_height, 0);
    m_handles[2] = callee.RegisterDeviceNodeCallback("PixelFormat", &OnCameraNode, &m_pixelFormat, 0);
    m_handles[3] = callee.RegisterDeviceNodeCallback("PixelSize", &OnCameraNode, &m_pixelSize, 0);
    if (m_onTrigger)
        m_handles[4] = callee.RegisterStreamNodeCallback("DebugData1", &OnTriggerNode, this, 0);
}

void NodeWatch::End() noexcept {
    for (Vanto::FgNodeCallbackHandle& handle : m_handles) {
        if (handle != 0)
            m_callee->DeregisterNodeCallback(handle);
        handle = 0;
    }
}

CameraValues NodeWatch::Values() const noexcept {
    return {.width = m_width, .height = m_height, .pixelFormat = m_pixelFormat, .pixelSize = m_pixelSize};
}

void NodeWatch::OnCameraNode(std::int64_t value, void* target, std::uint32_t) {
    *static_cast<std::atomic<std::int64_t>*>(target) = value;
}

void NodeWatch::OnTriggerNode(std::int64_t value, void* watch, std::uint32_t) {
    static_cast<NodeWatch*>(watch)->m_onTrigger(value);
}

}  // namespace grabber
