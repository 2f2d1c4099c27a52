/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions of the library, the system and interfaces
 */
#include "exports/Guard.h"
#include "support/LastError.h"

using namespace gentl;

namespace {

/// Runs an update, and says whether it has changed anything.
template <class Update>
void Tell(bool8_t* changed, Update&& update) {
    Optional(changed, "pbChanged");
    const bool hasChanged = std::forward<Update>(update)();
    if (changed != nullptr)
        *changed = hasChanged ? 1 : 0;
}

}  // namespace

extern "C" {

GC_API GCInitLib(void) {
    return Plain([] { Library::Init(); });
}

GC_API GCCloseLib(void) {
    return Plain([] { Library::Close(); });
}

GC_API GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Guarded([&](Library&) {
        const InfoTarget target{piType, pBuffer, piSize};
        CheckTarget(target);
        WriteInfo(ProducerInfo(iInfoCmd), target);
    });
}

// Its own errors are not kept.
GC_API GCGetLastError(GC_ERROR* piErrorCode, char* sErrorText, size_t* piSize) {
    const GC_ERROR code = LastErrorCode();
    const std::string text(LastErrorText());
    const GC_ERROR result = Guarded([&](Library&) {
        Required(piErrorCode, "piErrorCode");
        WriteText(text, sErrorText, piSize);
        Store(piErrorCode, code);
    });
    if (result != GC_ERR_SUCCESS)
        StoreLastError(code, text);
    return result;
}

GC_API TLOpen(TL_HANDLE* phSystem) {
    return Guarded([&](Library& library) {
        Required(phSystem, "phSystem");
        Store(phSystem, library.OpenSystem()->Handle());
    });
}

GC_API TLClose(TL_HANDLE hSystem) {
    return With<System>(hSystem, [](System& system) { system.Close(); });
}

GC_API TLGetInfo(TL_HANDLE hSystem, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Ask<System>(hSystem, piType, pBuffer, piSize, [&](System&) { return ProducerInfo(iInfoCmd); });
}

GC_API TLUpdateInterfaceList(TL_HANDLE hSystem, bool8_t* pbChanged, uint64_t iTimeout) {
    return With<System>(hSystem,
                        [&](System& system) { Tell(pbChanged, [&] { return system.UpdateInterfaces(iTimeout); }); });
}

GC_API TLGetNumInterfaces(TL_HANDLE hSystem, uint32_t* piNumIfaces) {
    return With<System>(hSystem, [&](System& system) {
        Store(Required(piNumIfaces, "piNumIfaces"), static_cast<uint32_t>(system.CountInterfaces()));
    });
}

GC_API TLGetInterfaceID(TL_HANDLE hSystem, uint32_t iIndex, char* sID, size_t* piSize) {
    return With<System>(hSystem, [&](System& system) {
        CheckTarget({nullptr, sID, piSize});
        WriteText(system.InterfaceId(iIndex), sID, piSize);
    });
}

GC_API TLGetInterfaceInfo(TL_HANDLE hSystem, const char* sIfaceID, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                          void* pBuffer, size_t* piSize) {
    return Ask<System>(hSystem, piType, pBuffer, piSize, [&](System& system) {
        return system.GetInterfaceInfo(TextArgument(sIfaceID, "sIfaceID"), iInfoCmd);
    });
}

GC_API TLOpenInterface(TL_HANDLE hSystem, const char* sIfaceID, IF_HANDLE* phIface) {
    return With<System>(hSystem, [&](System& system) {
        Required(phIface, "phIface");
        Store(phIface, system.OpenInterface(TextArgument(sIfaceID, "sIfaceID"))->Handle());
    });
}

GC_API IFClose(IF_HANDLE hIface) {
    return With<Interface>(hIface, [](Interface& one) { one.Close(); });
}

GC_API IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Ask<Interface>(hIface, piType, pBuffer, piSize,
                          [&](Interface& one) { return Interface::GetInfo(one.PortId(), iInfoCmd); });
}

GC_API IFGetParentTL(IF_HANDLE hIface, TL_HANDLE* phSystem) {
    return With<Interface>(hIface, [&](Interface& one) {
        Required(phSystem, "phSystem");
        const std::shared_ptr<System> parent = one.Parent();
        Store(phSystem, parent ? parent->Handle() : nullptr);
    });
}

GC_API IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged, uint64_t iTimeout) {
    return With<Interface>(hIface,
                           [&](Interface& one) { Tell(pbChanged, [&] { return one.UpdateDevices(iTimeout); }); });
}

GC_API IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
    return With<Interface>(hIface, [&](Interface& one) {
        Store(Required(piNumDevices, "piNumDevices"), static_cast<uint32_t>(one.CountDevices()));
    });
}

GC_API IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID, size_t* piSize) {
    return With<Interface>(hIface, [&](Interface& one) {
        CheckTarget({nullptr, sIDeviceID, piSize});
        WriteText(one.DeviceId(iIndex), sIDeviceID, piSize);
    });
}

GC_API IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                       void* pBuffer, size_t* piSize) {
    return Ask<Interface>(hIface, piType, pBuffer, piSize, [&](Interface& one) {
        return one.GetDeviceInfo(TextArgument(sDeviceID, "sDeviceID"), iInfoCmd);
    });
}

GC_API IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID, DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE* phDevice) {
    return With<Interface>(hIface, [&](Interface& one) {
        Required(phDevice, "phDevice");
        Store(phDevice, one.OpenDevice(TextArgument(sDeviceID, "sDeviceID"), iOpenFlags)->Handle());
    });
}

}  // extern "C"
