/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes that are a piece of register space
 */

#include "nodes/RegisterNodes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

std::uint64_t LoadInteger(std::span<const std::uint8_t> bytes, bool isBigEndian) noexcept {
    const auto load = [](auto next, auto end) {
        std::uint64_t value = 0;
        for (; next != end; ++next)
            value = (value << 8) | *next;
        return value;
    };
    return isBigEndian ? load(bytes.begin(), bytes.end()) : load(bytes.rbegin(), bytes.rend());
}

void StoreInteger(std::uint64_t value, std::span<std::uint8_t> bytes, bool isBigEndian) noexcept {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[isBigEndian ? bytes.size() - 1 - i : i] = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
}

bool HasValidBytes(CNode& node) {
    const AutoLock lock(node.Map().GetLock());
    const RegisterCore* const core = node.Register();
    return core != nullptr && core->IsValid();
}

constexpr std::uint64_t MaskOf(unsigned count) noexcept {
    return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

constexpr std::int64_t SignExtend(std::uint64_t value, unsigned count) noexcept {
    const unsigned unused = 64 - count;
    return static_cast<std::int64_t>(value << unused) >> unused;
}

}  // namespace

// --- IRegister ---

template <class Base>
void CRegisterNode<Base>::Bind() {
    Base::Bind();
    m_core = this->Map().Memory().template New<RegisterCore>(*this);
}

/**
 * \brief Write the whole register
 * \param[in] buffer \a length bytes
 * \param[in] length The length of the register
 * \throw AccessException The node is not writable
 * \throw OutOfRangeException \a length is not that of the register
 */
template <class Base>
void CRegisterNode<Base>::Set(const std::uint8_t* buffer, std::int64_t length, bool verify) {
    this->Map().Change(this, [&] {
        this->RequireWritable();
        Evaluation evaluation;
        const std::int64_t own = m_core->Length(evaluation);
        if (buffer == nullptr || length != own)
            throw OUT_OF_RANGE_EXCEPTION("%s has %I64d bytes, not %I64d", this->Label(), own, length);
        m_core->Write({buffer, static_cast<std::size_t>(length)}, evaluation);
        if (verify)
            this->CheckError();
    });
}

/**
 * \brief Read the register
 * \param[out] buffer Room for \a length bytes
 * \param[in] length 1 to the length of the register
 * \throw AccessException The node is not readable
 * \throw OutOfRangeException \a length is larger than that of the register
 */
template <class Base>
void CRegisterNode<Base>::Get(std::uint8_t* buffer, std::int64_t length, bool, bool ignoreCache) {
    const MapAccess access(this->Map());
    this->RequireReadable();
    Evaluation evaluation;
    evaluation.ignoreCache = ignoreCache;
    const std::int64_t own = m_core->Length(evaluation);
    if (buffer == nullptr || length < 1 || length > own)
        throw OUT_OF_RANGE_EXCEPTION("%s has %I64d bytes, not %I64d", this->Label(), own, length);
    const std::span<const std::uint8_t> bytes = m_core->Read(evaluation);
    if (bytes.size() < static_cast<std::uint64_t>(length))
        throw OUT_OF_RANGE_EXCEPTION("%s has %u bytes now, not %I64d", this->Label(), bytes.size(), length);
    std::memcpy(buffer, bytes.data(), static_cast<std::size_t>(length));
}

template <class Base>
std::int64_t CRegisterNode<Base>::GetLength() {
    const MapAccess access(this->Map());
    this->Require();
    Evaluation evaluation;
    return m_core->Length(evaluation);
}

template <class Base>
std::int64_t CRegisterNode<Base>::GetAddress() {
    const MapAccess access(this->Map());
    this->Require();
    Evaluation evaluation;
    return m_core->Address(evaluation);
}

template class CRegisterNode<CIntegerNode>;
template class CRegisterNode<CFloatNode>;
template class CRegisterNode<CBytesNode>;
template class CRegisterNode<CTextNode>;

// --- Bytes ---

