/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of CCLPort have in common
 */
#pragma once

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include "CLProtocol/Diagnostics.h"
#include "scripted/Scripted.h"

namespace clprotocol_test {

using CLProtocol::CCLPort;
using CLProtocol::CLErrException;

constexpr char kPort[] = "Scripted#Port0";
constexpr char kCamera[] = "Marlow#Heron#H2048#1";

class Port : public testing::Test {
public:
    Port() { serial.SetPorts(2, {kCamera, "Marlow#Heron#H4096#2"}); }
    ~Port() override { CLProtocol::SetPatience({}); }

protected:
    static GenICam::gcstring Probe(const std::string& text = "Marlow", std::uint32_t timeoutMs = 100) {
        return CCLPort::ProbeDevice(kPort, scripted::FullDeviceId(text), timeoutMs);
    }

    static void Connect(CCLPort& port, const std::string& deviceId = kCamera) {
        port.Connect(kPort, scripted::FullDeviceId(deviceId));
    }

    template <class Operation>
    static std::int32_t CodeOf(Operation operation) {
        try {
            operation();
        } catch (const CLErrException& error) {
            return error.GetErrorCode();
        }
        return 0;
    }

    template <class Operation>
    static std::string TextOf(Operation operation) {
        try {
            operation();
        } catch (const GenICam::GenericException& error) {
            return error.GetDescription();
        }
        return {};
    }

    static std::string ReadBytes(CCLPort& port, std::int64_t address, std::size_t length) {
        std::string bytes(length, '?');
        port.Read(bytes.data(), address, static_cast<std::int64_t>(length));
        return bytes;
    }

    scripted::Environment environment;
    scripted::SerialScript& serial = scripted::Serial();
    scripted::DriverScript& driver = scripted::Driver();
};

}  // namespace clprotocol_test
