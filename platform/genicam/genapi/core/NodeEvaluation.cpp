/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Evaluation of a node: access rules, writes, texts
 */

#include <limits>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "GenApi/IValue.h"
#include "core/MapAccess.h"
#include "core/Node.h"
#include "core/NodeMap.h"
#include "formula/FormulaArithmetic.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

constexpr int kMaxSteps = 100;
// How often one value may reach a node through copies.
constexpr unsigned kMostWrites = 16;

}  // namespace

void CNode::ThrowUnusable() const {
    throw ACCESS_EXCEPTION("%s is not implemented: %s", Label(), m_map->ReasonOf(*this));
}

bool CNode::BindNow() {
    Set(kBound);
    if (!Has(kBroken)) {
        try {
            Bind();
        } catch (const GenICam::GenericException& exception) {
            Break(exception.GetDescription());
        } catch (...) {
            Clear(kBound);  // there was no memory: the next attempt begins anew
            throw;
        }
    }
    return !Has(kBroken);
}

/**
 * \brief Make a node unusable because its description makes no sense
 * \param[in] reason What is wrong, for messages
 */
void CNode::Break(const std::string& reason) {
    if (Has(kBroken))
        return;
    Set(kBroken);
    Clear(kCached | kMemos);
    m_map->SetReason(*this, reason);
    m_map->Warn(MakeWarning(wkUnusableNode, "not implemented: " + reason));
}

bool CNode::Truth(Evaluation& evaluation) {
    return Number() == ENumber::Float ? Float(evaluation) != 0.0 : Integer(evaluation) != 0;
}

EAccessMode CNode::ComputeAccess(Evaluation& evaluation, bool withLocks) {
    if (!Usable())
        return NI;
    const bool hasRules = Is(kHasAccessRules);
    const Condition implemented = hasRules ? Rule(ETag::pIsImplemented, evaluation) : Condition::None;
    if (implemented == Condition::False)
        return NI;
    EAccessMode mode = ReadAccess(evaluation, withLocks);
    if (hasRules) {
        if (const Property* imposed = Find(ETag::ImposedAccessMode))
            mode = Combine(mode, ParseWord<EAccessMode>(TextOf(*imposed)).value_or(RW));
        const Condition available = Rule(ETag::pIsAvailable, evaluation);
        if (implemented == Condition::Unknown || available == Condition::False || available == Condition::Unknown)
            mode = Combine(mode, NA);
        if (withLocks && IsWritable(mode)) {
            const Condition locked = Rule(ETag::pIsLocked, evaluation);
            if (locked == Condition::True || locked == Condition::Unknown)
                mode = Combine(mode, RO);
        }
    }
    return Combine(mode, m_userAccess);
}

// A rule that can't be evaluated is Unknown: the user is then told that the node is not available. What the device or
// the line to it throws is no matter of the rule and passes.
CNode::Condition CNode::Rule(ETag tag, Evaluation& evaluation) const {
    const Property* property = Find(tag);
    if (property == nullptr)
        return Condition::None;
    CNode* rule = NodeOf(*property);
    try {
        if (rule == nullptr || rule->Number() == ENumber::None || !IsReadable(rule->Access(evaluation, false)))
            return Condition::Unknown;
        return rule->Truth(evaluation) ? Condition::True : Condition::False;
    } catch (const GenICam::OutOfRangeException&) {
        return Condition::Unknown;
    } catch (const GenICam::InvalidArgumentException&) {
        return Condition::Unknown;
    } catch (const GenICam::LogicalErrorException&) {
        return Condition::Unknown;
    } catch (const GenICam::AccessException&) {
        return Condition::Unknown;
    }
}

bool CNode::IsPollingBlocked() {
    Evaluation evaluation;
    return Rule(ETag::pBlockPolling, evaluation) == Condition::True;
}

// Copies of copies may lead to one node on more ways than there are nodes.
void CNode::CountWrite(const Evaluation& evaluation) const {
    if (evaluation.writes != nullptr && ++(*evaluation.writes)[m_index] > kMostWrites)
        throw LOGICAL_ERROR_EXCEPTION("%s is written again and again for one value", Label());
}

void CNode::AssignInteger(std::int64_t value, Evaluation& evaluation) {
    if (Number() == ENumber::Float)
        return AssignFloat(static_cast<double>(value), evaluation);
    CountWrite(evaluation);
    const Frame frame(evaluation, *this, EPart::Write);
    Require();
    if (evaluation.verify)
        CheckInteger(value, evaluation);
    WriteInteger(value, evaluation);
    if (evaluation.verify)
        CheckError();
}

void CNode::AssignFloat(double value, Evaluation& evaluation) {
    if (Number() == ENumber::Integer)
        return AssignInteger(RoundToInteger(value), evaluation);
    CountWrite(evaluation);
    const Frame frame(evaluation, *this, EPart::Write);
    Require();
    if (evaluation.verify)
        CheckFloat(value, evaluation);
    WriteFloat(value, evaluation);
    if (evaluation.verify)
        CheckError();
}

std::string CNode::Text(Evaluation& evaluation) {
    const Frame frame(evaluation, *this, EPart::Text);
    Require();
    return ReadText(evaluation);
}

