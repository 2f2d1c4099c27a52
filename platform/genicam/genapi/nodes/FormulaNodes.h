/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes that compute: IntSwissKnife, SwissKnife, IntConverter, Converter
 */
#pragma once

#include <optional>
#include <utility>

#include "formula/FormulaProgram.h"
#include "nodes/FloatNode.h"
#include "nodes/IntegerNode.h"

namespace GenApi {

/// A variable of a formula: a node and what of it is meant.
struct FormulaVariable {
    enum class Part : std::uint8_t { Value, Min, Max, Inc, Entry, Own };

    CNode* node = nullptr;
    Part part = Part::Value;
    std::int64_t entry = 0;  ///< of an entry: its value
};

/// A compiled formula with its variables. The compiled formula lies in the description, the same for all maps; this,
/// with the nodes of one map, in the map's arena.
class NodeFormula {
public:
    /// Compiles the formula in an element of a node. \a ownName is the variable for the value that is converted (FROM
    /// or TO), empty for none. Throws when the formula does not parse.
    NodeFormula(CNode& owner, ETag element, std::string_view ownName, bool floating);

    std::int64_t EvaluateInteger(Evaluation& evaluation, std::int64_t own = 0) const;
    double EvaluateFloat(Evaluation& evaluation, double own = 0.0) const;
    /// False when the formula ignores the value that is converted.
    bool UsesOwnValue() const noexcept;
    /// What has to be known before the formula can be evaluated, or before it is known whether it can be.
    Waiting Need(EPart part) const noexcept;
    /// False when a variable can't be read now.
    bool AllReadable(Evaluation& evaluation) const;

private:
    const FormulaProgram* m_program;
    std::span<const FormulaVariable> m_variables;
};

/// IntSwissKnife.
class CIntSwissKnife final : public CIntegerNode {
public:
    using CIntegerNode::CIntegerNode;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    Waiting NeedBehind(EPart part) override { return m_formula->Need(part); }

private:
    NodeFormula* m_formula = nullptr;
};

/// SwissKnife.
class CSwissKnife final : public CFloatNode {
public:
    using CFloatNode::CFloatNode;

protected:
    void Bind() override;
    double ReadFloat(Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    Waiting NeedBehind(EPart part) override { return m_formula->Need(part); }

private:
    NodeFormula* m_formula = nullptr;
};

/// What converters of both kinds have: two formulas, the node behind, the direction.
struct ConverterParts {
    ConverterParts(CNode& owner, bool floating);

    EAccessMode Access(CNode& owner, Evaluation& evaluation, bool withLocks);
    template <class T, class Convert>
    std::optional<std::pair<T, T>> Range(Convert&& convert) const;

    NodeFormula* to = nullptr;    ///< from the user's value (FROM) to that of the node behind
    NodeFormula* from = nullptr;  ///< and back (TO)
    CNode* value = nullptr;
    ESlope slope = Automatic;
};

/// IntConverter.
class CIntConverter final : public CIntegerNode {
public:
    using CIntegerNode::CIntegerNode;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    Waiting NeedBehind(EPart part) override { return {m_parts->value, part}; }
    std::int64_t OwnBound(EBound bound, Evaluation& evaluation) override;

private:
    ConverterParts* m_parts = nullptr;
};

/// Converter.
class CConverter final : public CFloatNode {
public:
    using CFloatNode::CFloatNode;

protected:
    void Bind() override;
    double ReadFloat(Evaluation& evaluation) override;
    void WriteFloat(double value, Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;
    Waiting NeedBehind(EPart part) override { return {m_parts->value, part}; }
    double OwnBound(EBound bound, Evaluation& evaluation) override;

private:
    ConverterParts* m_parts = nullptr;
};

}  // namespace GenApi
