/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Marks nodes that are being evaluated, so that circles end
 */

#include "map/Evaluation.h"

#include "Base/GCException.h"
#include "nodes/Node.h"

namespace GenApi {

namespace {
// Deeper than any description of a camera, shallow enough for a thread with a small stack.
constexpr std::uint32_t kMaxDepth = 200;
}  // namespace

Frame::Frame(Evaluation& owner, CNode& evaluated, std::uint32_t purpose)
    : evaluation(owner),
      node(evaluated),
      below(owner.top),
      what(purpose),
      depth(owner.top != nullptr ? owner.top->depth + 1 : 1),
      outerCacheable(owner.cacheable) {
    if (node.Has(what)) {
        BreakCircle(owner.top, node, what);
        throw LOGICAL_ERROR_EXCEPTION("%s is part of a circle", node.Label());
    }
    if (depth > kMaxDepth)
        throw LOGICAL_ERROR_EXCEPTION("%s: too many nodes depend on one another", node.Label());
    node.Set(what);
    evaluation.top = this;
    evaluation.cacheable = true;
}

Frame::~Frame() {
    node.Clear(what);
    evaluation.top = below;
    evaluation.cacheable = evaluation.cacheable && outerCacheable;
}

/**
 * \brief Make the nodes of a circle unusable
 * \param[in] top The innermost evaluation
 * \param[in] node The node that was about to be evaluated for the second time
 *
 * All of them, so that it does not matter with which one a user began.
 */
void BreakCircle(Frame* top, CNode& node, std::uint32_t what) {
    for (Frame* frame = top; frame != nullptr; frame = frame->below) {
        frame->node.Break("is part of a circle of values or access rules");
        if (&frame->node == &node && frame->what == what)
            return;
    }
}

}  // namespace GenApi
