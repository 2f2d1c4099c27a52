/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions of events
 */
#include <algorithm>

#include "exports/Guard.h"

using namespace gentl;

namespace {

void CheckType(EVENT_TYPE type) {
    if (type < EVENT_ERROR || type > EVENT_MODULE)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "There is no such event");
}

// The camera's port and buffers are no sources of events.
template <class Action>
GC_ERROR WithSource(EVENTSRC_HANDLE handle, EVENT_TYPE type, Action&& action) noexcept {
    return With<Module>(handle, [&](Module& module) {
        CheckType(type);
        action(module);
    });
}

}  // namespace

extern "C" {

GC_API GCRegisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID, EVENT_HANDLE* phEvent) {
    return WithSource(hEventSrc, iEventID, [&](Module& module) {
        Required(phEvent, "phEvent");
        Store(phEvent, module.RegisterEvent(iEventID)->Handle());
    });
}

GC_API GCUnregisterEvent(EVENTSRC_HANDLE hEventSrc, EVENT_TYPE iEventID) {
    return WithSource(hEventSrc, iEventID, [&](Module& module) { module.UnregisterEvent(iEventID); });
}

GC_API EventGetData(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize, uint64_t iTimeout) {
    return With<Event>(hEvent, [&](Event& event) { event.GetData(pBuffer, piSize, iTimeout); });
}

GC_API EventGetDataInfo(EVENT_HANDLE hEvent, const void* pInBuffer, size_t iInSize, EVENT_DATA_INFO_CMD iInfoCmd,
                        INFO_DATATYPE* piType, void* pOutBuffer, size_t* piOutSize) {
    return Ask<Event>(hEvent, piType, pOutBuffer, piOutSize,
                      [&](Event& event) { return event.Explain(iInfoCmd, pInBuffer, iInSize); });
}

GC_API EventGetInfo(EVENT_HANDLE hEvent, EVENT_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                    size_t* piSize) {
    return Ask<Event>(hEvent, piType, pBuffer, piSize, [&](Event& event) { return event.GetInfo(iInfoCmd); });
}

GC_API EventFlush(EVENT_HANDLE hEvent) {
    return With<Event>(hEvent, [](Event& event) { event.Flush(); });
}

GC_API EventKill(EVENT_HANDLE hEvent) {
    return With<Event>(hEvent, [](Event& event) { event.Kill(); });
}

}  // extern "C"
