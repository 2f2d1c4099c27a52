/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A compiled formula and how it is evaluated
 */
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "schema/Arena.h"

namespace GenApi {

/// What one step of a formula does. Operands lie on a stack.
enum class EOperation : std::uint8_t {
    Constant,    ///< push constant [argument]
    Variable,    ///< push the value of variable [argument]
    Expression,  ///< push the value of sub-expression [argument]
    Negate,
    BitNot,
    ToBoolean,
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Power,
    BitAnd,
    BitOr,
    BitXor,
    ShiftLeft,
    ShiftRight,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessOrEqual,
    GreaterOrEqual,
    Jump,        ///< go on at step [argument]
    JumpIfZero,  ///< pop; when it was 0, go on at step [argument]
    AndJump,     ///< when the top is 0, make it 0 and go on at step [argument], else pop
    OrJump,      ///< when the top is not 0, make it 1 and go on at step [argument], else pop
    Sign,
    Absolute,
    Truncate,
    Floor,
    Ceiling,
    Round,
    RoundTo,  ///< two operands: the value and the number of decimals
    SquareRoot,
    Sine,
    Cosine,
    Tangent,
    ArcSine,
    ArcCosine,
    ArcTangent,
    Exponential,
    NaturalLogarithm,
    DecimalLogarithm
};

struct Instruction {
    EOperation operation;
    std::uint32_t argument;
};

/// A number of a formula, as both kinds of formulas see it.
struct FormulaNumber {
    std::int64_t integer;
    double number;
};

/// Steps [begin, end) of the code that make up the formula or one of its sub-expressions.
struct FormulaSegment {
    std::uint32_t begin;
    std::uint32_t end;
};

/// Where a formula gets the values of its variables from.
class IFormulaVariables {
public:
    virtual std::int64_t IntegerVariable(std::uint32_t index) = 0;
    virtual double FloatVariable(std::uint32_t index) = 0;

protected:
    ~IFormulaVariables() = default;
};

/// A compiled formula. Its steps lie in an arena or in vectors of the compiler's result.
class FormulaProgram {
public:
    FormulaProgram() = default;
    FormulaProgram(std::span<const Instruction> code, std::span<const FormulaNumber> constants,
                   std::span<const FormulaSegment> segments, std::uint32_t stackSize, bool floating)
        : m_code(code), m_constants(constants), m_segments(segments), m_stackSize(stackSize), m_floating(floating) {}

    /// The first variable that is asked for whatever the others are; no variable's number when that is not known.
    std::uint32_t FirstVariable() const noexcept;
    std::int64_t EvaluateInteger(IFormulaVariables& variables) const;
    double EvaluateFloat(IFormulaVariables& variables) const;

private:
    std::span<const Instruction> m_code;
    std::span<const FormulaNumber> m_constants;
    std::span<const FormulaSegment> m_segments;  // the first is the formula itself
    std::uint32_t m_stackSize = 0;
    bool m_floating = false;  // computes in floating point: a float formula, or one with a part that is no integer
};

}  // namespace GenApi
