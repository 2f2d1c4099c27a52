/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The names of all functions of the C interface
 */
#pragma once

#include "gentl/GenTL.h"

// clang-format off
#define GENTL_FUNCTIONS(X) \
    X(GCInitLib) X(GCCloseLib) X(GCGetInfo) X(GCGetLastError) X(TLOpen) X(TLClose) X(TLGetInfo) \
    X(TLUpdateInterfaceList) X(TLGetNumInterfaces) X(TLGetInterfaceID) X(TLGetInterfaceInfo) X(TLOpenInterface) \
    X(IFClose) X(IFGetInfo) X(IFGetParentTL) X(IFUpdateDeviceList) X(IFGetNumDevices) X(IFGetDeviceID) \
    X(IFGetDeviceInfo) X(IFOpenDevice) X(DevClose) X(DevGetInfo) X(DevGetParentIF) X(DevGetPort) \
    X(DevGetNumDataStreams) X(DevGetDataStreamID) X(DevOpenDataStream) X(DSClose) X(DSGetInfo) X(DSGetParentDev) \
    X(DSAnnounceBuffer) X(DSAllocAndAnnounceBuffer) X(DSAnnounceCompositeBuffer) X(DSRevokeBuffer) X(DSQueueBuffer) \
    X(DSFlushQueue) X(DSStartAcquisition) X(DSStopAcquisition) X(DSGetBufferID) X(DSGetBufferInfo) \
    X(DSGetBufferInfoStacked) X(DSGetBufferChunkData) X(DSGetNumBufferParts) X(DSGetBufferPartInfo) \
    X(DSGetBufferPartInfoStacked) X(DSGetNumFlows) X(DSGetFlowInfo) X(DSGetNumBufferSegments) \
    X(DSGetBufferSegmentInfo) X(GCGetPortInfo) X(GCGetNumPortURLs) X(GCGetPortURLInfo) X(GCGetPortURL) X(GCReadPort) \
    X(GCWritePort) X(GCReadPortStacked) X(GCWritePortStacked) X(GCRegisterEvent) X(GCUnregisterEvent) \
    X(EventGetData) X(EventGetDataInfo) X(EventGetInfo) X(EventFlush) X(EventKill)
// clang-format on
