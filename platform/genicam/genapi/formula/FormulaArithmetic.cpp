/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Arithmetic of formulas: what does not fit is an exception
 */

#include "formula/FormulaArithmetic.h"

#include <cmath>
#include <limits>

#include "Base/GCException.h"

namespace GenApi {

namespace {

constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();

[[noreturn]] void ThrowOverflow() {
    throw OUT_OF_RANGE_EXCEPTION("Result of a formula does not fit into 64 bits");
}
[[noreturn]] void ThrowDivisionByZero() {
    throw OUT_OF_RANGE_EXCEPTION("Division by zero in a formula");
}

std::int64_t Multiply(std::int64_t left, std::int64_t right) {
    std::int64_t result = 0;
    if (__builtin_mul_overflow(left, right, &result))
        ThrowOverflow();
    return result;
}

std::int64_t Divide(std::int64_t left, std::int64_t right) {
    if (right == 0)
        ThrowDivisionByZero();
    if (left == kSmallest && right == -1)
        ThrowOverflow();
    return left / right;
}

std::int64_t Modulo(std::int64_t left, std::int64_t right) {
    if (right == 0)
        ThrowDivisionByZero();
    return right == -1 ? 0 : left % right;
}

std::int64_t Power(std::int64_t base, std::int64_t exponent) {
    if (exponent < 0) {
        if (base == 0)
            ThrowDivisionByZero();
        if (base == 1 || base == -1)
            return exponent % 2 == 0 ? 1 : base;
        return 0;
    }
    std::int64_t result = 1;
    while (exponent > 0) {
        if (exponent % 2 != 0)
            result = Multiply(result, base);
        exponent /= 2;
        if (exponent > 0)
            base = Multiply(base, base);
    }
    return result;
}

std::int64_t PowerOf(std::int64_t base, std::int64_t exponent) {
    // 0, 1 and -1 to any power stay small, however large the exponent.
    if (exponent > 0 && (base == 0 || base == 1))
        return base;
    if (exponent > 0 && base == -1)
        return exponent % 2 == 0 ? 1 : -1;
    return Power(base, exponent);
}

unsigned ShiftCount(std::int64_t count) {
    if (count < 0 || count > 63)
        throw OUT_OF_RANGE_EXCEPTION("Shift by %I64d bits in a formula", count);
    return static_cast<unsigned>(count);
}

std::int64_t ShiftLeft(std::int64_t value, std::int64_t count) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(value) << ShiftCount(count));
}

double RoundTo(double value, double decimals) {
    if (!(std::fabs(decimals) <= 300.0))
        throw OUT_OF_RANGE_EXCEPTION("ROUND to %g decimals in a formula", decimals);
    const double scale = std::pow(10.0, std::trunc(decimals));
    const double scaled = value * scale;
    return std::isfinite(scaled) ? std::round(scaled) / scale : value;
}

// The bits of a number for the bit operators: what needs the 64th bit is taken as unsigned.
std::int64_t Bits(double number) {
    if (number >= 9223372036854775808.0 && number < 18446744073709551616.0)
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(number));
    return TruncateToInteger(number);
}

double ResultOf(EOperation operation, double operand) {
    switch (operation) {
        case EOperation::Negate:
            return -operand;
        case EOperation::Absolute:
            return std::fabs(operand);
        case EOperation::BitNot:
            return static_cast<double>(~Bits(operand));
        case EOperation::ToBoolean:
            return operand != 0.0;
        case EOperation::Sign:
            return operand > 0.0 ? 1.0 : (operand < 0.0 ? -1.0 : 0.0);
        case EOperation::Truncate:
            return std::trunc(operand);
        case EOperation::Floor:
            return std::floor(operand);
        case EOperation::Ceiling:
            return std::ceil(operand);
        case EOperation::Round:
            return std::round(operand);
        case EOperation::SquareRoot:
            return std::sqrt(operand);
        case EOperation::Sine:
            return std::sin(operand);
        case EOperation::Cosine:
            return std::cos(operand);
        case EOperation::Tangent:
            return std::tan(operand);
        case EOperation::ArcSine:
            return std::asin(operand);
        case EOperation::ArcCosine:
            return std::acos(operand);
        case EOperation::ArcTangent:
            return std::atan(operand);
        case EOperation::Exponential:
            return std::exp(operand);
        case EOperation::NaturalLogarithm:
            return std::log(operand);
        case EOperation::DecimalLogarithm:
            return std::log10(operand);
        default:
            throw LOGICAL_ERROR_EXCEPTION("Unknown function of a formula");
    }
}

}  // namespace

