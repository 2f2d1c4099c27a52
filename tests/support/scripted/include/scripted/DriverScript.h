/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a scripted CLProtocol driver does: templates, registers, descriptions, and hooks for each function
 */
#pragma once

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/CLProtocolC.h"

namespace scripted {

/// The state of one scripted driver. Without hooks it is a correct driver of version 1.2 with the template "Marlow".
///
/// Its cameras are those of the scripted serial library: probing asks the line (one written question, one read of
/// 128 bytes) which camera is there. Who answers is compared with the template or DeviceID token by token; another
/// camera gives an empty DeviceID for a template and -20101 for a DeviceID. No answer is -10004 (noAnswer changes it).
/// Every register access asks the line in the same way, so a pulled cable is noticed.
///
/// A hook that is set replaces its function. Hooks run without the mutex held and may throw. Set them while nothing
/// uses the driver and clear them (Reset) afterwards.
class DriverScript {
public:
    using ISerial = CLProtocol::ISerial;

    std::mutex mutex;
    std::uint32_t versionMajor;
    std::uint32_t versionMinor;
    std::string templates;                        ///< tab-separated
    bool asksLine;                                ///< false: `deviceId` is there, whatever the line says
    std::string deviceId;                         ///< used when asksLine is false
    std::int32_t noAnswer;                        ///< result when nobody answers on the line
    std::map<std::int64_t, std::uint8_t> memory;  ///< registers of all cameras; what is missing reads as 0
    std::string xmlIds;                           ///< tab-separated
    std::map<std::string, std::string> xml;       ///< descriptions by XML ID
    std::map<std::string, std::string> digests;   ///< by XML ID; without any the driver has no such function
    int pendingWrites;                            ///< how often a write answers 20101 before it ends
    std::int32_t writeResult;                     ///< how a pending write ends
    std::uint32_t rate;                           ///< the baud rate, as a flag
    std::uint32_t supportedRates;                 ///< 0: the driver has no parameter for rates
    std::int32_t supportedRemark;                 ///< what asking for a parameter answers that there is
    std::vector<std::uint32_t> rates;             ///< rates that were set, in order
    std::map<std::int32_t, std::string> errorTexts;
    std::vector<std::string> calls;                ///< names of the functions that were called, in order
    std::string probedFor;                         ///< template or DeviceID of the last probe
    std::uint32_t lastTimeout;                     ///< of the last probe or register access
    std::map<std::uint32_t, std::string> cookies;  ///< open connections and their cameras
    CLProtocol::CLP_LOGGER logger;
    std::int32_t logLevel;

    std::function<std::int32_t(std::int32_t logLevel)> onInitLib;
    std::function<std::int32_t(std::uint32_t*, std::uint32_t*)> onGetVersion;
    std::function<std::int32_t(char*, std::uint32_t*)> onGetTemplates;
    std::function<std::int32_t(ISerial*, const char*, char*, std::uint32_t*, std::uint32_t*, std::uint32_t)> onProbe;
    std::function<std::int32_t(char*, std::uint32_t*)> onGetXmlIds;
    std::function<std::int32_t(const char*, char*, std::uint32_t*)> onGetXml;
    std::function<std::int32_t(ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t)> onRead;
    std::function<std::int32_t(ISerial*, std::int64_t, const char*, std::int64_t, std::uint32_t)> onWrite;
    std::function<std::int32_t(bool)> onContinueWrite;
    std::function<std::int32_t(std::int32_t, char*, std::uint32_t*, std::uint32_t)> onGetErrorText;
    std::function<std::int32_t(std::uint32_t)> onDisconnect;
    std::function<std::int32_t(std::uint32_t)> onSetRate;  ///< 0: the rate is set as usual

    DriverScript() {
        logger = nullptr;
        logLevel = 0;
        Reset();
    }

    /// The state that a driver begins with; logger and level stay what the host gave.
    void Reset() {
        const std::lock_guard lock(mutex);
        versionMajor = 1;
        versionMinor = 2;
        templates = "Marlow";
        asksLine = true;
        deviceId = "Marlow#Heron#H2048#1";
        noAnswer = -10004;
        memory.clear();
        xmlIds = "SchemaVersion.1.1@Marlow@XMLVersion.1.0.0";
        xml = {{xmlIds, "<RegisterDescription/>"}};
        digests.clear();
        pendingWrites = 0;
        writeResult = 0;
        rate = 1;
        supportedRates = 0xff;
        supportedRemark = 0;
        rates.clear();
        errorTexts.clear();
        calls.clear();
        probedFor.clear();
        lastTimeout = 0;
        onInitLib = nullptr;
        onGetVersion = nullptr;
        onGetTemplates = nullptr;
        onProbe = nullptr;
        onGetXmlIds = nullptr;
        onGetXml = nullptr;
        onRead = nullptr;
        onWrite = nullptr;
        onContinueWrite = nullptr;
        onGetErrorText = nullptr;
        onDisconnect = nullptr;
        onSetRate = nullptr;
    }

    /// Logs through the host's logger, as the driver itself would.
    void Log(std::int32_t level, const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        if (logger != nullptr)
            logger(level, format, arguments);
        va_end(arguments);
    }

    std::size_t CountCalls(const std::string& function) {
        const std::lock_guard lock(mutex);
        std::size_t count = 0;
        for (const std::string& call : calls)
            count += call == function ? 1 : 0;
        return count;
    }

    std::size_t CountConnections() {
        const std::lock_guard lock(mutex);
        return cookies.size();
    }

    void SetRegister(std::int64_t address, const std::string& bytes) {
        const std::lock_guard lock(mutex);
        for (const char byte : bytes)
            memory[address++] = static_cast<std::uint8_t>(byte);
    }

    std::string GetRegister(std::int64_t address, std::size_t length) {
        const std::lock_guard lock(mutex);
        std::string bytes;
        while (bytes.size() < length)
            bytes += static_cast<char>(memory[address++]);
        return bytes;
    }
};

}  // namespace scripted