GenICam::gcstring CBytesNode::ToString(bool, bool ignoreCache) {
    static constexpr std::array kDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                           '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    const MapAccess access(Map());
    RequireReadable();
    Evaluation evaluation;
    evaluation.ignoreCache = ignoreCache;
    std::string text = "0x";
    for (const std::uint8_t byte : Register()->Read(evaluation)) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

void CBytesNode::FromString(const GenICam::gcstring& text, bool verify) {
    std::string_view digits = text.view();
    if (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X")
        digits.remove_prefix(2);
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const auto value = TextToInteger("0x" + std::string(digits.substr(i, 2)), HexNumber);
        if (digits.size() % 2 != 0 || !value || *value < 0)
            throw INVALID_ARGUMENT_EXCEPTION("%s: '%s' is no text of bytes", Label(), text);
        bytes.push_back(static_cast<std::uint8_t>(*value));
    }
    dynamic_cast<IRegister&>(*this).Set(bytes.data(), static_cast<std::int64_t>(bytes.size()), verify);
}

bool CBytesNode::IsValueCacheValid() const {
    return HasValidBytes(*const_cast<CBytesNode*>(this));
}

// --- Integers ---

void CIntReg::Bind() {
    CRegisterNode::Bind();
    const Property* sign = Find(ETag::Sign);
    m_isSigned = sign != nullptr && ParseWord<ESign>(TextOf(*sign)) == Signed;
    const auto bitOf = [this](ETag tag) -> std::int16_t {
        const Property* property = Find(tag);
        const std::int64_t bit = property != nullptr ? NumberOf<std::int64_t>(*this, *property) : -1;
        if (property != nullptr && (bit < 0 || bit > 63))
            throw INVALID_ARGUMENT_EXCEPTION("%s %I64d is no bit of a register", std::string(NameOf(tag)), bit);
        return static_cast<std::int16_t>(bit);
    };
    m_lsb = m_msb = bitOf(ETag::Bit);
    if (m_lsb >= 0)
        return;
    m_lsb = bitOf(ETag::LSB);
    m_msb = bitOf(ETag::MSB);
    if ((m_lsb < 0) != (m_msb < 0))
        throw INVALID_ARGUMENT_EXCEPTION("has only one of LSB and MSB");
}

// The bits of a big endian register are counted from the most significant one. Files have both ends in either order.
CIntReg::Bits CIntReg::BitsOf(std::int64_t length) const {
    if (length > 8)
        throw OUT_OF_RANGE_EXCEPTION("%s: an integer can't have %I64d bytes", Label(), length);
    const auto total = static_cast<unsigned>(length) * 8;
    if (m_lsb < 0)
        return {0, total};
    const auto low = static_cast<unsigned>(std::min(m_lsb, m_msb));
    const auto high = static_cast<unsigned>(std::max(m_lsb, m_msb));
    if (high >= total)
        throw OUT_OF_RANGE_EXCEPTION("%s: bit %u is outside %u bits", Label(), high, total);
    const bool isBigEndian = const_cast<CIntReg*>(this)->Core().IsBigEndian();
    return {isBigEndian ? total - 1 - high : low, high - low + 1};
}

std::int64_t CIntReg::ReadInteger(Evaluation& evaluation) {
    const std::span<const std::uint8_t> bytes = Core().Read(evaluation);
    const Bits bits = BitsOf(static_cast<std::int64_t>(bytes.size()));
    const std::uint64_t value = (LoadInteger(bytes, Core().IsBigEndian()) >> bits.shift) & MaskOf(bits.count);
    return m_isSigned ? SignExtend(value, bits.count) : static_cast<std::int64_t>(value);
}

void CIntReg::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    const std::int64_t length = Core().Length(evaluation);
    const Bits bits = BitsOf(length);
    CheckFits(value, bits);
    std::array<std::uint8_t, 8> buffer{};
    const std::span<std::uint8_t> bytes(buffer.data(), static_cast<std::size_t>(length));
    std::uint64_t whole = static_cast<std::uint64_t>(value) & MaskOf(bits.count);
    const bool isBigEndian = Core().IsBigEndian();
    if (bits.count < bytes.size() * 8) {
        const std::span<const std::uint8_t> known = Core().ReadForChange(evaluation);
        if (known.size() != bytes.size())
            throw OUT_OF_RANGE_EXCEPTION("%s has %u bytes now, not %I64d", Label(), known.size(), length);
        const std::uint64_t before = LoadInteger(known, isBigEndian);
        whole = (before & ~(MaskOf(bits.count) << bits.shift)) | (whole << bits.shift);
    }
    StoreInteger(whole, bytes, isBigEndian);
    Core().Write(bytes, evaluation);
    if (!evaluation.isPassing)
        return;
    // What a command wrote must not be sent again with the next field of this register.
    StoreInteger(whole & ~(MaskOf(bits.count) << bits.shift), bytes, isBigEndian);
    Core().KeepSettings(bytes);
}

