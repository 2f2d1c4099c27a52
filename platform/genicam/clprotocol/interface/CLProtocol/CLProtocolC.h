/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The C functions that a CLProtocol driver exports, by type; the export has the name without the leading P
 */
#pragma once

#include "CLProtocol/CLProtocolTypes.h"
#include "CLProtocol/DriverCodes.h"
#include "CLProtocol/ISerial.h"

#ifdef __cplusplus
namespace CLProtocol {

extern "C" {
#endif

typedef void(CLP_CC* CLP_LOGGER)(CLINT32 level, const char* format, va_list arguments);

typedef CLINT32(CLP_CC* PclpInitLib)(CLP_LOGGER logger, CLINT32 logLevel);
typedef CLINT32(CLP_CC* PclpCloseLib)(void);
typedef CLINT32(CLP_CC* PclpGetCLProtocolVersion)(CLUINT32* major, CLUINT32* minor);
typedef CLINT32(CLP_CC* PclpGetShortDeviceIDTemplates)(CLINT8* templates, CLUINT32* size);
typedef CLINT32(CLP_CC* PclpProbeDevice)(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId,
                                         CLUINT32* size, CLUINT32* cookie, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpGetXMLIDs)(ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size,
                                       CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpGetXMLDescription)(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer,
                                               CLUINT32* size, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpReadRegister)(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer,
                                          CLINT64 length, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpWriteRegister)(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer,
                                           CLINT64 length, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpContinueWriteRegister)(ISerial* serial, CLUINT32 cookie, BOOL8 continueWaiting,
                                                   CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpGetErrorText)(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32 cookie);
typedef CLINT32(CLP_CC* PclpDisconnect)(CLUINT32 cookie);
typedef CLINT32(CLP_CC* PclpGetParam)(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, CLINT8* buffer,
                                      CLINT64 length, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpSetParam)(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer,
                                      CLINT64 length, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpIsParamSupported)(CLP_PARAMS param);
/* An addition to the standard that a driver may lack: a text that is another one whenever the bytes of a description
 * are. A host keeps descriptions by it. Empty when the camera does not tell: then nothing that was kept may be used. */
typedef CLINT32(CLP_CC* PclpGetXMLDigest)(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* digest,
                                          CLUINT32* size, CLUINT32 timeoutMs);
typedef CLINT32(CLP_CC* PclpGetEventData)(CLUINT32 cookie, CLINT8* buffer, CLUINT32* size);

#ifdef __cplusplus
}  // extern "C"

}  // namespace CLProtocol
#endif
