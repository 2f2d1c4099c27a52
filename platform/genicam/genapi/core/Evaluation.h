/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What one evaluation of a node carries from node to node
 */
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace GenApi {

class CNode;
class Descent;
struct Frame;

/// State of one read or write on its way through the nodes.
struct Evaluation {
    bool ignoreCache = false;    ///< ask the device although the value is known
    bool verify = false;         ///< check ranges on the way
    bool cacheable = true;       ///< cleared by whatever may not be kept
    bool isPassing = false;      ///< what is written starts something and does not stay, as a command
    Frame* top = nullptr;        ///< the innermost node that is being evaluated
    Descent* descent = nullptr;  ///< the evaluations that wait for this one because they were too deep
    /// How often each node was written, by its number; only where a value is written to several nodes.
    std::unordered_map<std::uint32_t, unsigned>* writes = nullptr;

    /// An evaluation on the way of this one that looks at caches and checks nothing.
    Evaluation Inner() const noexcept {
        Evaluation inner;
        inner.top = top;
        inner.descent = descent;
        return inner;
    }
    /// True when nothing but writes waits for what is evaluated next.
    bool IsOutermostRead() const noexcept;
};

/// Sets a member of an evaluation for a while.
template <class T>
class ScopedValue {
public:
    ScopedValue(T& place, T value) : m_place(place), m_before(place) { m_place = value; }
    ~ScopedValue() { m_place = m_before; }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& m_place;
    const T m_before;
};

/// What of a node is being evaluated.
enum class EPart : std::uint8_t { Value, ReadAccess, FullAccess, Min, Max, Inc, Text, Write };

constexpr bool IsLimit(EPart part) noexcept {
    return part == EPart::Min || part == EPart::Max || part == EPart::Inc;
}

/// The flag of a node that says that a part of it is being evaluated, so that a circle is noticed.
constexpr std::uint32_t InFlag(EPart part) noexcept {
    return 1U << static_cast<unsigned>(part);
}
/// The flag that says that a part (Value to Inc) was found out by the access that is going on.
constexpr std::uint32_t MemoFlag(EPart part) noexcept {
    return 1U << (8 + static_cast<unsigned>(part));
}

/// The flag that says that this comes from the device, past all caches (Value, Min, Max and Inc).
constexpr std::uint32_t FreshFlag(EPart part) noexcept {
    return part == EPart::Value ? 1U << 14 : 1U << (12 + static_cast<unsigned>(part));
}

/// Flags of a node's state behind those of the parts.
enum ENodeFlag : std::uint32_t {
    kMemos = 0x3FFU << 8,

    kIntegerValid = 1U << 18,
    kFloatValid = 1U << 19,
    kReadAccessValid = 1U << 20,
    kFullAccessValid = 1U << 21,
    kMinValid = 1U << 22,
    kMaxValid = 1U << 23,
    kIncValid = 1U << 24,
    // The same in the debug mode that compares caches with the device: known, but to be looked up all the same.
    kIntegerChecked = 1U << 25,
    kFloatChecked = 1U << 26,
    kValueCached = kIntegerValid | kFloatValid | kIntegerChecked | kFloatChecked,
    kCached = kValueCached | kReadAccessValid | kFullAccessValid | kMinValid | kMaxValid | kIncValid,

    kBound = 1U << 27,
    kBroken = 1U << 28,
    kHasCallback = 1U << 29,
};
static_assert(FreshFlag(EPart::Inc) == 1U << 17);

/// A part of a node that waits for another one.
struct Waiting {
    CNode* node = nullptr;
    EPart part = EPart::Value;
};

/// Thrown when too many parts wait for one another: what has to be found out first. It is none of GenICam's exceptions,
/// so that nobody takes it for one between the node that is too deep and the outermost read, where Descent handles it.
struct TooDeep {
    Waiting wanted;
    bool ignoreCache;
    std::vector<Waiting> path;  ///< what waits for it, the innermost first
};

/// Marks a node as being evaluated for its own lifetime. Throws when it already is (a circle) or when too many nodes
/// wait for one another.
struct Frame {
    Frame(Evaluation& evaluation, CNode& node, EPart part);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    Evaluation& evaluation;
    CNode& node;
    Frame* const below;
    const EPart part;
    const std::uint32_t depth;
    const bool outerCacheable;

private:
    [[noreturn]] void ThrowTooDeep();
};

inline bool Evaluation::IsOutermostRead() const noexcept {
    return top == nullptr || top->part == EPart::Write;
}

/// True when a part of a node waits for this very evaluation.
bool IsWaiting(const Evaluation& evaluation, const CNode& node, EPart part);
/// Makes the nodes of a circle unusable: all of them, so that it does not matter with which one a user began. \a node
/// is the one that was about to be evaluated for the second time.
void BreakCircle(const Evaluation& evaluation, const CNode& node, EPart part);

}  // namespace GenApi
