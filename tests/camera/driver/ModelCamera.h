/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ModelCamera: a small GenCP device on a virtual line, for tests that need each packet's fate in their hands
 */
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "VirtualClock.h"
#include "gencp/BaudRate.h"
#include "gencp/Manifest.h"
#include "gencp/Packet.h"
#include "gencp/Registers.h"
#include "gencp/StreamParser.h"

namespace marlow::test {

using gencp::Bytes;

/// What becomes of a packet on the line.
enum class Fate { kArrives, kLost, kHeaderDamaged, kDataDamaged, kCut, kTwice, kLate };

/// Bytes on their way to the host.
struct SentPacket {
    Bytes bytes;
    Time begin;  // of its first byte
    std::uint32_t rateFlag;
};

class ModelCamera {
public:
    explicit ModelCamera(VirtualClock& clock);

    // What the tests set.
    Duration responseDelay = std::chrono::milliseconds(2);
    unsigned pendingAcks = 0;       ///< before each acknowledge of a write
    std::uint16_t pendingMs = 100;  ///< what a pending acknowledge says, and how long after it the next one comes
    bool isSilent = false;
    std::function<Fate(std::size_t)> commandFate;                      ///< by index of the packet, from 0
    std::function<Fate(std::size_t)> acknowledgeFate;                  ///< by index of the packet, from 0
    std::function<std::optional<Bytes>(const gencp::Packet&)> answer;  ///< takes the place of an acknowledge
    bool confirmsRate = true;  ///< false: never gets a confirming write, whatever is sent

    void SetText(const gencp::Register& reg, const std::string& text);
    void SetNumber(const gencp::Register& reg, std::uint64_t value);
    void SetBytes(std::uint64_t address, const Bytes& bytes);
    Bytes GetBytes(std::uint64_t address, std::size_t size) const;
    void SetCapability(std::uint64_t capability);
    void SetFiles(const std::vector<std::pair<gencp::ManifestEntry, Bytes>>& files);
    void SetRate(std::uint32_t flag) {
        m_rate = flag;
        m_revertAt.reset();
    }
    std::uint32_t Rate();

    // What the tests look at.
    std::vector<gencp::Packet> received;                  ///< intact commands, resends included
    std::vector<std::pair<std::uint64_t, Bytes>> writes;  ///< carried out
    std::size_t commandPackets = 0;
    std::size_t acknowledgePackets = 0;
    std::size_t noiseBytes = 0;  ///< received at another rate

    // What the line calls.
    std::vector<SentPacket> Take(Bytes packet, std::uint32_t rateFlag, Time end);

private:
    struct Answer {
        Bytes packet;
        Duration delay{};
    };

    std::vector<Answer> Execute(const gencp::Packet& command, Time end);
    std::vector<Answer> Read(const gencp::Packet& command);
    std::vector<Answer> Write(const gencp::Packet& command, Time end);
    bool WriteMemory(std::uint64_t address, const Bytes& data, Time end);
    void Switch(std::uint32_t flag, Time end);
    std::vector<SentPacket> SendAll(std::vector<Answer> answers, std::uint32_t rateFlag, Time end);
    std::vector<Answer> Acknowledge(const gencp::Packet& command, std::uint16_t status, const Bytes& scd) const;

    VirtualClock& m_clock;
    std::map<std::uint64_t, std::uint8_t> m_memory;
    std::uint32_t m_rate = gencp::kStartBaudRate.flag;
    std::uint32_t m_oldRate = gencp::kStartBaudRate.flag;
    std::optional<Time> m_revertAt;
    std::optional<std::uint32_t> m_switchTo;  // behind the acknowledge that is being made
    gencp::StreamParser m_parser;
    std::optional<std::uint16_t> m_lastId;
    std::vector<Answer> m_lastAnswers;
};

inline constexpr std::uint64_t kSbrmAddress = 0x10000;
inline constexpr std::uint64_t kManifestAddress = 0x20000;
inline constexpr std::uint64_t kFilesAddress = 0x1000000;
inline constexpr std::uint64_t kScratchAddress = 0x40000;  ///< can be read and written
inline constexpr std::size_t kScratchSize = 0x1000;

}  // namespace marlow::test
