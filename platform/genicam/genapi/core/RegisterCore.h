/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A piece of register space as a node sees it: address, length, byte order, caching
 */
#pragma once

#include <cstdint>
#include <span>

#include "GenApi/Types.h"
#include "core/Evaluation.h"
#include "schema/Schema.h"

namespace GenApi {

class CNode;
class CPort;
struct Property;
struct RegisterBlock;

/// The largest register. Lengths may come from the camera: nothing is allocated for one that is larger.
constexpr std::int64_t kMaxRegisterLength = std::int64_t{16} * 1024 * 1024;

/// What register nodes share. Lies in the map's arena; wants the map's lock.
class RegisterCore {
public:
    /// Reads the register elements of a node; throws when they make no sense.
    explicit RegisterCore(CNode& owner);

    CNode& Owner() const noexcept { return m_owner; }
    RegisterBlock* AttachedBlock() const noexcept { return m_block; }
    RegisterCore* NextUser() const noexcept { return m_nextUser; }
    bool HasMovingAddress() const noexcept { return !m_terms.empty() || m_lengthNode != nullptr; }
    void ForgetAddress() noexcept { m_isResolved = m_isResolved && !HasMovingAddress(); }
    /// What was read up to now counts no more, wherever the register lay or will lie.
    void DropContent() noexcept;
    /// The same where the register turns out to lie where it lay before.
    void DropUnlessMoved() noexcept { m_dropsUnlessMoved = m_block != nullptr; }
    /// Makes the block of a register whose address is constant.
    void AttachConstant();

    std::int64_t Address(Evaluation& evaluation);
    std::int64_t Length(Evaluation& evaluation);
    /// The bytes, valid until the next operation on the node map.
    std::span<const std::uint8_t> Read(Evaluation& evaluation);
    /// The bytes that a change of some bits of an integer starts from; at most 8.
    std::span<const std::uint8_t> ReadForChange(Evaluation& evaluation);
    /// Says which bits of what was just written stay set, for the next change of a register that can't be read.
    void KeepSettings(std::span<const std::uint8_t> bytes) noexcept;
    void Write(std::span<const std::uint8_t> bytes, Evaluation& evaluation);
    EAccessMode Access(Evaluation& evaluation);
    /// What has to be known before the register can be read, or before it is known whether it can be.
    Waiting Need(EPart part) const noexcept;
    bool IsBigEndian() const noexcept;
    bool IsValid() const noexcept;

private:
    friend class RegisterCache;

    enum class ETerm : std::uint8_t { Plain, TimesOffset, TimesOffsetNode, TimesLength };

    /// One part of the address that comes from a node.
    struct Term {
        CNode* node;
        CNode* offsetNode;
        std::int64_t offset;
        ETerm kind;
    };

    RegisterBlock& Resolve(Evaluation& evaluation);
    RegisterBlock& Settle(RegisterBlock& block) noexcept;
    bool Knows(const RegisterBlock& block) const noexcept;
    std::int64_t TermValue(const Term& term, Evaluation& evaluation);
    void BindAddress();
    Term IndexTerm(std::span<const Property> rest) const;
    std::span<const std::uint8_t> Fetch(RegisterBlock& block, Evaluation& evaluation, bool compares);
    bool IsWriteOnly() const noexcept;
    void RequireAttached(const RegisterBlock& block, std::size_t length) const;

    CNode& m_owner;
    CPort* m_port = nullptr;
    CNode* m_lengthNode = nullptr;
    std::span<const Term> m_terms;
    std::int64_t m_address = 0;
    std::int64_t m_length = 0;
    EAccessMode m_access : 8;
    ECachingMode m_caching : 8;
    EEndianess m_endianess : 8;
    bool m_isResolved = false;
    bool m_dropsUnlessMoved = false;
    std::uint64_t m_dropRound = 0;
    RegisterBlock* m_block = nullptr;
    RegisterCore* m_nextUser = nullptr;
    RegisterCore* m_previousUser = nullptr;
};

}  // namespace GenApi
