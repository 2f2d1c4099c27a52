/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ISerial: the serial line that the host hands to a CLProtocol driver
 */
#pragma once

#include "CLProtocol/CLProtocolTypes.h"

namespace CLProtocol {

/// The order of the virtual functions is the binary interface (CLProtocol 1.1): destructor, then these four.
/// All return Camera Link codes, 0 for success, with the meaning of the functions of the same names in clser???.
class ISerial {
protected:
    virtual ~ISerial() = default;

public:
    virtual CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) = 0;
    virtual CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) = 0;
    virtual CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) = 0;
    virtual CLINT32 clSetBaudRate(CLUINT32 baudRate) = 0;

    ISerial() = default;
    ISerial(const ISerial&) = delete;
    ISerial& operator=(const ISerial&) = delete;
};

}  // namespace CLProtocol
