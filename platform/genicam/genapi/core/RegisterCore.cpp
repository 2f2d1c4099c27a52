/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A piece of register space as a node sees it: address, length, byte order, caching
 */

#include "core/RegisterCore.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/NodeMap.h"
#include "core/Port.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

std::int64_t AddWrapping(std::int64_t left, std::int64_t right) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) + static_cast<std::uint64_t>(right));
}

std::int64_t MultiplyWrapping(std::int64_t left, std::int64_t right) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) * static_cast<std::uint64_t>(right));
}

CNode& RequireIntegerNode(const CNode& owner, const Property& property) {
    CNode* node = owner.NodeOf(property);
    if (node == nullptr || node->Number() == ENumber::None)
        throw INVALID_ARGUMENT_EXCEPTION("%s refers to '%s', which has no number", std::string(NameOf(property.tag)),
                                         Shortened(owner.TextOf(property)));
    return *node;
}

// Bytes read from a port before they are compared with what was known; small ones need no memory.
class ReadBuffer {
public:
    explicit ReadBuffer(std::int64_t length) : m_size(static_cast<std::size_t>(length)) {
        if (m_size > m_small.size())
            m_large.resize(m_size);
    }
    std::uint8_t* Data() noexcept { return m_large.empty() ? m_small.data() : m_large.data(); }
    std::size_t Size() const noexcept { return m_size; }

private:
    std::size_t m_size;
    std::array<std::uint8_t, 16> m_small{};
    std::vector<std::uint8_t> m_large;
};

[[noreturn]] void ThrowMoved(const CNode& owner) {
    throw LOGICAL_ERROR_EXCEPTION("%s: the port moved the register that it was asked for", owner.Label());
}

}  // namespace

