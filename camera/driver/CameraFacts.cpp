/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the bootstrap registers say about a camera, read once per connection
 */

#include "CameraFacts.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "DriverError.h"
#include "TextRegister.h"

namespace marlow {

namespace {

using std::chrono::milliseconds;

// Most names are short: their beginnings are read first, the rest only where there is more.
constexpr std::uint32_t kBeginning = 16;

// Any minor version of GenCP 1 will do.
constexpr std::uint32_t kGenCpMajor = 1;
constexpr unsigned kMajorShift = 16;

constexpr gencp::MemoryRange kLimits{
    gencp::abrm::kDeviceCapability.address,
    static_cast<std::uint16_t>(gencp::abrm::kMaxDeviceResponseTime.End() - gencp::abrm::kDeviceCapability.address)};
constexpr gencp::MemoryRange kVersion{gencp::abrm::kGenCpVersion.address, gencp::abrm::kGenCpVersion.length};

gencp::MemoryRange BeginningOf(const gencp::Register& reg, gencp::ByteView known) {
    return {reg.address, static_cast<std::uint16_t>(known.size())};
}

// What a known camera is asked for, to see whether it is as it was.
std::array<gencp::MemoryRange, 4> IdentityOf(const CameraFacts& known) {
    return {kVersion, BeginningOf(gencp::abrm::kModelName, known.model),
            BeginningOf(gencp::abrm::kDeviceVersion, known.deviceVersion),
            BeginningOf(gencp::abrm::kSerialNumber, known.serial)};
}

bool IsIdentity(std::span<const gencp::Bytes> blocks, const CameraFacts& known) {
    return gencp::Load32(blocks[0], 0) == known.version && blocks[1] == known.model &&
           blocks[2] == known.deviceVersion && blocks[3] == known.serial;
}

CameraLimits LimitsFrom(gencp::ByteView bytes) {
    // The standard's bound also stands for a camera that says nothing.
    const std::uint32_t said = gencp::Load32(bytes, gencp::abrm::kDeviceCapability.length);
    const bool isUsable = said > 0 && said <= gencp::kMaxDeviceResponseTimeMs;
    return {gencp::Load64(bytes, 0), milliseconds(isUsable ? said : gencp::kMaxDeviceResponseTimeMs)};
}

// Time and stack the exchanges as the camera can.
void Apply(CameraMemory& memory, const CameraLimits& limits) {
    memory.SetResponseTime(limits.responseTime);
    memory.SetCanStack((limits.capability & gencp::capability::kStackedCommands) != 0);
}

void CheckVersion(std::uint32_t version) {
    if (version >> kMajorShift != kGenCpMajor)
        throw DriverError(CLProtocol::CLP_NO_DEVICE_FOUND,
                          fmt::format("A device answers, but its GenCP version is {}.{}, not {}.x.",
                                      version >> kMajorShift, version & 0xFFFFU, kGenCpMajor));
}

// Registers as they are, those with texts up to their terminators at least.
std::vector<gencp::Bytes> ReadShort(CameraMemory& memory, std::span<const gencp::Register> registers,
                                    TextEncoding encoding) {
    std::vector<gencp::MemoryRange> beginnings;
    for (const auto& reg : registers)
        beginnings.push_back({reg.address, static_cast<std::uint16_t>(std::min(reg.length, kBeginning))});
    auto texts = memory.ReadAll(beginnings);
    std::vector<gencp::MemoryRange> rests;
    std::vector<gencp::Bytes*> owners;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (registers[i].length <= kBeginning || TerminatedLength(texts[i], encoding) < texts[i].size())
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
    const std::size_t terminator = encoding == TextEncoding::kUtf16 ? 2 : 1;
    const std::size_t length = (TerminatedLength(text, encoding) + terminator + 3) / 4 * 4;
    text.resize(std::min(length, text.size()));
    return text;
}

}  // namespace

/// One exchange, which leaves the memory set to what the camera can.
CameraLimits ReadLimits(CameraMemory& memory, const Timing& timing) {
    const auto limits = LimitsFrom(memory.ReadOnce(kLimits, timing));
    Apply(memory, limits);
    return limits;
}

/**
 * \brief Read who the camera is
 * \param[in] memory Of a camera that answers
 * \param[in] limits What ReadLimits has said
 *
 * A camera without a family register (capability bit 8), or with an empty one, gets its model as family.
 *
 * \throw DriverError CLP_NO_DEVICE_FOUND for another version of GenCP; the camera does not answer or refuses
 */
CameraFacts Identify(CameraMemory& memory, const CameraLimits& limits) {
    CameraFacts facts;
    facts.limits = limits;
    const auto encoding = EncodingOf(limits.capability);
    std::vector<gencp::Register> registers{gencp::abrm::kGenCpVersion, gencp::abrm::kManufacturerName,
                                           gencp::abrm::kModelName, gencp::abrm::kDeviceVersion,
                                           gencp::abrm::kSerialNumber};
    if (facts.Has(gencp::capability::kFamilyName))
        registers.push_back(gencp::abrm::kFamilyName);
    const auto values = ReadShort(memory, registers, encoding);
    facts.version = gencp::Load32(values[0], 0);
    CheckVersion(facts.version);
    facts.name.manufacturer = DecodeToken(values[1], encoding);
    facts.name.model = DecodeToken(values[2], encoding);
    facts.name.version = DecodeToken(values[3], encoding);
    facts.name.serial = DecodeToken(values[4], encoding);
    if (values.size() > 5)
        facts.name.family = DecodeToken(values[5], encoding);
    if (facts.name.family.empty())
        facts.name.family = facts.name.model;
    facts.model = Shortest(values[2], encoding);
    facts.deviceVersion = Shortest(values[3], encoding);
    facts.serial = Shortest(values[4], encoding);
    return facts;
}

/**
 * \brief Whether a camera that was identified before is there as it was, asked in one exchange
 * \param[in] memory Of a connection that begins; set to what the known camera can, if it is there
 * \param[in] known From Identify
 *
 * This is what an application waits for when a connection is opened again, so it is asked once, with short patience.
 *
 * REQUIRES: the known camera can stack commands.
 *
 * \return kAnother also for a camera that is not as it was
 * \throw DriverError The serial library failed
 */
Presence AskFor(CameraMemory& memory, const CameraFacts& known) {
    std::vector<gencp::MemoryRange> ranges{kLimits};
    std::ranges::copy(IdentityOf(known), std::back_inserter(ranges));
    try {
        const auto blocks = memory.ReadStackOnce(ranges, memory.LookTiming());
        const bool isKnown =
            LimitsFrom(blocks.front()) == known.limits && IsIdentity(std::span(blocks).subspan(1), known);
        if (isKnown)
            Apply(memory, known.limits);
        return isKnown ? Presence::kSame : Presence::kAnother;
    } catch (const NoAnswerError&) {
        return Presence::kNobody;
    } catch (const StatusError&) {
        return Presence::kAnother;
    }
}

/**
 * \brief Whether it is a camera that was identified before, and is as it was
 * \param[in] memory Of a camera that answers
 * \param[in] known From Identify
 * \param[in] limits What ReadLimits has said now
 */
bool IsSameCamera(CameraMemory& memory, const CameraFacts& known, const CameraLimits& limits) {
    if (limits != known.limits)
        return false;
    try {
        return IsIdentity(memory.ReadAll(IdentityOf(known)), known);
    } catch (const StatusError&) {
        return false;  // another camera may refuse what the known one can
    }
}

}  // namespace marlow
