/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A simulated camera in a process of its own
 */
#pragma once

#include <sys/types.h>

#include <string>

#include "simulator/CameraOptions.h"

namespace integration {

/// Plays a camera as long as it lives. It is made before there are other threads, as the process is copied.
class CameraProcess {
public:
    CameraProcess(const std::string& folder, const std::string& name, const MarlowSim::CameraOptions& options);
    ~CameraProcess();
    CameraProcess(const CameraProcess&) = delete;
    CameraProcess& operator=(const CameraProcess&) = delete;

private:
    pid_t m_process = -1;
    int m_end = -1;  // closing it ends the process
};

}  // namespace integration
