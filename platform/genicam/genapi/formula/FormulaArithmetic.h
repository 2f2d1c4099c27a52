/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Arithmetic of integer formulas: 64 bits, and an exception where they do not suffice
 */
#pragma once

#include <cstdint>

#include "formula/FormulaProgram.h"

namespace GenApi {

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

/// Operators and functions of a formula that computes in floating point. Results are checked for being finite numbers
/// at the end of a formula.
struct FloatArithmetic {
    using Number = double;

    static Number Constant(const FormulaNumber& constant) noexcept { return constant.number; }
    static Number Variable(IFormulaVariables& variables, std::uint32_t index) { return variables.FloatVariable(index); }
    static Number Binary(EOperation operation, Number left, Number right);
    static Number Unary(EOperation operation, Number operand);
};

/// A number as an integer, its fraction cut off; an exception when it does not fit into 64 bits.
std::int64_t TruncateToInteger(double number);
/// A number as the nearest integer; an exception when it does not fit into 64 bits.
std::int64_t RoundToInteger(double number);
/// An end of a range as an integer; what does not fit becomes the smallest or largest one.
std::int64_t SaturateToInteger(double number) noexcept;

}  // namespace GenApi