void CNode::AssignText(const std::string& text, Evaluation& evaluation) {
    const Frame frame(evaluation, *this, EPart::Write);
    Require();
    WriteText(text, evaluation);
    if (evaluation.verify)
        CheckError();
}

std::int64_t CNode::UsersInteger(bool verify, bool ignoreCache) {
    const MapAccess access(*m_map);
    RequireReadable();
    Evaluation evaluation;
    evaluation.ignoreCache = ignoreCache;
    const std::int64_t value = Integer(evaluation);
    if (verify)
        CheckInteger(value, evaluation);
    return value;
}

void CNode::SetUsersInteger(std::int64_t value, bool verify) {
    m_map->Change(this, [&] {
        RequireWritable();
        Evaluation evaluation;
        evaluation.verify = verify;
        AssignInteger(value, evaluation);
    });
}

bool CNode::IsValueCached() const {
    const AutoLock lock(m_map->GetLock());
    return Has(kValueCached) && Has(kReadAccessValid);
}

EAccessMode CNode::FullAccess() const {
    Evaluation evaluation;
    return const_cast<CNode*>(this)->Access(evaluation, true);
}

void CNode::RequireReadable() {
    Evaluation evaluation;
    if (!IsReadable(Access(evaluation, false)))
        ThrowAccess("readable");
}

void CNode::RequireWritable() {
    if (!IsWritable(FullAccess()))
        ThrowAccess("writable");
}

void CNode::ThrowAccess(const char* what) const {
    const std::string& reason = m_map->ReasonOf(*this);
    if (!reason.empty())
        throw ACCESS_EXCEPTION("%s is not %s: %s", Label(), what, reason);
    throw ACCESS_EXCEPTION("%s is not %s", Label(), what);
}

/**
 * \brief Ask the error node after a change
 * \throw RuntimeException The device reports an error
 */
void CNode::CheckError() {
    if (!Is(kHasErrorNode))
        return;
    const Property* property = Find(ETag::pError);
    CNode* error = property != nullptr ? NodeOf(*property) : nullptr;
    if (error == nullptr || error->Number() == ENumber::None)
        return;
    m_map->Spread();
    Evaluation evaluation;
    evaluation.ignoreCache = true;
    const std::int64_t code = error->Integer(evaluation);
    if (code == 0)
        return;
    IValue* value = error->Value();
    const GenICam::gcstring text = value != nullptr ? value->ToString() : GenICam::gcstring();
    throw RUNTIME_EXCEPTION("%s: the device reports error %I64d (%s)", Label(), code, text);
}

// What a kind of node does not have.

std::int64_t CNode::ReadInteger(Evaluation&) {
    throw LOGICAL_ERROR_EXCEPTION("%s has no number", Label());
}
double CNode::ReadFloat(Evaluation& evaluation) {
    return static_cast<double>(ReadInteger(evaluation));
}
void CNode::WriteInteger(std::int64_t, Evaluation&) {
    ThrowAccess("writable");
}
void CNode::WriteFloat(double, Evaluation&) {
    ThrowAccess("writable");
}
std::string CNode::ReadText(Evaluation&) {
    throw LOGICAL_ERROR_EXCEPTION("%s has no text", Label());
}
void CNode::WriteText(const std::string&, Evaluation&) {
    ThrowAccess("writable");
}
std::int64_t CNode::ReadIntegerBound(EBound bound, Evaluation&) {
    return bound == EBound::Min ? INT64_MIN : INT64_MAX;
}
double CNode::ReadFloatBound(EBound bound, Evaluation&) {
    return bound == EBound::Min ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
}
std::int64_t CNode::ReadIntegerInc(Evaluation&) {
    return 1;
}
double CNode::ReadFloatInc(Evaluation&) {
    return 0.0;
}
EAccessMode CNode::ReadAccess(Evaluation&, bool) {
    return RO;
}
void CNode::CheckInteger(std::int64_t, Evaluation&) {}
void CNode::CheckFloat(double, Evaluation&) {}
ValidValues CNode::InheritedValidValues() {
    CNode* node = this;
    for (int step = 0; step < kMaxSteps && node != nullptr && node->Usable(); ++step) {
        const ValidValues values = node->OwnValidValues();
        if (!values.empty() || values.isFinal)
            return values;
        node = node->Appearance();
    }
    return {};
}

void CNode::CheckValue(std::int64_t value, Evaluation& evaluation) {
    Require();
    if (Number() == ENumber::Float)
        CheckFloat(static_cast<double>(value), evaluation);
    else
        CheckInteger(value, evaluation);
}

void CNode::CheckValue(double value, Evaluation& evaluation) {
    Require();
    if (Number() == ENumber::Float)
        CheckFloat(value, evaluation);
    else
        CheckInteger(RoundToInteger(value), evaluation);
}

// Step by step and not for ever: a circle of nodes has no unit, however often one goes round.
std::string_view CNode::InheritedText(ETag tag) {
    CNode* node = this;
    for (int step = 0; step < kMaxSteps && node != nullptr; ++step) {
        const std::string_view given = node->TextOf(tag);
        if (!given.empty())
            return given;
        node = node->Usable() ? node->Appearance() : nullptr;
    }
    return {};
}

}  // namespace GenApi
