/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions of devices and streams
 */
#include <fmt/format.h>

#include "exports/Guard.h"
#include "modules/Device.h"

using namespace gentl;

extern "C" {

GC_API DevClose(DEV_HANDLE hDevice) {
    return With<Device>(hDevice, [](Device& device) { device.Close(); });
}

GC_API DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    return Ask<Device>(hDevice, piType, pBuffer, piSize, [&](Device& device) { return device.GetInfo(iInfoCmd); });
}

GC_API DevGetParentIF(DEV_HANDLE hDevice, IF_HANDLE* phIface) {
    return With<Device>(hDevice, [&](Device& device) {
        Required(phIface, "phIface");
        const std::shared_ptr<Interface> parent = device.Parent();
        Store(phIface, parent ? parent->Handle() : nullptr);
    });
}

GC_API DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
    return With<Device>(
        hDevice, [&](Device& device) { Store(Required(phRemoteDevice, "phRemoteDevice"), device.RemoteHandle()); });
}

GC_API DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
    return With<Device>(hDevice, [&](Device& device) {
        Store(Required(piNumDataStreams, "piNumDataStreams"), device.HasStream() ? 1U : 0U);
    });
}

GC_API DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID, size_t* piSize) {
    return With<Device>(hDevice, [&](Device& device) {
        CheckTarget({nullptr, sDataStreamID, piSize});
        if (!device.HasStream())
            throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "The device's port has no frame grabber");
        if (iIndex != 0)
            throw GenTLError(GC_ERR_INVALID_INDEX, fmt::format("The device has no stream {}", iIndex));
        WriteText(device.StreamId(), sDataStreamID, piSize);
    });
}

GC_API DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID, DS_HANDLE* phDataStream) {
    return With<Device>(hDevice, [&](Device& device) {
        Required(phDataStream, "phDataStream");
        Store(phDataStream, device.OpenStream(TextArgument(sDataStreamID, "sDataStreamID"))->Handle());
    });
}

GC_API DSClose(DS_HANDLE hDataStream) {
    return With<Stream>(hDataStream, [](Stream& stream) { stream.Close(); });
}

GC_API DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                 size_t* piSize) {
    return Ask<Stream>(hDataStream, piType, pBuffer, piSize, [&](Stream& stream) { return stream.GetInfo(iInfoCmd); });
}

GC_API DSGetParentDev(DS_HANDLE hDataStream, DEV_HANDLE* phDevice) {
    return With<Stream>(hDataStream, [&](Stream& stream) {
        Required(phDevice, "phDevice");
        const std::shared_ptr<Device> parent = stream.Parent();
        Store(phDevice, parent ? parent->Handle() : nullptr);
    });
}

GC_API DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags, uint64_t iNumToAcquire) {
    return With<Stream>(hDataStream, [&](Stream& stream) { stream.Start(iStartFlags, iNumToAcquire); });
}

GC_API DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
    return With<Stream>(hDataStream, [&](Stream& stream) { stream.Stop(iStopFlags); });
}

GC_API DSGetNumFlows(DS_HANDLE hDataStream, uint32_t* piNumFlows) {
    return With<Stream>(hDataStream, [&](Stream&) {
        Required(piNumFlows, "piNumFlows");
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "The stream has no flows");
    });
}

GC_API DSGetFlowInfo(DS_HANDLE hDataStream, uint32_t, FLOW_INFO_CMD, INFO_DATATYPE* piType, void* pBuffer,
                     size_t* piSize) {
    return Ask<Stream>(hDataStream, piType, pBuffer, piSize,
                       [](Stream&) -> Info { throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "The stream has no flows"); });
}

}  // extern "C"
