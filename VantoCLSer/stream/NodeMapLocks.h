/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Holds the locks of the node maps of a camera and its stream grabber
 */
#pragma once

#include <optional>

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

}  // namespace Vanto
