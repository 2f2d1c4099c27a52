/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraSearch: from what a user calls a camera to the camera, with as few ports asked as possible
 */
#pragma once

#include <functional>
#include <string>

#include "cameras/Enumeration.h"
#include "cameras/KnownCamerasFile.h"

namespace tools {

/// Finds cameras. Thread-bound.
class CameraSearch {
public:
    /// Connects to the camera of a record; throws when that fails.
    using Use = std::function<void(const Vanto::CDeviceInfo& record)>;

    /// \param[in] output For progress, and for warnings about what is remembered
    CameraSearch(const TransportLayer& layer, Output& output) : m_layer(layer), m_output(output) {}

    void Find(const std::string& device, const Use& use) const;

private:
    void UseKnown(const KnownCamera& camera, const std::string& device, const Use& use) const;
    void UsePort(const std::string& portId, const KnownCameras& known, const Use& use) const;
    void UseUnknown(const std::string& device, const KnownCameras& known, const Use& use) const;
    bool TryToUse(const CameraAddress& address, const Use& use) const;
    std::string AskPort(const std::string& portId) const;

    const TransportLayer& m_layer;
    Output& m_output;
};

}  // namespace tools
