/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tells the host what the module does, and whether the host wants it to end
 */
#include "ActivityTeller.h"

#include <atomic>

#include "Base/GCFormat.h"
#include "CallbackHolder.h"
#include "ErrorReporter.h"
#include "base/Immortal.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

namespace {

std::atomic<bool> g_isHeard{false};
std::atomic<bool> g_stop{false};

using Holder = CallbackHolder<const Activity&>;

Holder& TheHolder() {
    static base::Immortal<Holder> holder;
    return holder.Get();
}

}  // namespace

void SetActivityListener(ActivityListener listener) {
    TheHolder().Set(std::move(listener), [](bool isThere) { g_isHeard = isThere; });
}

void SetStopRequested(bool stop) noexcept {
    g_stop = stop;
}

bool IsActivityHeard() noexcept {
    return g_isHeard.load(std::memory_order_relaxed) && !Holder::IsInside();
}

void Tell(const Activity& activity) {
    if (IsActivityHeard())
        TheHolder().Call(activity);
}

bool IsStopRequested() noexcept {
    return g_stop.load(std::memory_order_relaxed);
}

void ThrowIfStopped(const GenICam::gcstring& portId) {
    if (IsStopRequested())
        throw CL_ERR_EXCEPTION(CL_ERR_TIMEOUT)("Port '%s': ended early, as it was asked for", portId);
}

/**
 * \brief Look for a camera, and tell the host about it
 * \param[in] portId Where
 * \param[in] deviceId What is looked for
 * \param[in] look Looks; what it throws is passed on, as -10004 once the host has asked for an end
 * \return Full DeviceID of the camera that was found
 */
GenICam::gcstring TellLook(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId,
                           const std::function<LookResult()>& look) {
    using Kind = Activity::Kind;
    try {
        ThrowIfStopped(portId);
        Tell({.kind = Kind::kAsking, .portId = portId, .deviceId = deviceId});
        LookResult found = look();
        Tell({.kind = Kind::kAnswered, .portId = portId, .deviceId = found.deviceId, .baudRateFlag = found.rateFlag});
        return std::move(found.deviceId);
    } catch (const CLErrException& error) {
        ThrowIfStopped(portId);
        Tell({.kind = Kind::kFailed,
              .portId = portId,
              .deviceId = deviceId,
              .errorCode = error.GetErrorCode(),
              .reason = error.GetDescription()});
        throw;
    } catch (const GenICam::GenericException& error) {
        Tell({.kind = Kind::kFailed, .portId = portId, .deviceId = deviceId, .reason = error.GetDescription()});
        throw;
    }
}

}  // namespace CLProtocol
