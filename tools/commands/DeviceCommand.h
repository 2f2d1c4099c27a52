/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DeviceCommand: a command for one camera
 */
#pragma once

#include <string>

#include "cameras/DeviceChoice.h"
#include "commands/Command.h"
#include "commands/Options.h"

namespace tools {

/// A command whose first argument names a camera.
class DeviceCommand : public Command {
public:
    /// Adds DEVICE; the command's own arguments follow it.
    void Declare(Options& options) override { options.Argument("DEVICE", m_device, kDeviceHelp); }

protected:
    const std::string& Device() const noexcept { return m_device; }

private:
    std::string m_device;
};

}  // namespace tools
