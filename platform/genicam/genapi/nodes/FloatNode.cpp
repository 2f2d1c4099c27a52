/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What nodes with a floating-point number have in common: IFloat, ranges, texts
 */

#include "nodes/FloatNode.h"

#include <algorithm>
#include <cmath>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

namespace {
constexpr std::int64_t kDefaultPrecision = 6;
// Computed steps are never exact: a value counts as on the grid when it misses it by less than this part of a step.
constexpr double kGridTolerance = 1e-4;
}  // namespace

// --- IFloat ---

/**
 * \brief The value
 * \param[in] verify Refuse a value outside the range
 * \param[in] ignoreCache Ask the device even if the value is known
 * \throw AccessException The node is not readable
 * \throw OutOfRangeException The value is outside the range
 *
 * \context Any thread
 */
double CFloatNode::GetValue(bool verify, bool ignoreCache) {
    const MapAccess access(Map());
    RequireReadable();
    Evaluation evaluation;
    evaluation.ignoreCache = ignoreCache;
    const double value = Float(evaluation);
    if (verify)
        CheckFloat(value, evaluation);
    return value;
}

/**
 * \brief Set the value
 * \param[in] verify Check range, increment and valid values here and in the nodes behind, and the error node afterwards
 * \throw AccessException The node is not writable
 * \throw OutOfRangeException The value is outside the range, or does not fit into the register
 *
 * \context Any thread
 */
void CFloatNode::SetValue(double value, bool verify) {
    Map().Change(this, [&] {
        RequireWritable();
        Evaluation evaluation;
        evaluation.verify = verify;
        AssignFloat(value, evaluation);
    });
}

double CFloatNode::GetMin() {
    const MapAccess access(Map());
    Evaluation evaluation;
    return FloatBound(EBound::Min, evaluation);
}

double CFloatNode::GetMax() {
    const MapAccess access(Map());
    Evaluation evaluation;
    return FloatBound(EBound::Max, evaluation);
}

bool CFloatNode::HasInc() {
    return GetIncMode() == fixedIncrement;
}

EIncMode CFloatNode::GetIncMode() {
    const MapAccess access(Map());
    Require();
    if (!InheritedValidValues().empty())
        return listIncrement;
    Evaluation evaluation;
    return FloatInc(evaluation) > 0.0 ? fixedIncrement : noIncrement;
}

double CFloatNode::GetInc() {
    const MapAccess access(Map());
    Evaluation evaluation;
    const double inc = FloatInc(evaluation);
    if (!(inc > 0.0))
        throw LOGICAL_ERROR_EXCEPTION("%s has no increment", Label());
    return inc;
}

double_autovector_t CFloatNode::GetListOfValidValues(bool bounded) {
    const MapAccess access(Map());
    Require();
    const ValidValues values = InheritedValidValues();
    if (values.empty())
        return double_autovector_t();
    Evaluation evaluation;
    const double min = bounded ? FloatBound(EBound::Min, evaluation) : std::numeric_limits<double>::lowest();
    const double max = bounded ? FloatBound(EBound::Max, evaluation) : std::numeric_limits<double>::max();
    return double_autovector_t(values.Within(min, max));
}

ERepresentation CFloatNode::GetRepresentation() {
    const MapAccess access(Map());
    return ParseWord<ERepresentation>(InheritedText(ETag::Representation)).value_or(PureNumber);
}

GenICam::gcstring CFloatNode::GetUnit() {
    const MapAccess access(Map());
    return GenICam::gcstring(InheritedText(ETag::Unit));
}

EDisplayNotation CFloatNode::GetDisplayNotation() {
    const MapAccess access(Map());
    return ParseWord<EDisplayNotation>(InheritedText(ETag::DisplayNotation)).value_or(fnAutomatic);
}

std::int64_t CFloatNode::GetDisplayPrecision() {
    const MapAccess access(Map());
    return ParseInteger(InheritedText(ETag::DisplayPrecision)).value_or(kDefaultPrecision);
}

void CFloatNode::ImposeMin(double value) {
    Map().Change(this, [&] {
        Require();
        if (m_limits == nullptr)
            m_limits = Map().Memory().New<FloatLimits>();
        m_limits->imposedMin = value;
        Map().Changed(*this);
    });
}

void CFloatNode::ImposeMax(double value) {
    Map().Change(this, [&] {
        Require();
        if (m_limits == nullptr)
            m_limits = Map().Memory().New<FloatLimits>();
        m_limits->imposedMax = value;
        Map().Changed(*this);
    });
}

// --- IValue ---

GenICam::gcstring CFloatNode::ToString(bool verify, bool ignoreCache) {
    return FloatToText(GetValue(verify, ignoreCache), GetDisplayNotation(), GetDisplayPrecision());
}

