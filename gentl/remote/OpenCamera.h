/* SPDX-License-Identifier: Apache-2.0 */
/*
 * OpenCamera: a camera that is open as a device of the base library
 */
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <shared_mutex>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "os/LockName.h"
#include "support/GenTLError.h"
#include "vanto/TransportLayer.h"

namespace GenApi {
struct INode;
struct INodeMap;
struct IPort;
struct IRegister;
}  // namespace GenApi

namespace gentl {

/// Several threads use the camera while another one may close it: a use begins only while it is open, and closing waits
/// for the uses that are under way, each of which ends with its access to the line. Thread-safe.
class OpenCamera {
public:
    using LossListener = std::function<void()>;

    OpenCamera(Vanto::ITransportLayer& layer, const Vanto::CDeviceInfo& info, LossListener onLoss);
    ~OpenCamera();
    OpenCamera(const OpenCamera&) = delete;
    OpenCamera& operator=(const OpenCamera&) = delete;

    void Close() noexcept;
    bool IsLost() const noexcept { return m_isLost; }

    /// Runs \a action with the device; throws INVALID_HANDLE once the camera is being closed. Not to be nested.
    template <class Action>
    decltype(auto) Use(Action&& action) {
        const std::shared_lock lock(m_mutex);
        if (m_isClosing)
            throw GenTLError(GC_ERR_INVALID_HANDLE, "The device was closed");
        return std::forward<Action>(action)(*m_device);
    }

    std::string Description();
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes);
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes);

private:
    void FindRegisters();
    void Invalidate(std::int64_t address, std::int64_t length);
    GenApi::IPort& PortOf(Vanto::IVantoDevice& device);

    Vanto::ITransportLayer& m_layer;
    Vanto::IVantoDevice* m_device = nullptr;
    std::shared_mutex m_mutex;  // T that closes holds it; users share it
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL camera"};
    std::atomic<bool> m_isClosing{false};
    std::atomic<bool> m_isLost{false};
    std::vector<std::pair<GenApi::INode*, GenApi::IRegister*>> m_registers;
};

}  // namespace gentl
