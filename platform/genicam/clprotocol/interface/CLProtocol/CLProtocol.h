/* SPDX-License-Identifier: Apache-2.0 */
/*
 * All that a CLProtocol driver needs, in C99 or C++11: types, codes, the host's line, the functions to export, and the
 * codes and baud-rate flags of the Camera Link serial API
 */
#pragma once

#include "CLProtocol/CLProtocolC.h"
#include "CLProtocol/DriverCodes.h"
#include "clser/ClSerial.h"

#ifdef __cplusplus
#define CLP_NAMESPACE CLProtocol::
#else
#define CLP_NAMESPACE
#endif

/* A driver defines all of these but the last two. Declared here, so that the compiler checks them.
 */
CLP_EXPORT CLINT32 CLP_CC clpInitLib(CLP_NAMESPACE CLP_LOGGER logger, CLINT32 logLevel);
CLP_EXPORT CLINT32 CLP_CC clpCloseLib(void);
CLP_EXPORT CLINT32 CLP_CC clpGetCLProtocolVersion(CLUINT32* major, CLUINT32* minor);
CLP_EXPORT CLINT32 CLP_CC clpGetShortDeviceIDTemplates(CLINT8* templates, CLUINT32* size);
CLP_EXPORT CLINT32 CLP_CC clpProbeDevice(CLP_NAMESPACE ISerial* serial, const CLINT8* templateOrDeviceId,
                                         CLINT8* deviceId, CLUINT32* size, CLUINT32* cookie, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpGetXMLIDs(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size,
                                       CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpGetXMLDescription(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId,
                                               CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpReadRegister(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie, CLINT64 address,
                                          CLINT8* buffer, CLINT64 length, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpWriteRegister(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie, CLINT64 address,
                                           const CLINT8* buffer, CLINT64 length, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpContinueWriteRegister(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie,
                                                   BOOL8 continueWaiting, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpGetErrorText(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32 cookie);
CLP_EXPORT CLINT32 CLP_CC clpDisconnect(CLUINT32 cookie);
CLP_EXPORT CLINT32 CLP_CC clpGetParam(CLP_NAMESPACE ISerial* serial, CLP_NAMESPACE CLP_PARAMS param, CLUINT32 cookie,
                                      CLINT8* buffer, CLINT64 length, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpSetParam(CLP_NAMESPACE ISerial* serial, CLP_NAMESPACE CLP_PARAMS param, CLUINT32 cookie,
                                      const CLINT8* buffer, CLINT64 length, CLUINT32 timeoutMs);
CLP_EXPORT CLINT32 CLP_CC clpIsParamSupported(CLP_NAMESPACE CLP_PARAMS param);
CLP_EXPORT CLINT32 CLP_CC clpGetEventData(CLUINT32 cookie, CLINT8* buffer, CLUINT32* size);
/* An addition to the standard, see PclpGetXMLDigest. */
CLP_EXPORT CLINT32 CLP_CC clpGetXMLDigest(CLP_NAMESPACE ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId,
                                          CLINT8* digest, CLUINT32* size, CLUINT32 timeoutMs);
