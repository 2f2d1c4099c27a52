/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What nodes with an integer have in common: IInteger, ranges, texts
 */

#include "nodes/IntegerNode.h"

#include <algorithm>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Values.h"

namespace GenApi {

// --- IInteger ---

/**
 * \brief The value
 * \param[in] verify Refuse a value outside the range
 * \param[in] ignoreCache Ask the device even if the value is known
 * \throw AccessException The node is not readable
 * \throw OutOfRangeException The value is outside the range
 *
 * \context Any thread
 */
std::int64_t CIntegerNode::GetValue(bool verify, bool ignoreCache) {
    return UsersInteger(verify, ignoreCache);
}

/**
 * \brief Set the value
 * \param[in] verify Check range, increment and valid values here and in the nodes behind, and the error node afterwards
 * \throw AccessException The node is not writable
 * \throw OutOfRangeException The value is outside the range, or does not fit into the register
 *
 * \context Any thread
 */
void CIntegerNode::SetValue(std::int64_t value, bool verify) {
    SetUsersInteger(value, verify);
}

std::int64_t CIntegerNode::GetMin() {
    const MapAccess access(Map());
    Evaluation evaluation;
    return IntegerBound(EBound::Min, evaluation);
}

std::int64_t CIntegerNode::GetMax() {
    const MapAccess access(Map());
    Evaluation evaluation;
    return IntegerBound(EBound::Max, evaluation);
}

std::int64_t CIntegerNode::GetInc() {
    const MapAccess access(Map());
    Evaluation evaluation;
    return IntegerInc(evaluation);
}

EIncMode CIntegerNode::GetIncMode() {
    const MapAccess access(Map());
    Require();
    return InheritedValidValues().empty() ? fixedIncrement : listIncrement;
}

int64_autovector_t CIntegerNode::GetListOfValidValues(bool bounded) {
    const MapAccess access(Map());
    Require();
    const ValidValues values = InheritedValidValues();
    if (values.empty())
        return int64_autovector_t();
    Evaluation evaluation;
    const std::int64_t min = bounded ? IntegerBound(EBound::Min, evaluation) : INT64_MIN;
    const std::int64_t max = bounded ? IntegerBound(EBound::Max, evaluation) : INT64_MAX;
    return int64_autovector_t(values.Within(min, max));
}

ERepresentation CIntegerNode::GetRepresentation() {
    const MapAccess access(Map());
    return ParseWord<ERepresentation>(InheritedText(ETag::Representation)).value_or(PureNumber);
}

GenICam::gcstring CIntegerNode::GetUnit() {
    const MapAccess access(Map());
    return GenICam::gcstring(InheritedText(ETag::Unit));
}

void CIntegerNode::ImposeMin(std::int64_t value) {
    Map().Change(this, [&] {
        Require();
        if (m_limits == nullptr)
            m_limits = Map().Memory().New<IntegerLimits>();
        m_limits->imposedMin = value;
        Map().Changed(*this);
    });
}

void CIntegerNode::ImposeMax(std::int64_t value) {
    Map().Change(this, [&] {
        Require();
        if (m_limits == nullptr)
            m_limits = Map().Memory().New<IntegerLimits>();
        m_limits->imposedMax = value;
        Map().Changed(*this);
    });
}

// --- IValue ---

GenICam::gcstring CIntegerNode::ToString(bool verify, bool ignoreCache) {
    const MapAccess access(Map());
    return IntegerToText(GetValue(verify, ignoreCache), GetRepresentation());
}

void CIntegerNode::FromString(const GenICam::gcstring& text, bool verify) {
    const auto value = TextToInteger(text.view(), GetRepresentation());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("%s: '%s' is no integer", Label(), text);
    SetValue(*value, verify);
}

// --- Evaluation ---

// Most nodes have no range of their own: they need no room for one.
void CIntegerNode::Bind() {
    IntegerLimits limits;
    limits.min = BindOperand<std::int64_t>(*this, ETag::Min, ETag::pMin);
    limits.max = BindOperand<std::int64_t>(*this, ETag::Max, ETag::pMax);
    limits.inc = BindOperand<std::int64_t>(*this, ETag::Inc, ETag::pInc);
    if (const Property* set = Find(ETag::ValidValueSet))
        limits.validValues = Map().Memory().Copy(ParseList<std::int64_t>(TextOf(*set)));
    if (limits.min.isGiven || limits.max.isGiven || limits.inc.isGiven || !limits.validValues.empty())
        m_limits = Map().Memory().New<IntegerLimits>(limits);
}

std::int64_t CIntegerNode::ReadIntegerBound(EBound bound, Evaluation& evaluation) {
    if (m_limits == nullptr)
        return OwnBound(bound, evaluation);
    const Operand<std::int64_t>& operand = bound == EBound::Min ? m_limits->min : m_limits->max;
    const std::int64_t value = operand.isGiven ? operand.Read(evaluation) : OwnBound(bound, evaluation);
    return bound == EBound::Min ? std::max(value, m_limits->imposedMin) : std::min(value, m_limits->imposedMax);
}

std::int64_t CIntegerNode::ReadIntegerInc(Evaluation& evaluation) {
    if (m_limits != nullptr && m_limits->inc.isGiven)
        return m_limits->inc.Read(evaluation);
    return OwnInc(evaluation);
}

std::int64_t CIntegerNode::OwnBound(EBound bound, Evaluation&) {
    return bound == EBound::Min ? INT64_MIN : INT64_MAX;
}

std::int64_t CIntegerNode::OwnInc(Evaluation&) {
    return 1;
}

ValidValues CIntegerNode::OwnValidValues() const {
    return m_limits != nullptr ? ValidValues{m_limits->validValues, {}, m_limits->inc.isGiven} : ValidValues();
}

void CIntegerNode::CheckInteger(std::int64_t value, Evaluation& evaluation) {
    const std::int64_t min = IntegerBound(EBound::Min, evaluation);
    if (value < min)
        throw OUT_OF_RANGE_EXCEPTION("%s: value %I64d must not be smaller than %I64d", Label(), value, min);
    const std::int64_t max = IntegerBound(EBound::Max, evaluation);
    if (value > max)
        throw OUT_OF_RANGE_EXCEPTION("%s: value %I64d must not be larger than %I64d", Label(), value, max);
    if (m_limits != nullptr && !m_limits->validValues.empty())
        return CheckValidValue(value);
    const std::int64_t inc = IntegerInc(evaluation);
    // Without a sign: minimum and value may lie more than 2^63 apart.
    const std::uint64_t distance = static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(min);
    if (inc > 1 && distance % static_cast<std::uint64_t>(inc) != 0)
        throw OUT_OF_RANGE_EXCEPTION("%s: value %I64d must be %I64d plus a multiple of %I64d", Label(), value, min,
                                     inc);
}

void CIntegerNode::CheckValidValue(std::int64_t value) const {
    const auto& values = m_limits->validValues;
    if (std::find(values.begin(), values.end(), value) == values.end())
        throw OUT_OF_RANGE_EXCEPTION("%s: value %I64d is not one of the valid values", Label(), value);
}

// --- Integer ---

std::int64_t CInteger::ReadInteger(Evaluation& evaluation) {
    return Source().Read(*this, evaluation);
}

void CInteger::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    Source().Write(*this, value, evaluation);
}

std::int64_t CInteger::OwnBound(EBound bound, Evaluation& evaluation) {
    CNode* target = Source().Target(*this, evaluation);
    return target != nullptr ? target->IntegerBound(bound, evaluation) : CIntegerNode::OwnBound(bound, evaluation);
}

std::int64_t CInteger::OwnInc(Evaluation& evaluation) {
    CNode* target = Source().Target(*this, evaluation);
    return target != nullptr && target->Number() == ENumber::Integer ? target->IntegerInc(evaluation) : 1;
}

Waiting CInteger::NeedBehind(EPart part) {
    return {IsLimit(part) && HasLimits() ? nullptr : Source().OnlyTarget(), part};
}

CNode* CInteger::Appearance() {
    return Source().Appearance();
}

}  // namespace GenApi
