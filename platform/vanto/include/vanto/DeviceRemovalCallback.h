/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CDeviceRemovalCallback: what an application wants to be called when a camera is gone
 */
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "vanto/Device.h"

namespace Vanto {

/// A copyable function object. It may be called on any thread that uses the camera, and by several at once.
class GCBASE_INTERFACE CDeviceRemovalCallback {
public:
    virtual ~CDeviceRemovalCallback() = default;
    /// Called with the device that is gone; the device still exists, and its operations fail.
    virtual void operator()(IVantoDevice* device) const = 0;
    /// A copy that a registry keeps.
    virtual std::unique_ptr<CDeviceRemovalCallback> Clone() const = 0;

protected:
    CDeviceRemovalCallback() = default;
    CDeviceRemovalCallback(const CDeviceRemovalCallback&) = default;
    CDeviceRemovalCallback& operator=(const CDeviceRemovalCallback&) = default;
};

/// A removal callback that calls something else: a function, a lambda, a function object.
template <class Callable>
class CFunctionRemovalCallback : public CDeviceRemovalCallback {
public:
    /// Keeps a copy of what it calls.
    explicit CFunctionRemovalCallback(Callable callable) : m_callable(std::move(callable)) {}
    void operator()(IVantoDevice* device) const override { std::invoke(m_callable, device); }
    std::unique_ptr<CDeviceRemovalCallback> Clone() const override {
        return std::make_unique<CFunctionRemovalCallback>(*this);
    }

private:
    Callable m_callable;
};

/// Makes a removal callback of a function or function object that takes an IVantoDevice*.
template <class Callable>
CFunctionRemovalCallback<Callable> MakeDeviceRemovalCallback(Callable callable) {
    return CFunctionRemovalCallback<Callable>(std::move(callable));
}

/// Makes a removal callback of a member function; \a object must outlive the registration.
template <class Object, class Result>
auto MakeDeviceRemovalCallback(Object& object, Result (Object::*member)(IVantoDevice*)) {
    return MakeDeviceRemovalCallback(
        [target = &object, member](IVantoDevice* device) { std::invoke(member, target, device); });
}

/// Another name of MakeDeviceRemovalCallback.
template <class... Arguments>
auto make_DeviceRemovalCallback(Arguments&&... arguments) {
    return MakeDeviceRemovalCallback(std::forward<Arguments>(arguments)...);
}

/// Registers a function, a function object, or an object and its member function; returns the handle.
template <class... Arguments>
DeviceCallbackHandle RegisterRemovalCallback(IVantoDevice& device, Arguments&&... arguments) {
    return device.RegisterRemovalCallback(MakeDeviceRemovalCallback(std::forward<Arguments>(arguments)...));
}

}  // namespace Vanto