std::int64_t TruncateToInteger(double number) {
    if (!(number >= -9223372036854775808.0 && number < 9223372036854775808.0))
        throw OUT_OF_RANGE_EXCEPTION("%g does not fit into a 64 bit integer", number);
    return static_cast<std::int64_t>(number);
}

std::int64_t RoundToInteger(double number) {
    return TruncateToInteger(std::round(number));
}

std::int64_t SaturateToInteger(double number) noexcept {
    if (!(number > -9223372036854775808.0))
        return kSmallest;
    return number < 9223372036854775808.0 ? static_cast<std::int64_t>(number)
                                          : std::numeric_limits<std::int64_t>::max();
}

std::int64_t IntegerArithmetic::Binary(EOperation operation, std::int64_t left, std::int64_t right) {
    std::int64_t result = 0;
    switch (operation) {
        case EOperation::Add:
            if (__builtin_add_overflow(left, right, &result))
                ThrowOverflow();
            return result;
        case EOperation::Subtract:
            if (__builtin_sub_overflow(left, right, &result))
                ThrowOverflow();
            return result;
        case EOperation::Multiply:
            return Multiply(left, right);
        case EOperation::Divide:
            return Divide(left, right);
        case EOperation::Modulo:
            return Modulo(left, right);
        case EOperation::Power:
            return PowerOf(left, right);
        case EOperation::BitAnd:
            return left & right;
        case EOperation::BitOr:
            return left | right;
        case EOperation::BitXor:
            return left ^ right;
        case EOperation::ShiftLeft:
            return ShiftLeft(left, right);
        case EOperation::ShiftRight:
            return left >> ShiftCount(right);
        case EOperation::LessOrEqual:
            return left <= right;
        case EOperation::GreaterOrEqual:
            return left >= right;
        case EOperation::RoundTo:
            return left;
        default:
            throw LOGICAL_ERROR_EXCEPTION("Unknown operator of a formula");
    }
}

std::int64_t IntegerArithmetic::Unary(EOperation operation, std::int64_t operand) {
    switch (operation) {
        case EOperation::Negate:
            if (operand == kSmallest)
                ThrowOverflow();
            return -operand;
        case EOperation::Absolute:
            if (operand == kSmallest)
                ThrowOverflow();
            return operand < 0 ? -operand : operand;
        case EOperation::BitNot:
            return ~operand;
        case EOperation::ToBoolean:
            return operand != 0;
        case EOperation::Sign:
            return operand > 0 ? 1 : (operand < 0 ? -1 : 0);
        case EOperation::Truncate:
        case EOperation::Floor:
        case EOperation::Ceiling:
        case EOperation::Round:
            return operand;
        default:
            throw LOGICAL_ERROR_EXCEPTION("Unknown function of a formula");
    }
}

void FloatArithmetic::RequireExpected(double result, double left, double right) {
    const bool isExpected =
        std::isnan(result) ? std::isnan(left) || std::isnan(right) : !std::isfinite(left) || !std::isfinite(right);
    if (!isExpected)
        throw OUT_OF_RANGE_EXCEPTION("Result of an operator or function in a formula is not a number");
}

double FloatArithmetic::Binary(EOperation operation, double left, double right) {
    switch (operation) {
        case EOperation::Divide:
            if (right == 0.0)
                ThrowDivisionByZero();
            return Checked(left / right, left, right);
        case EOperation::Modulo:
            if (right == 0.0)
                ThrowDivisionByZero();
            return Checked(std::fmod(left, right), left, right);
        case EOperation::Power:
            return Checked(std::pow(left, right), left, right);
        case EOperation::BitAnd:
            return static_cast<double>(Bits(left) & Bits(right));
        case EOperation::BitOr:
            return static_cast<double>(Bits(left) | Bits(right));
        case EOperation::BitXor:
            return static_cast<double>(Bits(left) ^ Bits(right));
        case EOperation::ShiftLeft:
            return static_cast<double>(ShiftLeft(Bits(left), Bits(right)));
        case EOperation::ShiftRight:
            return static_cast<double>(Bits(left) >> ShiftCount(Bits(right)));
        case EOperation::LessOrEqual:
            return left <= right;
        case EOperation::GreaterOrEqual:
            return left >= right;
        case EOperation::RoundTo:
            return RoundTo(left, right);
        default:
            throw LOGICAL_ERROR_EXCEPTION("Unknown operator of a formula");
    }
}

double FloatArithmetic::Unary(EOperation operation, double operand) {
    return Checked(ResultOf(operation, operand), operand, operand);
}

}  // namespace GenApi
