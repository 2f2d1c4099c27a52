/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A driver in C++11 that compiles against the installed headers alone
 */
#include "CLProtocol/CLProtocol.h"

using CLProtocol::ISerial;

CLINT32 CLP_CC clpGetCLProtocolVersion(CLUINT32* major, CLUINT32* minor) {
    *major = CLProtocol::CLP_VERSION_MAJOR;
    *minor = CLProtocol::CLP_VERSION_MINOR;
    return CL_ERR_NO_ERR;
}

CLINT32 CLP_CC clpContinueWriteRegister(ISerial*, CLUINT32, BOOL8, CLUINT32) {
    return CLProtocol::CLP_PENDING_WRITE;
}

CLINT32 CLP_CC clpGetParam(ISerial* serial, CLProtocol::CLP_PARAMS, CLUINT32, CLINT8* buffer, CLINT64 length,
                           CLUINT32 timeoutMs) {
    CLUINT32 size = static_cast<CLUINT32>(length);
    return serial->clSerialRead(buffer, &size, timeoutMs);
}
