/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes that compute: IntSwissKnife, SwissKnife, IntConverter, Converter
 */

#include "nodes/FormulaNodes.h"

#include <algorithm>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/NodeMap.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

// A formula of which only the branch that counts has readable variables is readable: the other branch is never taken.
template <class Evaluate>
EAccessMode FormulaAccess(const NodeFormula& formula, Evaluation& evaluation, Evaluate&& evaluate) {
    if (formula.AllReadable(evaluation))
        return RO;
    try {
        evaluate();
        return RO;
    } catch (const GenICam::AccessException&) {
        return NA;
    }
}

}  // namespace

// --- IntSwissKnife ---

void CIntSwissKnife::Bind() {
    CIntegerNode::Bind();
    m_formula = Map().Memory().New<NodeFormula>(*this, ETag::Formula, "", false);
}

std::int64_t CIntSwissKnife::ReadInteger(Evaluation& evaluation) {
    return m_formula->EvaluateInteger(evaluation);
}

EAccessMode CIntSwissKnife::ReadAccess(Evaluation& evaluation, bool) {
    return FormulaAccess(*m_formula, evaluation, [&] { m_formula->EvaluateInteger(evaluation); });
}

// --- SwissKnife ---

void CSwissKnife::Bind() {
    CFloatNode::Bind();
    m_formula = Map().Memory().New<NodeFormula>(*this, ETag::Formula, "", true);
}

double CSwissKnife::ReadFloat(Evaluation& evaluation) {
    return m_formula->EvaluateFloat(evaluation);
}

EAccessMode CSwissKnife::ReadAccess(Evaluation& evaluation, bool) {
    return FormulaAccess(*m_formula, evaluation, [&] { m_formula->EvaluateFloat(evaluation); });
}

// --- Converters ---

ConverterParts::ConverterParts(CNode& owner, bool floating) {
    const Property* behind = owner.Find(ETag::pValue);
    if (behind == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no pValue");
    value = &NumberNodeOf(owner, *behind);
    from = owner.Map().Memory().New<NodeFormula>(owner, ETag::FormulaFrom, "TO", floating);
    // Without a way back the converter can only be read.
    if (owner.Find(ETag::FormulaTo) != nullptr)
        to = owner.Map().Memory().New<NodeFormula>(owner, ETag::FormulaTo, "FROM", floating);
    slope = ParseWord<ESlope>(owner.TextOf(ETag::Slope)).value_or(Automatic);
}

EAccessMode ConverterParts::Access(CNode&, Evaluation& evaluation, bool withLocks) {
    EAccessMode mode = value->Access(evaluation, withLocks);
    if (to == nullptr)
        mode = Combine(mode, RO);
    const bool readable = from->AllReadable(evaluation);
    const bool writable = to == nullptr || to->AllReadable(evaluation);
    if (!readable)
        mode = Combine(mode, WO);
    return writable ? mode : Combine(mode, RO);
}

/**
 * \brief The range of the node behind as the user sees it
 * \param[in] convert Gives the user's value at one end of that range
 * \return Nothing when the range behind says nothing about that of the converter
 *
 * A falling formula turns the range round. Equal values at both ends are neither rising nor falling, and where every
 * value is written as the same one any may be written; where an end can't be converted there is no range either.
 */
template <class T, class Convert>
std::optional<std::pair<T, T>> ConverterParts::Range(Convert&& convert) const {
    if (slope == Varying || (to != nullptr && !to->UsesOwnValue()))
        return std::nullopt;
    try {
        const T first = convert(EBound::Min);
        const T second = convert(EBound::Max);
        if (first == second)
            return std::nullopt;
        return std::minmax(first, second);
    } catch (const GenICam::OutOfRangeException&) {
        return std::nullopt;
    }
}

void CIntConverter::Bind() {
    CIntegerNode::Bind();
    m_parts = Map().Memory().New<ConverterParts>(*this, false);
}

std::int64_t CIntConverter::ReadInteger(Evaluation& evaluation) {
    return m_parts->from->EvaluateInteger(evaluation, m_parts->value->Integer(evaluation));
}

void CIntConverter::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    m_parts->value->AssignInteger(m_parts->to->EvaluateInteger(evaluation, value), evaluation);
}

EAccessMode CIntConverter::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return m_parts->Access(*this, evaluation, withLocks);
}

std::int64_t CIntConverter::OwnBound(EBound bound, Evaluation& evaluation) {
    const auto range = m_parts->Range<std::int64_t>([&](EBound end) {
        return m_parts->from->EvaluateInteger(evaluation, m_parts->value->IntegerBound(end, evaluation));
    });
    if (!range)
        return CIntegerNode::OwnBound(bound, evaluation);
    return bound == EBound::Min ? range->first : range->second;
}

void CConverter::Bind() {
    CFloatNode::Bind();
    m_parts = Map().Memory().New<ConverterParts>(*this, true);
}

double CConverter::ReadFloat(Evaluation& evaluation) {
    return m_parts->from->EvaluateFloat(evaluation, m_parts->value->Float(evaluation));
}

void CConverter::WriteFloat(double value, Evaluation& evaluation) {
    m_parts->value->AssignFloat(m_parts->to->EvaluateFloat(evaluation, value), evaluation);
}

EAccessMode CConverter::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return m_parts->Access(*this, evaluation, withLocks);
}

double CConverter::OwnBound(EBound bound, Evaluation& evaluation) {
    const auto range = m_parts->Range<double>([&](EBound end) {
        return m_parts->from->EvaluateFloat(evaluation, m_parts->value->FloatBound(end, evaluation));
    });
    if (!range)
        return CFloatNode::OwnBound(bound, evaluation);
    return bound == EBound::Min ? range->first : range->second;
}

}  // namespace GenApi
