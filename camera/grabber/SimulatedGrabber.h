/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A frame grabber whose frames are drawn
 */
#pragma once

#include <mutex>
#include <string>

#include "Acquisition.h"
#include "NodeWatch.h"
#include "vanto/FgPlugin.h"

namespace grabber {

/// Thread-safe after Init.
class SimulatedGrabber final : public Vanto::IFrameGrabber {
public:
    bool Init(const char* parameters, Vanto::FgCallee* callee) override;
    void Shutdown() override;
    bool StartGrab() override;
    bool StopGrab() override;
    std::uint32_t GetLastErrorText(char* buffer, std::uint32_t size) override;
    std::uint64_t GetValue(std::uint32_t parameter) override;
    std::int32_t PoCLControl(std::uint32_t command) override;

private:
    template <class Action>
    bool Succeeds(const Action& action) noexcept;

    Settings m_settings;
    Vanto::FgCallee* m_callee = nullptr;
    NodeWatch m_nodes;
    Acquisition m_acquisition;
    std::mutex m_lock;  // guards the following
    std::string m_errorText;
    bool m_poCL = false;
};

}  // namespace grabber
