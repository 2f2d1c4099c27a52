/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where a node's number comes from: a constant or another node
 */
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/Node.h"
#include "schema/Property.h"

namespace GenApi {

/// A number of the description, or the node that has it. T is std::int64_t or double.
template <class T>
struct Operand {
    CNode* node = nullptr;
    T constant{};
    bool isGiven = false;

    T Read(Evaluation& evaluation) const;
    void Write(T value, Evaluation& evaluation);
    EAccessMode Access(Evaluation& evaluation, bool withLocks) const;
};

/// The operand of an element with a constant and of one with a reference, such as Min and pMin; not given when the node
/// has neither. Throws when the text is no number or the node has none.
template <class T>
Operand<T> BindOperand(const CNode& owner, ETag constant, ETag reference);

/// The number that an element's text gives; throws when it is none. What is too large becomes the largest number with
/// \a saturates.
template <class T>
T NumberOf(const CNode& owner, const Property& property, bool saturates = false);

/// The node that a reference names; throws when it has no number.
CNode& NumberNodeOf(const CNode& owner, const Property& property);

/// Numbers separated by semicolons, as a valid value set has them; throws when one is none.
template <class T>
std::vector<T> ParseList(std::string_view text);

/// The value of a node: a constant, another node with copies, or one of several by an index. Lies in the map's arena.
template <class T>
class ValueSource {
public:
    explicit ValueSource(const CNode& owner);
    /// The source of a node, in its map's memory; throws when the description gives none.
    static ValueSource& Require(CNode& owner);

    T Read(CNode& owner, Evaluation& evaluation);
    void Write(CNode& owner, T value, Evaluation& evaluation);
    EAccessMode Access(Evaluation& evaluation, bool withLocks);
    /// The node that the value comes from now, null for a constant.
    CNode* Target(CNode& owner, Evaluation& evaluation);
    /// The node that the value comes from whatever an index says, null when there is none.
    CNode* OnlyTarget() const noexcept { return m_index == nullptr ? m_value.node : nullptr; }
    /// The node that the value comes from, null also where it can't be told now.
    CNode* Appearance();

private:
    struct Indexed {
        std::int64_t index;
        Operand<T> operand;
    };

    bool IsGiven() const noexcept { return m_value.isGiven || m_index != nullptr; }
    void WriteAll(CNode& owner, Operand<T>& current, T value, Evaluation& evaluation);
    void BindIndexed(const CNode& owner);
    Operand<T>* Current(Evaluation& evaluation);
    Operand<T>& Required(CNode& owner, Evaluation& evaluation);

    Operand<T> m_value;
    CNode* m_index = nullptr;
    std::span<Indexed> m_indexed;
    Operand<T> m_default;
    std::span<CNode*> m_copies;
};

extern template struct Operand<std::int64_t>;
extern template struct Operand<double>;
extern template class ValueSource<std::int64_t>;
extern template class ValueSource<double>;

}  // namespace GenApi
