/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is known of a node: its caches, and what one access finds out once
 */

#include <cmath>
#include <exception>
#include <memory>
#include <utility>

#include "Base/GCException.h"
#include "core/Descent.h"
#include "core/Node.h"
#include "core/NodeMap.h"
#include "formula/FormulaArithmetic.h"

namespace GenApi {

namespace {

[[noreturn]] void ThrowStale(const CNode& node) {
    throw LOGICAL_ERROR_EXCEPTION("%s: the cached value differs from the device", node.Label());
}

bool Differ(std::int64_t left, std::int64_t right) noexcept {
    return left != right;
}
bool Differ(double left, double right) noexcept {
    return left != right && !std::isnan(left);
}

// The flag that says that a part is known until something changes; in the debug mode of caches another one, so that it
// is found out again and compared. Limits are not compared.
std::uint32_t CacheFlag(EPart part, ENumber number, bool checksCaches) noexcept {
    const bool isFloat = number == ENumber::Float;
    switch (part) {
        case EPart::Value:
            return checksCaches ? (isFloat ? kFloatChecked : kIntegerChecked) : (isFloat ? kFloatValid : kIntegerValid);
        case EPart::Min:
            return checksCaches ? 0U : kMinValid;
        case EPart::Max:
            return checksCaches ? 0U : kMaxValid;
        case EPart::Inc:
            return checksCaches ? 0U : kIncValid;
        case EPart::ReadAccess:
            return kReadAccessValid;
        default:
            return kFullAccessValid;
    }
}

EPart PartOf(EBound bound) noexcept {
    return bound == EBound::Min ? EPart::Min : EPart::Max;
}

}  // namespace

bool CNode::Remembers(EPart part, const Evaluation& evaluation) const noexcept {
    return Has(MemoFlag(part)) && m_epoch == m_map->Memories().Epoch() &&
           (!evaluation.ignoreCache || Has(FreshFlag(part)));
}

/**
 * \brief Note that a part is known
 *
 * What may be cached need not be remembered for this access, unless it is asked for past the cache.
 */
void CNode::MarkKnown(EPart part, const Evaluation& evaluation) noexcept {
    const std::uint32_t flag = CacheFlag(part, m_number, m_map->ChecksCaches());
    Clear(flag);
    if (evaluation.cacheable) {
        Set(flag);
        m_map->Dependencies().Learned();
    }
    if (Has(flag & ~(kIntegerChecked | kFloatChecked)) && !evaluation.ignoreCache)
        return;
    AccessMemory& memory = m_map->Memories();
    memory.Use();
    if (m_epoch != memory.Epoch())
        Clear(kMemos);
    m_epoch = memory.Epoch();
    Set(MemoFlag(part) | (evaluation.ignoreCache ? FreshFlag(part) : 0U));
}

CNode::Known& CNode::PlaceOf(EPart part) {
    if (part == EPart::Value)
        return m_cache;
    if (m_knownLimits == nullptr)
        m_knownLimits = m_map->Memory().New<KnownLimits>();
    return m_knownLimits->values[static_cast<unsigned>(part) - static_cast<unsigned>(EPart::Min)];
}

template <class T>
void CNode::Keep(EPart part, const Evaluation& evaluation, T value) {
    T& place = PlaceOf(part).As<T>();
    const bool isCompared = part == EPart::Value && Has(kIntegerChecked | kFloatChecked) && !evaluation.ignoreCache;
    if (isCompared && Differ(value, place))
        ThrowStale(*this);
    place = value;
    MarkKnown(part, evaluation);
}

/**
 * \brief Have a read evaluated, however many nodes it goes through
 *
 * Only the outermost read of an access does that: the others are evaluated where they are.
 */
template <class Compute>
auto CNode::FromBelow(const Evaluation& evaluation, Compute&& compute) {
    if (evaluation.descent != nullptr || !evaluation.IsOutermostRead())
        return compute();
    std::unique_ptr<Descent> descent;
    for (;;) {
        try {
            return compute();
        } catch (TooDeep& deep) {
            if (!descent)
                descent = std::make_unique<Descent>(*m_map);
            descent->Run(std::move(deep));
        }
    }
}

template <class T, class Compute>
T CNode::Evaluate(EPart part, Evaluation& evaluation, Compute&& compute) {
    if (Remembers(part, evaluation)) {
        evaluation.cacheable = evaluation.cacheable && Has(CacheFlag(part, m_number, m_map->ChecksCaches()));
        return PlaceOf(part).As<T>();
    }
    m_map->Memories().ThrowFailure(m_index, part);
    m_map->CountWork(*this);
    return FromBelow(evaluation, [&] {
        const Frame frame(evaluation, *this, part);
        try {
            Require();
            const T value = compute();
            Keep(part, evaluation, value);
            return value;
        } catch (const GenICam::GenericException&) {
            m_map->Memories().KeepFailure(m_index, part, std::current_exception());
            throw;
        }
    });
}

std::int64_t CNode::ComputeInteger(Evaluation& evaluation) {
    if (m_number == ENumber::Float)
        return RoundToInteger(Float(evaluation));
    return Evaluate<std::int64_t>(EPart::Value, evaluation, [&] { return ReadInteger(evaluation); });
}

double CNode::ComputeFloat(Evaluation& evaluation) {
    if (m_number == ENumber::Integer)
        return static_cast<double>(Integer(evaluation));
    return Evaluate<double>(EPart::Value, evaluation, [&] { return ReadFloat(evaluation); });
}

std::int64_t CNode::IntegerBound(EBound bound, Evaluation& evaluation) {
    if (m_number == ENumber::Float)
        return SaturateToInteger(FloatBound(bound, evaluation));
    const EPart part = PartOf(bound);
    if (Has(bound == EBound::Min ? kMinValid : kMaxValid) && !evaluation.ignoreCache)
        return PlaceOf(part).integer;
    return Evaluate<std::int64_t>(part, evaluation, [&] { return ReadIntegerBound(bound, evaluation); });
}

double CNode::FloatBound(EBound bound, Evaluation& evaluation) {
    if (m_number != ENumber::Float)
        return static_cast<double>(IntegerBound(bound, evaluation));
    const EPart part = PartOf(bound);
    if (Has(bound == EBound::Min ? kMinValid : kMaxValid) && !evaluation.ignoreCache)
        return PlaceOf(part).number;
    return Evaluate<double>(part, evaluation, [&] { return ReadFloatBound(bound, evaluation); });
}

std::int64_t CNode::IntegerInc(Evaluation& evaluation) {
    if (m_number == ENumber::Float)
        return RoundToInteger(FloatInc(evaluation));
    if (Has(kIncValid) && !evaluation.ignoreCache)
        return PlaceOf(EPart::Inc).integer;
    return Evaluate<std::int64_t>(EPart::Inc, evaluation, [&] { return ReadIntegerInc(evaluation); });
}

double CNode::FloatInc(Evaluation& evaluation) {
    if (m_number != ENumber::Float)
        return static_cast<double>(IntegerInc(evaluation));
    if (Has(kIncValid) && !evaluation.ignoreCache)
        return PlaceOf(EPart::Inc).number;
    return Evaluate<double>(EPart::Inc, evaluation, [&] { return ReadFloatInc(evaluation); });
}

// An access mode that depends on itself is none: whoever is part of such a circle is not implemented.
EAccessMode CNode::FindAccess(Evaluation& evaluation, bool withLocks) {
    const EPart part = withLocks ? EPart::FullAccess : EPart::ReadAccess;
    const ScopedValue ignoreCache(evaluation.ignoreCache, false);
    if (Remembers(part, evaluation)) {
        evaluation.cacheable = false;
        return withLocks ? m_fullAccess : m_readAccess;
    }
    m_map->Memories().ThrowFailure(m_index, part);
    if (IsWaiting(evaluation, *this, part)) {
        BreakCircle(evaluation, *this, part);
        return NI;
    }
    m_map->CountWork(*this);
    return FromBelow(evaluation, [&] { return FindAccessHere(evaluation, part); });
}

EAccessMode CNode::FindAccessHere(Evaluation& evaluation, EPart part) {
    const Frame frame(evaluation, *this, part);
    const bool withLocks = part == EPart::FullAccess;
    try {
        const EAccessMode computed = ComputeAccess(evaluation, withLocks);
        const EAccessMode mode = Has(kBroken) ? NI : computed;
        if (withLocks)
            m_fullAccess = mode;
        else
            m_readAccess = mode;
        MarkKnown(part, evaluation);
        return mode;
    } catch (const GenICam::GenericException&) {
        m_map->Memories().KeepFailure(m_index, part, std::current_exception());
        throw;
    }
}

bool CNode::Knows(EPart part, const Evaluation& evaluation) const noexcept {
    const bool isCached = Has(CacheFlag(part, m_number, false));
    return (isCached && !evaluation.ignoreCache) || Remembers(part, evaluation);
}

// In the order in which parts are asked for: what is not known to be asked for is not asked for in advance.
Waiting CNode::Need(EPart part) {
    if (!Usable())
        return {};
    const bool isAccess = part == EPart::ReadAccess || part == EPart::FullAccess;
    const Property* rule = isAccess && Is(kHasAccessRules) ? Find(ETag::pIsImplemented) : nullptr;
    if (rule != nullptr)
        return {NodeOf(*rule), EPart::ReadAccess};
    return NeedBehind(part);
}

void CNode::FindOut(EPart part, Evaluation& evaluation) {
    switch (part) {
        case EPart::Value:
            if (m_number == ENumber::Float)
                Float(evaluation);
            else
                Integer(evaluation);
            return;
        case EPart::ReadAccess:
        case EPart::FullAccess:
            Access(evaluation, part == EPart::FullAccess);
            return;
        case EPart::Min:
        case EPart::Max:
            FloatBound(part == EPart::Min ? EBound::Min : EBound::Max, evaluation);
            return;
        default:
            FloatInc(evaluation);
    }
}

}  // namespace GenApi
