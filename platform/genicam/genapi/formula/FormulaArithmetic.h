/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Arithmetic of integer formulas: 64 bits, and an exception where they do not suffice
 */
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "formula/FormulaProgram.h"

namespace GenApi {

// The most common operators are no part of these: the machine that runs a formula computes them itself.

/// Operators and functions of a formula that computes in integers.
struct IntegerArithmetic {
    using Number = std::int64_t;

    static Number Constant(const FormulaNumber& constant) noexcept { return constant.integer; }
    static Number Variable(IFormulaVariables& variables, std::uint32_t index) {
        return variables.IntegerVariable(index);
    }
    static Number Binary(EOperation operation, Number left, Number right);
    static Number Unary(EOperation operation, Number operand);
};

/// Operators and functions of a formula that computes in floating point. What is no finite number although the operands
/// are is an exception at once: it must not hide behind a comparison. Infinities of the device are computed with.
struct FloatArithmetic {
    using Number = double;

    static Number Constant(const FormulaNumber& constant) noexcept { return constant.number; }
    static Number Variable(IFormulaVariables& variables, std::uint32_t index) { return variables.FloatVariable(index); }
    static Number Binary(EOperation operation, Number left, Number right);
    static Number Unary(EOperation operation, Number operand);
    /// The result of an operator, which must be a number when the operands are.
    static Number Checked(Number result, Number left, Number right) {
        if (!(std::fabs(result) <= std::numeric_limits<Number>::max()))
            RequireExpected(result, left, right);
        return result;
    }

private:
    static void RequireExpected(Number result, Number left, Number right);
};

/// A number as an integer, its fraction cut off; an exception when it does not fit into 64 bits.
std::int64_t TruncateToInteger(double number);
/// A number as the nearest integer; an exception when it does not fit into 64 bits.
std::int64_t RoundToInteger(double number);
/// An end of a range as an integer; what does not fit becomes the smallest or largest one.
std::int64_t SaturateToInteger(double number) noexcept;

}  // namespace GenApi
