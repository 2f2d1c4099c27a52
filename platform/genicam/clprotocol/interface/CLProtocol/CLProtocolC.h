/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The C functions that a CLProtocol driver exports, by type; the export has the name without the leading P
 */
#pragma once

#include "CLProtocol/CLProtocolTypes.h"
#include "CLProtocol/DriverCodes.h"
#include "CLProtocol/ISerial.h"

namespace CLProtocol {

extern "C" {

using CLP_LOGGER = void(CLP_CC*)(CLINT32 level, const char* format, va_list arguments);

using PclpInitLib = CLINT32(CLP_CC*)(CLP_LOGGER logger, CLINT32 logLevel);
using PclpCloseLib = CLINT32(CLP_CC*)();
using PclpGetCLProtocolVersion = CLINT32(CLP_CC*)(CLUINT32* major, CLUINT32* minor);
using PclpGetShortDeviceIDTemplates = CLINT32(CLP_CC*)(CLINT8* templates, CLUINT32* size);
using PclpProbeDevice = CLINT32(CLP_CC*)(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId,
                                         CLUINT32* size, CLUINT32* cookie, CLUINT32 timeoutMs);
using PclpGetXMLIDs = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size,
                                       CLUINT32 timeoutMs);
using PclpGetXMLDescription = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer,
                                               CLUINT32* size, CLUINT32 timeoutMs);
using PclpReadRegister = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer,
                                          CLINT64 length, CLUINT32 timeoutMs);
using PclpWriteRegister = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer,
                                           CLINT64 length, CLUINT32 timeoutMs);
using PclpContinueWriteRegister = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, BOOL8 continueWaiting,
                                                   CLUINT32 timeoutMs);
using PclpGetErrorText = CLINT32(CLP_CC*)(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32 cookie);
using PclpDisconnect = CLINT32(CLP_CC*)(CLUINT32 cookie);
using PclpGetParam = CLINT32(CLP_CC*)(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, CLINT8* buffer,
                                      CLINT64 length, CLUINT32 timeoutMs);
using PclpSetParam = CLINT32(CLP_CC*)(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer,
                                      CLINT64 length, CLUINT32 timeoutMs);
using PclpIsParamSupported = CLINT32(CLP_CC*)(CLP_PARAMS param);
/// An addition to the standard that a driver may lack: a text that is another one whenever the bytes of a description
/// are. A host keeps descriptions by it. Empty when the camera does not tell: then nothing that was kept may be used.
using PclpGetXMLDigest = CLINT32(CLP_CC*)(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* digest,
                                          CLUINT32* size, CLUINT32 timeoutMs);
using PclpGetEventData = CLINT32(CLP_CC*)(CLUINT32 cookie, CLINT8* buffer, CLUINT32* size);

}  // extern "C"

}  // namespace CLProtocol
