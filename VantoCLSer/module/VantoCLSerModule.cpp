/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the plug-in exports to the factory
 */

#include <mutex>

#include "VantoCLSer/VantoCLSerTL.h"
#include "VantoCLSer/VantoCLSerTLInfo.h"
#include "VantoCLSer/base/ModuleHold.h"
#include "os/LockName.h"
#include "vanto/TlFactory.h"
#include "vanto/VantoCLSerDeviceInfo.h"

namespace Vanto {

namespace {

// The transport layer that Create returned last and that was not passed to Destroy.
std::mutex g_singletonLock;
[[maybe_unused]] const os::LockName g_singletonLockName(&g_singletonLock, "singleton");
CVantoCLSerTl* g_singleton = nullptr;

}  // namespace

extern "C" {

/**
 * \brief Append the info record of this library's transport layer
 * \return The number of records appended, 1
 */
VANTOCLSER_API int GetTLInfoList(TlInfoList& list) {
    list.push_back(GetTLInfo());
    return 1;
}

/**
 * \brief The one transport-layer object, made at the first call
 * \param[in] info The record that the factory chose
 * \return The object, or null where \a info is of another device class. A second call returns the same object; no
 *         count of the calls is kept.
 */
VANTOCLSER_API ITransportLayer* Create(const CTlInfo& info) {
    if (info.GetDeviceClass() != kDeviceClass)
        return nullptr;
    const std::lock_guard lock(g_singletonLock);
    if (g_singleton == nullptr)
        g_singleton = new CVantoCLSerTl;
    HoldModule();  // a constructor that fails holds nothing
    return g_singleton;
}

/**
 * \brief Delete a transport layer that Create returned; null and foreign objects are left alone
 */
VANTOCLSER_API void Destroy(ITransportLayer* tl) {
    {
        const std::lock_guard lock(g_singletonLock);
        if (tl != nullptr && tl == g_singleton)
            g_singleton = nullptr;
    }
    delete dynamic_cast<CVantoCLSerTl*>(tl);
    const std::lock_guard lock(g_singletonLock);
    if (g_singleton == nullptr)
        ReleaseModule();
}

}  // extern "C"

}  // namespace Vanto
