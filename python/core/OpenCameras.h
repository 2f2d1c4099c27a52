/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenCameras: the cameras of this process, to be closed before the interpreter ends
 */
#pragma once

#include <list>
#include <memory>
#include <mutex>

#include "vanto/Camera.h"

namespace python {

/// Knows the cameras that were opened and are not destroyed. Thread-safe.
class OpenCameras {
public:
    static OpenCameras& Instance() noexcept;

    void Add(const std::shared_ptr<Vanto::Camera>& camera);
    void CloseAll() noexcept;

private:
    std::mutex m_mutex;
    std::list<std::weak_ptr<Vanto::Camera>> m_cameras;
};

}  // namespace python
