/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A driver in C99 that compiles against the installed headers alone, and whose calls of the host's line are tested
 */
#include "CLProtocol/CLProtocol.h"

CLINT32 CLP_CC clpInitLib(CLP_LOGGER logger, CLINT32 logLevel) {
    return logger != 0 && logLevel <= CLP_LOG_NOTSET ? CL_ERR_NO_ERR : CL_ERR_INVALID_PTR;
}

CLINT32 CLP_CC clpIsParamSupported(CLP_PARAMS param) {
    return param == CLP_DEVICE_BAUDERATE ? CL_ERR_NO_ERR : CLP_PARAM_NOT_SUPPORTED;
}

/* Its registers are what the line gives. */
CLINT32 CLP_CC clpReadRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer, CLINT64 length,
                               CLUINT32 timeoutMs) {
    CLUINT32 size = (CLUINT32)length;
    (void)cookie;
    (void)address;
    return serial->table->clSerialRead(serial, buffer, &size, timeoutMs);
}

CLINT32 CLP_CC clpWriteRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer, CLINT64 length,
                                CLUINT32 timeoutMs) {
    CLUINT32 size = (CLUINT32)length;
    (void)cookie;
    (void)address;
    return serial->table->clSerialWrite(serial, (CLINT8*)buffer, &size, timeoutMs);
}

CLINT32 CLP_CC clpSetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer, CLINT64 length,
                           CLUINT32 timeoutMs) {
    CLUINT32 rates = 0;
    const CLINT32 result = serial->table->clGetSupportedBaudRates(serial, &rates);
    (void)param;
    (void)cookie;
    (void)buffer;
    (void)length;
    (void)timeoutMs;
    return result < 0 ? result : serial->table->clSetBaudRate(serial, rates & CL_BAUDRATE_115200);
}
