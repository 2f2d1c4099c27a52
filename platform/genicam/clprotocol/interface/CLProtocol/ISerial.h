/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ISerial: the serial line that the host hands to a CLProtocol driver
 */
#pragma once

#include "CLProtocol/CLProtocolTypes.h"

/*
 * The order of the virtual functions is the binary interface (CLProtocol 1.1): destructor, then these four. All return
 * Camera Link codes, 0 for success, with the meaning of the functions of the same names in clser???. A read or write
 * that fails with -10004 may be repeated with the same variables; of a read nothing was copied then, of a write so many
 * bytes as the size says were sent. Calls on one line run one after the other: a read that waits keeps a write waiting.
 */
#ifdef __cplusplus

namespace CLProtocol {

/// The serial line that the host hands to a CLProtocol driver.
class ISerial {
protected:
#if defined(_WIN32) && defined(__GNUC__)
    // Drivers for Windows are built with compilers for which a destructor takes one place in the table; here it takes
    // two.
    virtual void DestructorOfOtherCompilers() {}
    ~ISerial() = default;
#else
    virtual ~ISerial() = default;
#endif

public:
    /// Reads up to \a bufferSize bytes and waits up to \a serialTimeout milliseconds for them; \a bufferSize becomes
    /// how many came.
    virtual CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) = 0;
    /// Writes \a bufferSize bytes, which becomes how many were written when \a serialTimeout milliseconds were not
    /// enough.
    virtual CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) = 0;
    /// Sets the flags CL_BAUDRATE_... of the rates that the line can have.
    virtual CLINT32 clGetSupportedBaudRates(CLUINT32* baudRates) = 0;
    /// Sets the line's rate, one flag CL_BAUDRATE_...
    virtual CLINT32 clSetBaudRate(CLUINT32 baudRate) = 0;

    ISerial() = default;
    ISerial(const ISerial&) = delete;
    ISerial& operator=(const ISerial&) = delete;
};

}  // namespace CLProtocol

#else

/* The same object as C sees it. Write serial->table->clSerialRead(serial, buffer, &size, timeout). */
typedef struct ISerial ISerial;
typedef struct ISerialTable {
#ifdef _WIN32
    void* destructor;
#else
    void* destructors[2]; /* without and with giving the memory back */
#endif
    CLINT32(CLP_CC* clSerialRead)(ISerial* serial, CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout);
    CLINT32(CLP_CC* clSerialWrite)(ISerial* serial, CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout);
    CLINT32(CLP_CC* clGetSupportedBaudRates)(ISerial* serial, CLUINT32* baudRates);
    CLINT32(CLP_CC* clSetBaudRate)(ISerial* serial, CLUINT32 baudRate);
} ISerialTable;
struct ISerial {
    const ISerialTable* table;
};

#endif
