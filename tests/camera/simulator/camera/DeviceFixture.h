/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of simulated cameras have in common
 */
#pragma once

#include "camera/Device.h"

#include <gtest/gtest.h>

#include "gencp/Memory.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {

using namespace gencp;
using namespace registers;
using std::chrono::milliseconds;

class DeviceTest : public testing::Test {
protected:
    void Make(const CameraOptions& options) { m_device.emplace(options, m_faults, m_statistics, m_now); }

    void SetUp() override {
        CameraOptions options;
        options.serial = "4711";
        Make(options);
    }

    Packet Command(std::uint16_t command, Bytes scd, std::uint16_t id) const {
        Packet packet;
        packet.header.flags = kFlagRequestAck;
        packet.header.command = command;
        packet.header.requestId = id;
        packet.scd = std::move(scd);
        return packet;
    }

    /// The next packet that goes out, as the host gets it.
    std::optional<Packet> Sent() {
        const auto outgoing = m_device->TakeOutgoing();
        if (!outgoing)
            return std::nullopt;
        m_now = std::max(m_now, outgoing->ready);
        m_device->HasSent(*outgoing, m_now);
        const auto header = ParseHeader(outgoing->packet);
        EXPECT_TRUE(header && IsScdIntact(outgoing->packet));
        return Packet{*header, Bytes(outgoing->packet.begin() + kHeaderSize, outgoing->packet.end())};
    }

    Packet Exchange(const Packet& command) {
        m_device->Receive(command, m_now);
        const auto answer = Sent();
        EXPECT_TRUE(answer);
        return answer.value_or(Packet{});
    }

    Packet Read(std::uint64_t address, std::uint16_t length) {
        const MemoryRange range{address, length};
        return Exchange(Command(kReadMem, EncodeRanges({&range, 1}), m_id = NextRequestId(m_id)));
    }

    std::uint32_t Number(Register where) { return Load32(Read(where.address, 4).scd, 0); }

    std::uint16_t Write(Register where, std::uint64_t value) {
        m_lastWrite = Command(kWriteMem, EncodeWrite(where.address, NumberBytes(value, where.length)),
                              m_id = NextRequestId(m_id));
        return Exchange(m_lastWrite).header.flags;
    }

    void Wait(int ms) {
        m_now += milliseconds(ms);
        m_device->OnTime(m_now);
    }

    FaultSettings m_faults;
    Statistics m_statistics;
    TimePoint m_now{std::chrono::hours(1)};
    std::optional<Device> m_device;
    std::uint16_t m_id = 0;
    Packet m_lastWrite;
};

}  // namespace MarlowSim
