/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SerialLibraryLine: a port of a loaded Camera Link serial library, as a host hands it to a driver
 */
#pragma once

#include <string>

#include "CLProtocol/CLProtocolC.h"
#include "clser/ClSerial.h"
#include "os/Library.h"

namespace marlow::test {

class SerialLibraryLine final : public CLProtocol::ISerial {
public:
    SerialLibraryLine(const os::Library& library, const std::string& portName);
    ~SerialLibraryLine();

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* mask) override;
    CLINT32 clSetBaudRate(CLUINT32 flag) override;

private:
    const os::Library& m_library;
    hSerRef m_port = nullptr;
};

}  // namespace marlow::test