void CFloatNode::FromString(const GenICam::gcstring& text, bool verify) {
    const auto value = ParseFloat(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("%s: '%s' is no number", Label(), text);
    SetValue(*value, verify);
}

// --- Evaluation ---

void CFloatNode::Bind() {
    FloatLimits limits;
    limits.min = BindOperand<double>(*this, ETag::Min, ETag::pMin);
    limits.max = BindOperand<double>(*this, ETag::Max, ETag::pMax);
    limits.inc = BindOperand<double>(*this, ETag::Inc, ETag::pInc);
    if (const Property* set = Find(ETag::ValidValueSet))
        limits.validValues = Map().Memory().Copy(ParseList<double>(TextOf(*set)));
    if (limits.min.isGiven || limits.max.isGiven || limits.inc.isGiven || !limits.validValues.empty())
        m_limits = Map().Memory().New<FloatLimits>(limits);
}

double CFloatNode::ReadFloatBound(EBound bound, Evaluation& evaluation) {
    if (m_limits == nullptr)
        return OwnBound(bound, evaluation);
    const Operand<double>& operand = bound == EBound::Min ? m_limits->min : m_limits->max;
    const double value = operand.isGiven ? operand.Read(evaluation) : OwnBound(bound, evaluation);
    return bound == EBound::Min ? std::max(value, m_limits->imposedMin) : std::min(value, m_limits->imposedMax);
}

double CFloatNode::ReadFloatInc(Evaluation& evaluation) {
    return m_limits != nullptr && m_limits->inc.isGiven ? m_limits->inc.Read(evaluation) : OwnInc(evaluation);
}

double CFloatNode::OwnBound(EBound bound, Evaluation& evaluation) {
    return CNode::ReadFloatBound(bound, evaluation);
}

double CFloatNode::OwnInc(Evaluation&) {
    return 0.0;
}

ValidValues CFloatNode::OwnValidValues() const {
    return m_limits != nullptr ? ValidValues{{}, m_limits->validValues, m_limits->inc.isGiven} : ValidValues();
}

// NaN is in no range.
void CFloatNode::CheckFloat(double value, Evaluation& evaluation) {
    const double min = FloatBound(EBound::Min, evaluation);
    if (!(value >= min))
        throw OUT_OF_RANGE_EXCEPTION("%s: value %g must not be smaller than %g", Label(), value, min);
    const double max = FloatBound(EBound::Max, evaluation);
    if (!(value <= max))
        throw OUT_OF_RANGE_EXCEPTION("%s: value %g must not be larger than %g", Label(), value, max);
    CheckIncrement(value, min, evaluation);
}

void CFloatNode::CheckIncrement(double value, double min, Evaluation& evaluation) {
    if (m_limits != nullptr && !m_limits->validValues.empty()) {
        const auto& values = m_limits->validValues;
        if (std::find(values.begin(), values.end(), value) == values.end())
            throw OUT_OF_RANGE_EXCEPTION("%s: value %g is not one of the valid values", Label(), value);
        return;
    }
    const double inc = FloatInc(evaluation);
    const double steps = inc > 0.0 ? (value - min) / inc : 0.0;
    if (std::isfinite(steps) && std::fabs(steps - std::round(steps)) > kGridTolerance)
        throw OUT_OF_RANGE_EXCEPTION("%s: value %g must be %g plus a multiple of %g", Label(), value, min, inc);
}

// --- Float ---

double CFloat::ReadFloat(Evaluation& evaluation) {
    return Source().Read(*this, evaluation);
}

void CFloat::WriteFloat(double value, Evaluation& evaluation) {
    Source().Write(*this, value, evaluation);
}

double CFloat::OwnBound(EBound bound, Evaluation& evaluation) {
    CNode* target = Source().Target(*this, evaluation);
    return target != nullptr ? target->FloatBound(bound, evaluation) : CFloatNode::OwnBound(bound, evaluation);
}

// An integer behind the node rounds what it gets: steps of 1 are no increment of the number.
double CFloat::OwnInc(Evaluation& evaluation) {
    CNode* target = Source().Target(*this, evaluation);
    const double inc = target != nullptr ? target->FloatInc(evaluation) : 0.0;
    return target != nullptr && target->Number() == ENumber::Integer && inc <= 1.0 ? 0.0 : inc;
}

Waiting CFloat::NeedBehind(EPart part) {
    return {IsLimit(part) && HasLimits() ? nullptr : Source().OnlyTarget(), part};
}

CNode* CFloat::Appearance() {
    return Source().Appearance();
}

}  // namespace GenApi
