/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Marks nodes that are being evaluated, so that circles end
 */

#include "core/Evaluation.h"

#include "Base/GCException.h"
#include "core/Descent.h"
#include "core/Node.h"

namespace GenApi {

namespace {
// Shallow enough for a thread with a small stack; what is deeper is evaluated from below.
constexpr std::uint32_t kMaxDepth = 200;

// Reads on the way of a write are counted from it.
std::uint32_t DepthBelow(const Frame* top, EPart part) noexcept {
    const bool begins = top == nullptr || (top->part == EPart::Write && part != EPart::Write);
    return begins ? 1 : top->depth + 1;
}
}  // namespace

Frame::Frame(Evaluation& owner, CNode& evaluated, EPart purpose)
    : evaluation(owner),
      node(evaluated),
      below(owner.top),
      part(purpose),
      depth(DepthBelow(owner.top, purpose)),
      outerCacheable(owner.cacheable) {
    if (IsWaiting(owner, node, part)) {
        BreakCircle(owner, node, part);
        throw LOGICAL_ERROR_EXCEPTION("%s is part of a circle", node.Label());
    }
    if (depth > kMaxDepth)
        ThrowTooDeep();
    node.Set(InFlag(part));
    evaluation.top = this;
    evaluation.cacheable = true;
}

Frame::~Frame() {
    node.Clear(InFlag(part));
    evaluation.top = below;
    evaluation.cacheable = evaluation.cacheable && outerCacheable;
}

// Texts and writes pass through a node without a trace in it that could be come back to.
void Frame::ThrowTooDeep() {
    if (part == EPart::Write || part == EPart::Text)
        throw LOGICAL_ERROR_EXCEPTION("%s: too many nodes depend on one another", node.Label());
    TooDeep deep{{&node, part}, evaluation.ignoreCache, {}};
    const Frame* frame = below;
    for (std::uint32_t count = depth - 1; count > 0; --count, frame = frame->below)
        deep.path.push_back({&frame->node, frame->part});
    throw deep;
}

bool IsWaiting(const Evaluation& evaluation, const CNode& node, EPart part) {
    return node.Has(InFlag(part)) || (evaluation.descent != nullptr && evaluation.descent->IsWaiting(node, part));
}

void BreakCircle(const Evaluation& evaluation, const CNode& node, EPart part) {
    constexpr const char* kReason = "is part of a circle of values or access rules";
    for (const Frame* frame = evaluation.top; frame != nullptr; frame = frame->below) {
        frame->node.Break(kReason);
        if (&frame->node == &node && frame->part == part)
            return;
    }
    if (evaluation.descent != nullptr)
        evaluation.descent->BreakUntil(node, part, kReason);
}

}  // namespace GenApi
