/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CCLPort: calls that hang, and many threads
 */

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

#include "CLPortFixture.h"
#include "CLProtocol/Diagnostics.h"
#include "scripted/Scripted.h"

namespace {

using namespace clprotocol_test;
using CLProtocol::ISerial;

TEST_F(Port, GivesUpOnALineThatHangs) {
    const auto latch = std::make_shared<std::promise<void>>();
    serial.onSetBaudRate = [opened = latch->get_future().share()](scripted::PortScript&, std::uint32_t rate) {
        if (rate != 1)
            opened.wait();
        return 0;
    };
    {
        CCLPort port;
        Connect(port);
        CLProtocol::SetPatience({50, 1000});
        EXPECT_EQ(port.GetSerial()->clSetBaudRate(8), -10004);
        EXPECT_EQ(CodeOf([&] { port.Disconnect(); }), -10004);
    }
    CLProtocol::SetPatience({});
    latch->set_value();
    while (serial.Port(0).closed == 0)
        std::this_thread::yield();
}

TEST_F(Port, GivesUpOnADriverThatHangsAndNoOtherPortIsAffected) {
    const auto latch = std::make_shared<std::promise<void>>();
    driver.onRead = [opened = latch->get_future().share()](ISerial*, std::int64_t, char*, std::int64_t, std::uint32_t) {
        opened.wait();
        return 0;
    };
    CCLPort other;
    other.Connect("Scripted#Port1", scripted::FullDeviceId("Marlow#Heron#H4096#2"));
    {
        CLProtocol::SetPatience({50, 1000});
        CCLPort port;
        port.SetSerialTimeOut(10);
        Connect(port);
        const std::string expected =
            "Function 'clpReadRegister' of '" + scripted::DriverPath() + "' does not return (-10004)";
        EXPECT_EQ(TextOf([&] { ReadBytes(port, 0, 1); }), expected);
        EXPECT_EQ(TextOf([&] { port.Write("x", 0, 1); }), expected);
        EXPECT_EQ(TextOf([&] { port.Disconnect(); }), expected);
        CLProtocol::SetPatience({});
        other.Write("x", 0, 1);
        EXPECT_EQ(CodeOf([] { Probe(); }), -10003);
    }
    latch->set_value();
    while (serial.Port(0).isOpen)
        std::this_thread::yield();
    EXPECT_EQ(driver.CountConnections(), 1u);
    EXPECT_EQ(Probe(), scripted::FullDeviceId(kCamera));
}

TEST_F(Port, GivesUpOnASerialLibraryThatHangs) {
    const auto latch = std::make_shared<std::promise<void>>();
    serial.onInit = [opened = latch->get_future().share()](std::uint32_t index, hSerRef*) {
        if (index == 0)
            opened.wait();
        return 0;
    };
    CLProtocol::SetPatience({50, 1000});
    EXPECT_EQ(TextOf([] { Probe("Marlow", 10); }),
              "Function 'clSerialInit' of '" + scripted::SerialPath() + "' does not return (-10004)");
    CLProtocol::SetPatience({});
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H4096#2"));
    latch->set_value();
    while (serial.Port(0).closed == 0)
        std::this_thread::yield();
}

TEST_F(Port, StandsManyThreads) {
    CCLPort port;
    std::vector<std::thread> threads;
    std::atomic<int> accesses{0};
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (int turn = 0; turn < 50; ++turn) {
                try {
                    char byte = 0;
                    if (i == 0 && turn % 10 == 0)
                        port.Disconnect();
                    else if (i == 0)
                        Connect(port);
                    else if (i == 1)
                        port.Write(&byte, turn, 1);
                    else
                        port.Read(&byte, turn, 1);
                    ++accesses;
                    if (ISerial* const line = port.GetSerial()) {
                        std::uint32_t mask = 0;
                        line->clGetSupportedBaudRates(&mask);
                    }
                    port.GetDeviceID();
                } catch (const GenICam::GenericException&) {
                    // not connected, or connected already
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    port.Disconnect();
    EXPECT_GT(accesses, 0);
    EXPECT_EQ(driver.CountConnections(), 0u);
}

TEST_F(Port, ProbesManyPortsAtOnce) {
    serial.SetPorts(8, std::vector<std::string>(8, kCamera));
    std::vector<std::thread> threads;
    std::atomic<int> found{0};
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            const std::string id = "Scripted#Port" + std::to_string(i);
            found += CCLPort::ProbeDevice(id, scripted::FullDeviceId("Marlow"), 100).empty() ? 0 : 1;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, 8);
}

}  // namespace