RegisterCore::RegisterCore(CNode& owner)
    : m_owner(owner), m_access(RO), m_caching(WriteThrough), m_endianess(LittleEndian) {
    if (owner.Enclosing() != nullptr && owner.Enclosing()->Has(kBroken))
        throw INVALID_ARGUMENT_EXCEPTION("%s", owner.Map().ReasonOf(*owner.Enclosing()));
    const Property* port = owner.Find(ETag::pPort);
    if (port == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no port");
    m_port = dynamic_cast<CPort*>(owner.NodeOf(*port));
    if (m_port == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("pPort refers to '%s', which is no port", Shortened(owner.TextOf(*port)));
    if (const Property* access = owner.Find(ETag::AccessMode))
        m_access = ParseWord<EAccessMode>(owner.TextOf(*access)).value_or(RO);
    if (const Property* caching = owner.Find(ETag::Cachable))
        m_caching = ParseWord<ECachingMode>(owner.TextOf(*caching)).value_or(WriteThrough);
    if (const Property* endianess = owner.Find(ETag::Endianess))
        m_endianess = ParseWord<EEndianess>(owner.TextOf(*endianess)).value_or(LittleEndian);
    if (const Property* length = owner.Find(ETag::pLength)) {
        m_lengthNode = &RequireIntegerNode(owner, *length);
    } else {
        const Property* constant = owner.Find(ETag::Length);
        const auto value = constant != nullptr ? ParseInteger(owner.TextOf(*constant)) : std::nullopt;
        if (!value || *value < 1 || *value > kMaxRegisterLength)
            throw INVALID_ARGUMENT_EXCEPTION("Length '%s' is not one of a register",
                                             Shortened(constant != nullptr ? owner.TextOf(*constant) : ""));
        m_length = *value;
    }
    BindAddress();
}

// The address is the sum of all its elements, of the entry and of the structure around it.
void RegisterCore::BindAddress() {
    std::vector<Term> terms;
    const auto collect = [&](const CNode& node) {
        const std::span<const Property> properties = node.Properties();
        for (std::size_t i = 0; i < properties.size(); ++i) {
            const Property& property = properties[i];
            if (property.tag == ETag::Nested)
                return;
            if (property.tag == ETag::Address) {
                const auto value = ParseInteger(node.TextOf(property));
                if (!value)
                    throw INVALID_ARGUMENT_EXCEPTION("Address '%s' is no number", Shortened(node.TextOf(property)));
                m_address = AddWrapping(m_address, *value);
            } else if (property.tag == ETag::pAddress) {
                terms.push_back({&RequireIntegerNode(node, property), nullptr, 0, ETerm::Plain});
            } else if (property.tag == ETag::pIndex) {
                terms.push_back(IndexTerm(properties.subspan(i)));
            }
        }
    };
    collect(m_owner);
    if (m_owner.Kind() == ENodeKind::StructEntry && m_owner.Enclosing() != nullptr)
        collect(*m_owner.Enclosing());
    m_terms = m_owner.Map().Memory().Copy(terms);
}

// An index counts in steps of its Offset, of the value of its pOffset, or of the register's length.
RegisterCore::Term RegisterCore::IndexTerm(std::span<const Property> rest) const {
    Term term{&RequireIntegerNode(m_owner, rest.front()), nullptr, 0, ETerm::TimesLength};
    for (const Property& attribute : rest.subspan(1)) {
        if (!IsAttribute(attribute.tag))
            break;
        if (attribute.tag == ETag::AttributePOffset) {
            term.offsetNode = &RequireIntegerNode(m_owner, attribute);
            term.kind = ETerm::TimesOffsetNode;
        } else if (attribute.tag == ETag::AttributeOffset) {
            const auto value = ParseInteger(m_owner.TextOf(attribute));
            if (!value)
                throw INVALID_ARGUMENT_EXCEPTION("Offset '%s' is no number", Shortened(m_owner.TextOf(attribute)));
            term.offset = *value;
            term.kind = ETerm::TimesOffset;
        }
    }
    return term;
}

std::int64_t RegisterCore::TermValue(const Term& term, Evaluation& evaluation) {
    const std::int64_t value = term.node->Integer(evaluation);
    switch (term.kind) {
        case ETerm::TimesOffset:
            return MultiplyWrapping(value, term.offset);
        case ETerm::TimesOffsetNode:
            return MultiplyWrapping(value, term.offsetNode->Integer(evaluation));
        case ETerm::TimesLength:
            return MultiplyWrapping(value, m_length);
        default:
            return value;
    }
}

void RegisterCore::AttachConstant() {
    if (m_block == nullptr && !HasMovingAddress()) {
        RegisterCache& cache = m_owner.Map().Registers();
        cache.Attach(cache.Get(*m_port, m_address, m_length), *this);
        m_isResolved = true;
        m_owner.Map().Dependencies().Learned();
    }
}

/**
 * \brief Find the block that the register stands for now
 *
 * The values that make up the address may come from the cache: what they depend on forgets the address when it changes.
 *
 * \throw OutOfRangeException A length that is not positive or above the bound of registers
 */
RegisterBlock& RegisterCore::Resolve(Evaluation& evaluation) {
    if (m_isResolved && !m_owner.Map().ChecksCaches())
        return *m_block;
    Evaluation parts = evaluation.Inner();
    if (m_lengthNode != nullptr) {
        m_length = m_lengthNode->Integer(parts);
        if (m_length < 1 || m_length > kMaxRegisterLength)
            throw OUT_OF_RANGE_EXCEPTION("%s: length %I64d is not one of a register", m_owner.Label(), m_length);
    }
    std::int64_t address = m_address;
    for (const Term& term : m_terms)
        address = AddWrapping(address, TermValue(term, parts));
    evaluation.cacheable = evaluation.cacheable && parts.cacheable;
    RegisterCache& cache = m_owner.Map().Registers();
    if (m_block == nullptr || m_block->address != address || m_block->length != m_length) {
        cache.Detach(*this);
        cache.Attach(cache.Get(*m_port, address, m_length), *this);
        m_dropsUnlessMoved = false;
    }
    m_isResolved = parts.cacheable;
    m_owner.Map().Dependencies().Learned();
    return Settle(*m_block);
}

// A selector leads to another place, whose bytes are as good as ever, or changes what lies at this one.
RegisterBlock& RegisterCore::Settle(RegisterBlock& block) noexcept {
    if (m_dropsUnlessMoved) {
        m_dropsUnlessMoved = false;
        DropContent();
    }
    return block;
}

void RegisterCore::DropContent() noexcept {
    m_dropRound = m_owner.Map().Registers().NextRound();
    if (m_block != nullptr)
        m_block->valid = false;
}

// The bytes of a place may have been read before this register was told to forget what it knew.
bool RegisterCore::Knows(const RegisterBlock& block) const noexcept {
    return block.valid && block.round > m_dropRound && m_caching != NoCache;
}

std::int64_t RegisterCore::Address(Evaluation& evaluation) {
    return Resolve(evaluation).address;
}

std::int64_t RegisterCore::Length(Evaluation& evaluation) {
    return Resolve(evaluation).length;
}

std::span<const std::uint8_t> RegisterCore::Read(Evaluation& evaluation) {
    RegisterBlock& block = Resolve(evaluation);
    if (m_caching == NoCache)
        evaluation.cacheable = false;
    const bool isKnown = Knows(block) && !evaluation.ignoreCache;
    if (isKnown && !m_owner.Map().ChecksCaches())
        return {block.Data(), static_cast<std::size_t>(block.length)};
    return Fetch(block, evaluation, isKnown);
}

bool RegisterCore::IsWriteOnly() const noexcept {
    return !IsReadable(Combine(m_access, m_port->Mode()));
}

// What a write-only register holds can't be read: its change starts from the settings that were written to it.
std::span<const std::uint8_t> RegisterCore::ReadForChange(Evaluation& evaluation) {
    if (!IsWriteOnly())
        return Read(evaluation);
    const RegisterBlock& block = Resolve(evaluation);
    return std::span(block.settings).first(std::min(block.settings.size(), static_cast<std::size_t>(block.length)));
}

void RegisterCore::KeepSettings(std::span<const std::uint8_t> bytes) noexcept {
    if (m_block != nullptr && IsWriteOnly() && bytes.size() <= m_block->settings.size())
        std::copy(bytes.begin(), bytes.end(), m_block->settings.begin());
}

// A port runs code of others, which may use this very node map and move the register.
void RegisterCore::RequireAttached(const RegisterBlock& block, std::size_t length) const {
    if (m_block != &block || static_cast<std::uint64_t>(block.length) != length)
        ThrowMoved(m_owner);
}

// compares: the block is said to hold these very bytes; the debug mode wants to see that it does.
std::span<const std::uint8_t> RegisterCore::Fetch(RegisterBlock& block, Evaluation& evaluation, bool compares) {
    ReadBuffer buffer(block.length);
    m_port->ReadBytes(buffer.Data(), block.address, block.length);
    RequireAttached(block, buffer.Size());
    const bool differs = block.valid && !AreEqual(reinterpret_cast<const char*>(block.Data()),
                                                  reinterpret_cast<const char*>(buffer.Data()), buffer.Size());
    if (compares && differs)
        throw LOGICAL_ERROR_EXCEPTION("%s: the cache differs from the device at address 0x%I64x", m_owner.Label(),
                                      block.address);
    const bool isShared = m_caching != NoCache || block.users->m_nextUser != nullptr;
    if (differs && isShared) {
        m_owner.Map().SpreadQuietly(block);
        evaluation.cacheable = false;
    }
    // What is read again and again mostly stays the same.
    if (differs || !block.valid) {
        block.Prepare();
        std::memcpy(block.Data(), buffer.Data(), buffer.Size());
        block.valid = block.hasData = true;
    }
    m_owner.Map().Dependencies().Learned();
    block.round = m_owner.Map().Registers().Round();
    return {block.Data(), buffer.Size()};
}

// The length may come from a device, which may give another one each time it is asked.
void RegisterCore::Write(std::span<const std::uint8_t> bytes, Evaluation& evaluation) {
    CNodeMap& map = m_owner.Map();
    map.AttachRegisters();
    RegisterBlock& block = Resolve(evaluation);
    if (bytes.size() != static_cast<std::uint64_t>(block.length))
        throw OUT_OF_RANGE_EXCEPTION("%s has %I64d bytes now, not %u", m_owner.Label(), block.length, bytes.size());
    try {
        m_port->WriteBytes(bytes.data(), block.address, block.length);
    } catch (...) {
        // Nobody knows what the device holds now.
        RequireAttached(block, bytes.size());
        block.valid = false;
        map.BlockChanged(block);
        throw;
    }
    RequireAttached(block, bytes.size());
    KeepSettings(bytes);
    block.Prepare();
    if (bytes.data() != block.Data())
        std::memcpy(block.Data(), bytes.data(), bytes.size());
    block.hasData = true;
    // Behind the address of a write-only register there may be another one to read.
    const bool wasValid = std::exchange(block.valid, m_caching == WriteThrough && m_access == RW);
    if (block.valid && !wasValid)
        map.Dependencies().Learned();
    block.round = map.Registers().Round();
    map.BlockChanged(block);
}

EAccessMode RegisterCore::Access(Evaluation& evaluation) {
    const EAccessMode mode = Combine(m_access, m_port->Mode());
    if (mode == NI)
        return mode;
    if (m_lengthNode != nullptr && !IsReadable(m_lengthNode->Access(evaluation, false)))
        return NA;
    for (const Term& term : m_terms) {
        if (!IsReadable(term.node->Access(evaluation, false)))
            return NA;
        if (term.offsetNode != nullptr && !IsReadable(term.offsetNode->Access(evaluation, false)))
            return NA;
    }
    return mode;
}

Waiting RegisterCore::Need(EPart part) const noexcept {
    CNode* first = m_lengthNode != nullptr ? m_lengthNode : (m_terms.empty() ? nullptr : m_terms.front().node);
    const bool isAccess = part == EPart::ReadAccess || part == EPart::FullAccess;
    return {first, isAccess ? EPart::ReadAccess : EPart::Value};
}

bool RegisterCore::IsBigEndian() const noexcept {
    return (m_endianess == BigEndian) != m_port->SwapsEndianess();
}

bool RegisterCore::IsValid() const noexcept {
    return m_isResolved && m_block != nullptr && Knows(*m_block);
}

}  // namespace GenApi
