/* SPDX-License-Identifier: Apache-2.0 */
/*
 * VirtualLine: the host's side of a line in virtual time, with a camera at its other end
 */
#pragma once

#include <deque>
#include <functional>
#include <optional>

#include "CLProtocol/CLProtocolC.h"
#include "ModelCamera.h"
#include "VirtualClock.h"

namespace marlow::test {

class VirtualLine final : public CLProtocol::ISerial {
public:
    VirtualLine(VirtualClock& clock, ModelCamera& camera) : m_clock(clock), m_camera(camera) {}

    CLINT32 clSerialRead(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) override;
    CLINT32 clSerialWrite(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) override;
    CLINT32 clGetSupportedBaudRates(CLUINT32* mask) override;
    CLINT32 clSetBaudRate(CLUINT32 flag) override;

    void AddStray(const Bytes& bytes);

    // What the tests set.
    CLUINT32 supported = gencp::kAllBaudRateFlags;
    CLINT32 supportedCode = 0;
    std::optional<CLINT32> readCode;       ///< every read fails with it
    std::optional<CLINT32> writeCode;      ///< every write fails with it
    CLUINT32 refusedRates = 0;             ///< clSetBaudRate answers -10008
    bool ignoresTimeouts = false;          ///< reads answer success with nothing, at once
    bool claimsTooMuch = false;            ///< reads and writes say more than was asked for
    std::size_t mostPerCall = 1u << 20;    ///< bytes that a call moves at most
    std::function<std::uint8_t()> noise;   ///< comes without end in place of what the camera says
    std::optional<std::size_t> takes;      ///< a write of more bytes takes so many and times out
    std::function<void(CLUINT32)> onRead;  ///< called with each time-out

    // What the tests look at.
    std::vector<CLUINT32> ratesSet;
    std::vector<CLUINT32> readSizes;
    CLUINT32 longestRead = 0;   ///< ms asked for
    CLUINT32 longestWrite = 0;  ///< ms asked for
    std::size_t reads = 0;

private:
    CLINT32 ReadNoise(CLINT8* buffer, CLUINT32 size, Time limit);

    struct Byte {
        std::uint8_t value;
        Time arrival;
        std::uint32_t rateFlag;
    };

    VirtualClock& m_clock;
    ModelCamera& m_camera;
    std::deque<Byte> m_bytes;
    CLUINT32 m_rate = gencp::kStartBaudRate.flag;
    Bytes m_packet;  // written in pieces
    Time m_noiseFrom{};
    Time m_freeFrom{};  // the line to the host carries one packet after the other
};

}  // namespace marlow::test