// Bits that do not exist can't be written, whether or not ranges are verified. All 64 bits are open: an unsigned
// register of that length has values that an integer shows as negative.
void CIntReg::CheckFits(std::int64_t value, const Bits& bits) const {
    if (bits.count >= 64)
        return;
    const std::int64_t min = m_isSigned ? -(std::int64_t{1} << (bits.count - 1)) : 0;
    const std::int64_t max = static_cast<std::int64_t>(MaskOf(m_isSigned ? bits.count - 1 : bits.count));
    if (value < min || value > max)
        throw OUT_OF_RANGE_EXCEPTION("%s: value %I64d does not fit into %u bits", Label(), value, bits.count);
}

std::int64_t CIntReg::OwnBound(EBound bound, Evaluation& evaluation) {
    const Bits bits = BitsOf(Core().Length(evaluation));
    if (bits.count >= 64)
        return bound == EBound::Max ? INT64_MAX : (m_isSigned ? INT64_MIN : 0);
    if (bound == EBound::Max)
        return static_cast<std::int64_t>(MaskOf(m_isSigned ? bits.count - 1 : bits.count));
    return m_isSigned ? -(std::int64_t{1} << (bits.count - 1)) : 0;
}

// --- Floats ---

double CFloatReg::ReadFloat(Evaluation& evaluation) {
    const std::span<const std::uint8_t> bytes = Core().Read(evaluation);
    if (bytes.size() != 4 && bytes.size() != 8)
        throw OUT_OF_RANGE_EXCEPTION("%s: a number can't have %u bytes", Label(), bytes.size());
    const std::uint64_t bits = LoadInteger(bytes, Core().IsBigEndian());
    return bytes.size() == 4 ? static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
                             : std::bit_cast<double>(bits);
}

void CFloatReg::WriteFloat(double value, Evaluation& evaluation) {
    const std::int64_t length = Core().Length(evaluation);
    if (length != 4 && length != 8)
        throw OUT_OF_RANGE_EXCEPTION("%s: a number can't have %I64d bytes", Label(), length);
    if (length == 4 && std::isfinite(value) && std::fabs(value) > static_cast<double>(FLT_MAX))
        throw OUT_OF_RANGE_EXCEPTION("%s: value %g does not fit into 4 bytes", Label(), value);
    const std::uint64_t bits =
        length == 4 ? std::bit_cast<std::uint32_t>(static_cast<float>(value)) : std::bit_cast<std::uint64_t>(value);
    std::array<std::uint8_t, 8> buffer{};
    const std::span<std::uint8_t> bytes(buffer.data(), static_cast<std::size_t>(length));
    StoreInteger(bits, bytes, Core().IsBigEndian());
    Core().Write(bytes, evaluation);
}

double CFloatReg::OwnBound(EBound bound, Evaluation& evaluation) {
    const double limit = Core().Length(evaluation) == 4 ? static_cast<double>(FLT_MAX) : DBL_MAX;
    return bound == EBound::Min ? -limit : limit;
}

// --- Texts ---

/**
 * \brief The text
 * \throw AccessException The node is not readable
 *
 * \context Any thread
 */
GenICam::gcstring CTextNode::GetValue(bool, bool ignoreCache) {
    const MapAccess access(Map());
    RequireReadable();
    Evaluation evaluation;
    evaluation.ignoreCache = ignoreCache;
    return Text(evaluation);
}

/**
 * \brief Set the text
 * \throw AccessException The node is not writable
 * \throw OutOfRangeException The text is too long
 *
 * \context Any thread
 */
void CTextNode::SetValue(const GenICam::gcstring& value, bool verify) {
    Map().Change(this, [&] {
        RequireWritable();
        Evaluation evaluation;
        evaluation.verify = verify;
        AssignText(value.str(), evaluation);
    });
}

std::int64_t CTextNode::GetMaxLength() {
    const MapAccess access(Map());
    Require();
    Evaluation evaluation;
    return MaxLength(evaluation);
}

bool CTextNode::IsValueCacheValid() const {
    return HasValidBytes(*const_cast<CTextNode*>(this));
}

std::string CStringReg::ReadText(Evaluation& evaluation) {
    const std::span<const std::uint8_t> bytes = Core().Read(evaluation);
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    return std::string(bytes.begin(), end);
}

void CStringReg::WriteText(const std::string& text, Evaluation& evaluation) {
    const std::int64_t length = Core().Length(evaluation);
    if (static_cast<std::int64_t>(text.size()) > length)
        throw OUT_OF_RANGE_EXCEPTION("%s: a text of %u bytes does not fit into %I64d", Label(), text.size(), length);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(length));
    std::copy(text.begin(), text.end(), bytes.begin());
    Core().Write(bytes, evaluation);
}

}  // namespace GenApi
