/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LoadedDriver: the driver's file, loaded and looked up as a host does it
 */
#pragma once

#include <type_traits>

#include "CLProtocol/CLProtocolC.h"
#include "os/Library.h"

namespace marlow::test {

struct LoadedDriver {
    os::Library library{DRIVER_PATH};

    template <typename Pointer>
    Pointer Find(const char* name) const {
        return library.Get<std::remove_pointer_t<Pointer>>(name);
    }

    CLProtocol::PclpInitLib initLib = Find<CLProtocol::PclpInitLib>("clpInitLib");
    CLProtocol::PclpCloseLib closeLib = Find<CLProtocol::PclpCloseLib>("clpCloseLib");
    CLProtocol::PclpGetCLProtocolVersion version =
        Find<CLProtocol::PclpGetCLProtocolVersion>("clpGetCLProtocolVersion");
    CLProtocol::PclpGetShortDeviceIDTemplates templates =
        Find<CLProtocol::PclpGetShortDeviceIDTemplates>("clpGetShortDeviceIDTemplates");
    CLProtocol::PclpProbeDevice probe = Find<CLProtocol::PclpProbeDevice>("clpProbeDevice");
    CLProtocol::PclpGetXMLIDs xmlIds = Find<CLProtocol::PclpGetXMLIDs>("clpGetXMLIDs");
    CLProtocol::PclpGetXMLDescription description = Find<CLProtocol::PclpGetXMLDescription>("clpGetXMLDescription");
    CLProtocol::PclpGetXMLDigest digest = Find<CLProtocol::PclpGetXMLDigest>("clpGetXMLDigest");
    CLProtocol::PclpReadRegister read = Find<CLProtocol::PclpReadRegister>("clpReadRegister");
    CLProtocol::PclpWriteRegister write = Find<CLProtocol::PclpWriteRegister>("clpWriteRegister");
    CLProtocol::PclpContinueWriteRegister continueWrite =
        Find<CLProtocol::PclpContinueWriteRegister>("clpContinueWriteRegister");
    CLProtocol::PclpGetErrorText errorText = Find<CLProtocol::PclpGetErrorText>("clpGetErrorText");
    CLProtocol::PclpDisconnect disconnect = Find<CLProtocol::PclpDisconnect>("clpDisconnect");
    CLProtocol::PclpGetParam getParam = Find<CLProtocol::PclpGetParam>("clpGetParam");
    CLProtocol::PclpSetParam setParam = Find<CLProtocol::PclpSetParam>("clpSetParam");
    CLProtocol::PclpIsParamSupported isParamSupported = Find<CLProtocol::PclpIsParamSupported>("clpIsParamSupported");
    CLProtocol::PclpGetEventData eventData = Find<CLProtocol::PclpGetEventData>("clpGetEventData");
};

}  // namespace marlow::test
