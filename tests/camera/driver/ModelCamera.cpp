/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ModelCamera: a small GenCP device on a virtual line, for tests that need each packet's fate in their hands
 */

#include "ModelCamera.h"

#include <algorithm>

#include "gencp/Memory.h"

namespace marlow::test {

namespace {

using std::chrono::milliseconds;

constexpr std::uint64_t kUsualCapability = gencp::capability::kFamilyName | gencp::capability::kSbrm |
                                           gencp::capability::kWrittenLength | gencp::capability::kStackedCommands;

void Damage(Bytes& packet, Fate fate) {
    if (fate == Fate::kHeaderDamaged)
        packet[gencp::kCommandOffset] ^= 0x20;
    else if (fate == Fate::kDataDamaged && packet.size() > gencp::kHeaderSize)
        packet.back() ^= 0x20;
    else if (fate == Fate::kDataDamaged)
        packet[gencp::kScdChecksumOffset] ^= 0x20;
    else if (fate == Fate::kCut)
        packet.resize(packet.size() - 3);
}

}  // namespace

ModelCamera::ModelCamera(VirtualClock& clock) : m_clock(clock) {
    SetNumber(gencp::abrm::kGenCpVersion, 0x00010003);
    SetText(gencp::abrm::kManufacturerName, "Marlow");
    SetText(gencp::abrm::kModelName, "H2048");
    SetText(gencp::abrm::kFamilyName, "Heron");
    SetText(gencp::abrm::kDeviceVersion, "2.0");
    SetText(gencp::abrm::kSerialNumber, "21790042");
    SetCapability(kUsualCapability);
    SetNumber(gencp::abrm::kMaxDeviceResponseTime, 50);
    SetNumber(gencp::abrm::kManifestTableAddress, kManifestAddress);
    SetNumber(gencp::abrm::kSbrmAddress, kSbrmAddress);
    SetNumber(gencp::sbrm::kSupportedBaudRates.At(kSbrmAddress), gencp::kAllBaudRateFlags);
    SetNumber(gencp::sbrm::kCurrentBaudRate.At(kSbrmAddress), gencp::kStartBaudRate.flag);
    SetBytes(kScratchAddress, Bytes(kScratchSize));
    SetFiles({});
}

void ModelCamera::SetText(const gencp::Register& reg, const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(reg.length);
    SetBytes(reg.address, bytes);
}

void ModelCamera::SetNumber(const gencp::Register& reg, std::uint64_t value) {
    for (std::uint32_t i = 0; i < reg.length; ++i)
        m_memory[reg.address + i] = static_cast<std::uint8_t>(value >> (8 * (reg.length - 1 - i)));
}

void ModelCamera::SetBytes(std::uint64_t address, const Bytes& bytes) {
    for (const auto byte : bytes)
        m_memory[address++] = byte;
}

Bytes ModelCamera::GetBytes(std::uint64_t address, std::size_t size) const {
    Bytes bytes(size);
    for (auto& byte : bytes)
        byte = m_memory.at(address++);
    return bytes;
}

void ModelCamera::SetCapability(std::uint64_t capability) {
    SetNumber(gencp::abrm::kDeviceCapability, capability);
}

void ModelCamera::SetFiles(const std::vector<std::pair<gencp::ManifestEntry, Bytes>>& files) {
    SetNumber(gencp::manifest::kEntryCount.At(kManifestAddress), files.size());
    std::uint64_t entryAddress = kManifestAddress + gencp::manifest::kFirstEntry;
    std::uint64_t fileAddress = kFilesAddress;
    for (auto [entry, bytes] : files) {
        entry.address = fileAddress;
        if (entry.size == 0)
            entry.size = bytes.size();
        SetBytes(entryAddress, gencp::EncodeManifestEntry(entry));
        SetBytes(fileAddress, bytes);
        entryAddress += gencp::manifest::kEntrySize;
        fileAddress += bytes.size() + 64;
    }
}

/// The rate now; a change without confirmation ends after its time.
std::uint32_t ModelCamera::Rate() {
    if (m_revertAt && m_clock.Now() >= *m_revertAt) {
        m_revertAt.reset();
        m_rate = m_oldRate;
    }
    return m_rate;
}

/**
 * \brief A packet from the host, whole on the line at some time
 * \return What goes back to the host
 */
std::vector<SentPacket> ModelCamera::Take(Bytes packet, std::uint32_t rateFlag, Time end) {
    if (rateFlag != Rate()) {
        noiseBytes += packet.size();
        return {};
    }
    const Fate fate = commandFate ? commandFate(commandPackets) : Fate::kArrives;
    ++commandPackets;
    if (isSilent || fate == Fate::kLost)
        return {};
    Damage(packet, fate);
    const Bytes once = packet;
    if (fate == Fate::kTwice)
        packet.insert(packet.end(), once.begin(), once.end());
    m_parser.Clear();
    m_parser.Append(packet);
    std::vector<SentPacket> sent;
    while (const auto command = m_parser.Next()) {
        received.push_back(*command);
        const std::uint32_t rate = m_rate;
        auto more = SendAll(Execute(*command, end), rate, end);
        sent.insert(sent.end(), more.begin(), more.end());
    }
    return sent;
}

std::vector<ModelCamera::Answer> ModelCamera::Execute(const gencp::Packet& command, Time end) {
    const std::uint16_t id = command.header.requestId;
    if (id != gencp::kFirstRequestId && id == m_lastId)
        return m_lastAnswers.empty() ? m_lastAnswers : std::vector{Answer{m_lastAnswers.back().packet}};
    m_lastId = id;
    if (answer) {
        if (const auto packet = answer(command)) {
            m_lastAnswers = {{*packet, Duration{}}};
            return m_lastAnswers;
        }
    }
    const bool isRead = command.header.command == gencp::kReadMem || command.header.command == gencp::kReadMemStacked;
    m_lastAnswers = isRead ? Read(command) : Write(command, end);
    return m_lastAnswers;
}

std::vector<ModelCamera::Answer> ModelCamera::Acknowledge(const gencp::Packet& command, std::uint16_t status,
                                                          const Bytes& scd) const {
    return {
        {gencp::BuildAcknowledge(gencp::AcknowledgeOf(command.header.command), status, command.header.requestId, scd),
         Duration{}}};
}

std::vector<ModelCamera::Answer> ModelCamera::Read(const gencp::Packet& command) {
    const bool canStack = (gencp::Load64(GetBytes(gencp::abrm::kDeviceCapability.address, 8), 0) &
                           gencp::capability::kStackedCommands) != 0;
    if (command.header.command == gencp::kReadMemStacked && !canStack)
        return Acknowledge(command, gencp::kStatusNotImplemented, {});
    const auto ranges = gencp::DecodeRanges(command.scd);
    if (!ranges)
        return Acknowledge(command, gencp::kStatusInvalidParameter, {});
    Bytes data;
    for (const auto& range : *ranges) {
        for (std::uint64_t i = 0; i < range.length; ++i) {
            const auto found = m_memory.find(range.address + i);
            if (found == m_memory.end())
                return Acknowledge(command, gencp::kStatusInvalidAddress, {});
            data.push_back(found->second);
        }
    }
    if (data.size() > gencp::kMaxScdSize)
        return Acknowledge(command, gencp::kStatusInvalidParameter, {});
    return Acknowledge(command, gencp::kStatusSuccess, data);
}

std::vector<ModelCamera::Answer> ModelCamera::Write(const gencp::Packet& command, Time end) {
    const auto write = gencp::DecodeWrite(command.scd);
    if (!write || command.header.requestId == gencp::kFirstRequestId)
        return Acknowledge(command, gencp::kStatusInvalidParameter, {});
    if (!WriteMemory(write->address, write->data, end))
        return Acknowledge(command, gencp::kStatusWriteProtected, {});
    std::vector<Answer> answers;
    for (unsigned i = 0; i < pendingAcks; ++i)
        answers.push_back({gencp::BuildAcknowledge(gencp::kPendingAck, gencp::kStatusSuccess, command.header.requestId,
                                                   gencp::EncodePendingAck(pendingMs)),
                           milliseconds(i == 0 ? 0 : pendingMs)});
    const std::uint16_t length = static_cast<std::uint16_t>(write->data.size());
    auto last = Acknowledge(command, gencp::kStatusSuccess, gencp::EncodeWrittenLengths(std::span(&length, 1)));
    last.front().delay = milliseconds(pendingAcks > 0 ? pendingMs : 0);
    answers.push_back(last.front());
    return answers;
}

bool ModelCamera::WriteMemory(std::uint64_t address, const Bytes& data, Time end) {
    const auto current = gencp::sbrm::kCurrentBaudRate.At(kSbrmAddress);
    const bool isScratch = address >= kScratchAddress && address + data.size() <= kScratchAddress + kScratchSize;
    if (address != current.address && !isScratch)
        return false;
    writes.emplace_back(address, data);
    SetBytes(address, data);
    if (address == current.address)
        Switch(gencp::Load32(data, 0), end);
    return true;
}

void ModelCamera::Switch(std::uint32_t flag, Time) {
    if (!m_revertAt)
        m_switchTo = flag;
    else if (confirmsRate && flag == m_rate)
        m_revertAt.reset();
}

std::vector<SentPacket> ModelCamera::SendAll(std::vector<Answer> answers, std::uint32_t rateFlag, Time end) {
    std::vector<SentPacket> sent;
    const auto& rate = *gencp::FindBaudRateByFlag(rateFlag);
    Time at = end + responseDelay;
    for (auto& [packet, delay] : answers) {
        at += delay;
        const Fate fate = acknowledgeFate ? acknowledgeFate(acknowledgePackets) : Fate::kArrives;
        ++acknowledgePackets;
        Damage(packet, fate);
        const Time begin = fate == Fate::kLate ? at + milliseconds(250) : at;
        at += gencp::TransferTime(packet.size(), rate.bitsPerSecond);
        if (fate == Fate::kLost)
            continue;
        sent.push_back({packet, begin, rateFlag});
        if (fate == Fate::kTwice)
            sent.push_back({packet, at, rateFlag});
    }
    if (m_switchTo) {
        m_oldRate = m_rate;
        m_rate = *m_switchTo;
        m_switchTo.reset();
        m_revertAt = at + milliseconds(gencp::kBaudRateConfirmMs);
    }
    return sent;
}

}  // namespace marlow::test
