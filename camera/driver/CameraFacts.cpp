/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the bootstrap registers say about a camera, read once per connection
 */

#include "CameraFacts.h"

#include <algorithm>
#include <array>

#include "DriverError.h"
#include "TextRegister.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

// Most names are short: their beginnings are read first, the rest only where there is more.
constexpr std::uint16_t kBeginning = 16;

// The standard's bound for reading the response time, and what the machine adds.
constexpr milliseconds kFirstPatience{gencp::kFirstReadTimeoutMs + 50};

constexpr gencp::MemoryRange kCapabilityAndResponseTime{
    gencp::abrm::kDeviceCapability.address,
    static_cast<std::uint16_t>(gencp::abrm::kMaxDeviceResponseTime.End() - gencp::abrm::kDeviceCapability.address)};

constexpr milliseconds kShortMargin{30};
constexpr gencp::MemoryRange kVersion{gencp::abrm::kGenCpVersion.address, gencp::abrm::kGenCpVersion.length};

gencp::MemoryRange ModelOf(const CameraFacts& facts) {
    return {gencp::abrm::kModelName.address, static_cast<std::uint16_t>(facts.model.size())};
}

gencp::MemoryRange SerialOf(const CameraFacts& facts) {
    return {gencp::abrm::kSerialNumber.address, static_cast<std::uint16_t>(facts.serial.size())};
}

void ReadCapability(CameraMemory& memory, CameraFacts& facts) {
    auto timing = memory.UsualTiming();
    timing.response = milliseconds(gencp::kFirstCommandTimeoutMs);
    timing.impatience = kFirstPatience;
    const auto bytes = memory.ReadOnce(kCapabilityAndResponseTime, timing);
    facts.capability = gencp::Load64(bytes, 0);
    // The standard's bound also stands for a camera that says nothing.
    const std::uint32_t said = gencp::Load32(bytes, gencp::abrm::kDeviceCapability.length);
    const bool isUsable = said > 0 && said <= gencp::kMaxDeviceResponseTimeMs;
    facts.responseTime = milliseconds(isUsable ? said : gencp::kMaxDeviceResponseTimeMs);
}

std::vector<gencp::Bytes> ReadTexts(CameraMemory& memory, std::span<const gencp::Register> registers,
                                    TextEncoding encoding) {
    std::vector<gencp::MemoryRange> beginnings;
    for (const auto& reg : registers)
        beginnings.push_back({reg.address, kBeginning});
    auto texts = memory.ReadAll(beginnings);
    std::vector<gencp::MemoryRange> rests;
    std::vector<gencp::Bytes*> owners;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (TerminatedLength(texts[i], encoding) < texts[i].size())
            continue;
        rests.push_back(
            {registers[i].address + kBeginning, static_cast<std::uint16_t>(registers[i].length - kBeginning)});
        owners.push_back(&texts[i]);
    }
    const auto more = memory.ReadAll(rests);
    for (std::size_t i = 0; i < more.size(); ++i)
        owners[i]->insert(owners[i]->end(), more[i].begin(), more[i].end());
    return texts;
}

// The text with its terminator, in whole registers of 4 bytes.
gencp::Bytes Shortest(gencp::Bytes text, TextEncoding encoding) {
    const std::size_t terminator = encoding == TextEncoding::Utf16 ? 2 : 1;
    const std::size_t length = (TerminatedLength(text, encoding) + terminator + 3) / 4 * 4;
    text.resize(std::min(length, text.size()));
    return text;
}

}  // namespace

/**
 * \brief Read who the camera is, and what it can
 * \param[in] memory Of a camera that answers; leaves it set to what the camera can
 *
 * A camera without a family register (capability bit 8), or with an empty one, gets its model as family.
 *
 * \throw DriverError The camera does not answer or refuses
 */
CameraFacts Identify(CameraMemory& memory) {
    CameraFacts facts;
    ReadCapability(memory, facts);
    ApplyFacts(memory, facts);
    const auto encoding = EncodingOf(facts.capability);
    std::vector<gencp::Register> registers{gencp::abrm::kManufacturerName, gencp::abrm::kModelName,
                                           gencp::abrm::kSerialNumber};
    if (facts.Has(gencp::capability::kFamilyName))
        registers.push_back(gencp::abrm::kFamilyName);
    const auto texts = ReadTexts(memory, registers, encoding);
    facts.name.manufacturer = DecodeToken(texts[0], encoding);
    facts.name.model = DecodeToken(texts[1], encoding);
    facts.name.serial = DecodeToken(texts[2], encoding);
    if (texts.size() > 3)
        facts.name.family = DecodeToken(texts[3], encoding);
    if (facts.name.family.empty())
        facts.name.family = facts.name.model;
    facts.model = Shortest(texts[1], encoding);
    facts.serial = Shortest(texts[2], encoding);
    return facts;
}

/**
 * \brief Whether a camera that was identified before is there, asked in one exchange
 * \param[in] memory Of a connection that begins; set to what the known camera can, if it is there
 * \param[in] known From Identify
 *
 * This is what an application waits for when a connection is opened again, so it is asked once, with short patience.
 *
 * \return False when another camera answers, none, or a known one that can't do that: it is to be looked for
 * \throw DriverError The serial library failed
 */
bool AnswersAsBefore(CameraMemory& memory, const CameraFacts& known) {
    if (!known.Has(gencp::capability::kStackedCommands))
        return false;
    const Timing timing{memory.Timeout(), milliseconds(gencp::kFirstReadTimeoutMs), kShortMargin, 0, std::nullopt};
    const std::array ranges{kVersion, ModelOf(known), SerialOf(known)};
    try {
        const auto blocks = memory.ReadStackOnce(ranges, timing);
        const bool isKnown = gencp::Load32(blocks[0], 0) >> kMajorShift == kGenCpMajor && blocks[1] == known.model &&
                             blocks[2] == known.serial;
        if (isKnown)
            ApplyFacts(memory, known);
        return isKnown;
    } catch (const NoAnswerError&) {
        return false;
    } catch (const StatusError&) {
        return false;
    }
}

/**
 * \brief Whether it is a camera that was identified before
 * \param[in] memory Of a camera that answers; set to what the known one can, if it is that
 * \param[in] known From Identify
 */
bool IsSameCamera(CameraMemory& memory, const CameraFacts& known) {
    ApplyFacts(memory, known);
    const std::array ranges{ModelOf(known), SerialOf(known)};
    try {
        const auto blocks = memory.ReadAll(ranges);
        return blocks[0] == known.model && blocks[1] == known.serial;
    } catch (const StatusError&) {
        return false;  // another camera may refuse what the known one can
    }
}

/// Time and stack the exchanges as the camera can.
void ApplyFacts(CameraMemory& memory, const CameraFacts& facts) {
    memory.SetResponseTime(facts.responseTime);
    memory.SetCanStack(facts.Has(gencp::capability::kStackedCommands));
}

}  // namespace marlow
