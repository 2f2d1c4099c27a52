/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Chain: a simulated camera, and a connection to it through the files of the driver and the serial library
 */
#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "../../../support/TemporaryFolder.h"
#include "LoadedDriver.h"
#include "SerialLibraryLine.h"
#include "os/Environment.h"
#include "simulator/Simulator.h"

namespace marlow::test {

class Chain {
public:
    static constexpr CLUINT32 kTimeout = 400;
    static constexpr char kName[] = "cam0";

    explicit Chain(const MarlowSim::CameraOptions& options = {}) {
        os::SetEnvironment("CLSERTTY_PATH", folder.Path());
        library = os::Library(SERIAL_LIBRARY_PATH);
        simulator.Add(kName, options);
        driver.initLib(nullptr, CLProtocol::CLP_LOG_NOTSET);
    }
    ~Chain() { driver.closeLib(); }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    /// A new line object, as a host makes one for each connection, and a probe on it.
    CLINT32 Probe(const std::string& request = "Marlow") {
        line.reset();
        line = std::make_unique<SerialLibraryLine>(library, kName);
        char id[300] = "";
        CLUINT32 size = sizeof(id);
        const CLINT32 code = driver.probe(line.get(), request.c_str(), id, &size, &cookie, kTimeout);
        deviceId = id;
        return code;
    }
    void Disconnect() {
        driver.disconnect(cookie);
        line.reset();
    }
    CLINT32 Read(std::uint64_t address, std::vector<char>& data) {
        return driver.read(line.get(), cookie, static_cast<CLINT64>(address), data.data(),
                           static_cast<CLINT64>(data.size()), kTimeout);
    }
    CLINT32 Write(std::uint64_t address, const std::vector<char>& data) {
        return driver.write(line.get(), cookie, static_cast<CLINT64>(address), data.data(),
                            static_cast<CLINT64>(data.size()), kTimeout);
    }
    CLINT32 SetRate(CLUINT32 flag) {
        return driver.setParam(line.get(), CLProtocol::CLP_DEVICE_BAUDERATE, cookie, reinterpret_cast<char*>(&flag), 4,
                               kTimeout);
    }
    CLUINT32 Rate() {
        CLUINT32 flag = 0;
        driver.getParam(line.get(), CLProtocol::CLP_DEVICE_BAUDERATE, cookie, reinterpret_cast<char*>(&flag), 4,
                        kTimeout);
        return flag;
    }
    std::string XmlId() {
        char ids[500] = "";
        CLUINT32 size = sizeof(ids);
        driver.xmlIds(line.get(), cookie, ids, &size, kTimeout);
        return ids;
    }
    CLINT32 Fetch(const std::string& xmlId, std::vector<char>& file) {
        CLUINT32 size = 0;
        const CLINT32 code = driver.description(line.get(), cookie, xmlId.c_str(), nullptr, &size, kTimeout);
        if (code != 0)
            return code;
        file.resize(size);
        return driver.description(line.get(), cookie, xmlId.c_str(), file.data(), &size, kTimeout);
    }
    std::string LastError(CLUINT32 of = 0) {
        char text[1000] = "";
        CLUINT32 size = sizeof(text);
        driver.errorText(CLProtocol::CLP_LAST_ERROR, text, &size, of);
        return text;
    }

    test_support::TemporaryFolder folder;
    os::Library library;
    MarlowSim::Simulator simulator{folder.Path()};
    LoadedDriver driver;
    std::unique_ptr<SerialLibraryLine> line;
    CLUINT32 cookie = 0;
    std::string deviceId;
};

}  // namespace marlow::test
