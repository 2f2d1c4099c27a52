/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What one evaluation of a node carries from node to node
 */
#pragma once

#include <cstdint>

namespace GenApi {

class CNode;
struct Frame;

/// State of one read or write on its way through the nodes.
struct Evaluation {
    bool ignoreCache = false;  ///< ask the device although the value is known
    bool verify = false;       ///< check ranges on the way
    bool cacheable = true;     ///< cleared by whatever may not be kept
    bool isPassing = false;    ///< what is written starts something and does not stay, as a command
    Frame* top = nullptr;      ///< the innermost node that is being evaluated
};

/// Sets a flag of an evaluation for a while.
class FlagScope {
public:
    FlagScope(bool& flag, bool value) : m_flag(flag), m_before(flag) { m_flag = value; }
    ~FlagScope() { m_flag = m_before; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& m_flag;
    const bool m_before;
};

/// What of a node is being evaluated; a bit of its flags, so that a circle is noticed.
enum ENodeFlag : std::uint32_t {
    kInValue = 1U << 0,
    kInReadAccess = 1U << 1,
    kInFullAccess = 1U << 2,
    kInMin = 1U << 3,
    kInMax = 1U << 4,
    kInInc = 1U << 5,
    kInWrite = 1U << 6,
    kInBytes = 1U << 7,

    kIntegerValid = 1U << 8,
    kFloatValid = 1U << 9,
    kReadAccessValid = 1U << 10,
    kFullAccessValid = 1U << 11,
    // The same in the debug mode that compares caches with the device: known, but to be looked up all the same.
    kIntegerChecked = 1U << 20,
    kFloatChecked = 1U << 21,
    kCached = kIntegerValid | kFloatValid | kReadAccessValid | kFullAccessValid | kIntegerChecked | kFloatChecked,

    kBound = 1U << 12,
    kBroken = 1U << 13,
    kHasCallback = 1U << 15,
};

/// What is known of a node once it is loaded and never changes: it may be asked without the lock.
enum ENodeTrait : std::uint32_t {
    kReplaced = 1U << 0,        ///< another node of its name stands in its place
    kIsFeature = 1U << 1,       ///< categories lead to it from Root
    kUsesPolling = 1U << 2,     ///< it has a polling time
    kHasAccessRules = 1U << 3,  ///< it has rules about its access mode
    kIsRegister = 1U << 4,
    kHasErrorNode = 1U << 5,  ///< it names a node that tells what the device thinks of a write
};

/// Marks a node as being evaluated for its own lifetime. Throws when it already is (a circle) or when too many nodes
/// wait for one another.
struct Frame {
    Frame(Evaluation& evaluation, CNode& node, std::uint32_t what);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    Evaluation& evaluation;
    CNode& node;
    Frame* const below;
    const std::uint32_t what;
    const std::uint32_t depth;
    const bool outerCacheable;
};

void BreakCircle(Frame* top, CNode& node, std::uint32_t what);

}  // namespace GenApi
