/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenCameras: the cameras of this process, to be closed before the interpreter ends
 */
#include "OpenCameras.h"

#include <exception>

namespace python {

// Never destroyed, as Python objects are not all gone when static objects go.
OpenCameras& OpenCameras::Instance() noexcept {
    static OpenCameras* const cameras = new OpenCameras;
    return *cameras;
}

void OpenCameras::Add(const std::shared_ptr<Vanto::Camera>& camera) {
    const std::lock_guard lock(m_mutex);
    m_cameras.remove_if([](const std::weak_ptr<Vanto::Camera>& known) { return known.expired(); });
    m_cameras.push_back(camera);
}

/// Closes them, which ends the waits of all threads. Must be called without the GIL.
void OpenCameras::CloseAll() noexcept {
    std::list<std::weak_ptr<Vanto::Camera>> cameras;
    {
        const std::lock_guard lock(m_mutex);
        cameras = m_cameras;
    }
    for (const std::weak_ptr<Vanto::Camera>& known : cameras)
        try {
            if (const auto camera = known.lock())
                camera->Close();
        } catch (const std::exception&) {
            // It is closed all the same, and nobody is left to be told.
        }
}

}  // namespace python
