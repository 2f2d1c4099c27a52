/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A compiled formula and how it is evaluated
 */

#include "formula/FormulaProgram.h"

#include <array>
#include <cmath>
#include <functional>
#include <type_traits>

#include "Base/GCException.h"
#include "formula/FormulaArithmetic.h"

namespace GenApi {

namespace {

/// One evaluation. Sub-expressions are computed when they are first needed and once.
template <class Arithmetic>
class Machine {
public:
    using Number = typename Arithmetic::Number;

    Machine(std::span<const Instruction> code, std::span<const FormulaNumber> constants,
            std::span<const FormulaSegment> segments, IFormulaVariables& variables)
        : m_code(code), m_constants(constants), m_segments(segments), m_variables(variables) {}

    Number Run(std::uint32_t stackSize) {
        if (m_segments.size() > 1)
            m_expressions.resize(m_segments.size());
        if (stackSize <= m_small.size())
            return RunSegment(0, m_small.data());
        std::vector<Number> large(stackSize);
        return RunSegment(0, large.data());
    }

private:
    struct Expression {
        bool known = false;
        Number value = 0;
    };

    Number RunSegment(std::uint32_t segment, Number* top);
    void Step(const Instruction& step, Number*& top);
    bool RunCommon(EOperation operation, Number*& top);
    bool JumpOf(const Instruction& step, Number*& top);
    Number ExpressionValue(std::uint32_t segment, Number* top);

    std::span<const Instruction> m_code;
    std::span<const FormulaNumber> m_constants;
    std::span<const FormulaSegment> m_segments;
    IFormulaVariables& m_variables;
    std::array<Number, 24> m_small;  // not set: each place is written before it is read
    std::vector<Expression> m_expressions;
};

// top points to the first free place of the stack.
template <class Arithmetic>
typename Arithmetic::Number Machine<Arithmetic>::RunSegment(std::uint32_t segment, Number* top) {
    const Instruction* step = m_code.data() + m_segments[segment].begin;
    const Instruction* const end = m_code.data() + m_segments[segment].end;
    while (step != end) {
        if (step->operation >= EOperation::Jump && step->operation <= EOperation::OrJump) {
            step = JumpOf(*step, top) ? m_code.data() + step->argument : step + 1;
            continue;
        }
        Step(*step++, top);
    }
    return top[-1];
}

template <class Arithmetic>
void Machine<Arithmetic>::Step(const Instruction& step, Number*& top) {
    switch (step.operation) {
        case EOperation::Constant:
            *top++ = Arithmetic::Constant(m_constants[step.argument]);
            return;
        case EOperation::Variable:
            *top = Arithmetic::Variable(m_variables, step.argument);
            ++top;
            return;
        case EOperation::Expression:
            *top = ExpressionValue(step.argument, top);
            ++top;
            return;
        default:
            break;
    }
    if (RunCommon(step.operation, top))
        return;
    const bool binary = (step.operation >= EOperation::Add && step.operation <= EOperation::GreaterOrEqual) ||
                        step.operation == EOperation::RoundTo;
    if (binary) {
        --top;
        top[-1] = static_cast<Number>(Arithmetic::Binary(step.operation, top[-1], top[0]));
    } else {
        top[-1] = static_cast<Number>(Arithmetic::Unary(step.operation, top[-1]));
    }
}

// The operators that most formulas consist of, without a call. What may overflow is left to the arithmetic.
template <class Arithmetic>
bool Machine<Arithmetic>::RunCommon(EOperation operation, Number*& top) {
    const auto apply = [&top](auto&& combine) {
        top[-2] = static_cast<Number>(combine(top[-2], top[-1]));
        --top;
        return true;
    };
    switch (operation) {
        case EOperation::Equal:
            return apply(std::equal_to<>());
        case EOperation::NotEqual:
            return apply(std::not_equal_to<>());
        case EOperation::Less:
            return apply(std::less<>());
        case EOperation::Greater:
            return apply(std::greater<>());
        default:
            break;
    }
    if constexpr (std::is_same_v<Number, double>) {
        const auto applyChecked = [&](auto&& combine) {
            return apply(
                [&](Number left, Number right) { return Arithmetic::Checked(combine(left, right), left, right); });
        };
        switch (operation) {
            case EOperation::Add:
                return applyChecked(std::plus<>());
            case EOperation::Subtract:
                return applyChecked(std::minus<>());
            case EOperation::Multiply:
                return applyChecked(std::multiplies<>());
            default:
                break;
        }
    }
    return false;
}

// True when the jump is taken.
template <class Arithmetic>
bool Machine<Arithmetic>::JumpOf(const Instruction& step, Number*& top) {
    switch (step.operation) {
        case EOperation::Jump:
            return true;
        case EOperation::JumpIfZero:
            return *--top == 0;
        case EOperation::AndJump:
            if (top[-1] == 0) {
                top[-1] = 0;
                return true;
            }
            --top;
            return false;
        default:
            if (top[-1] != 0) {
                top[-1] = 1;
                return true;
            }
            --top;
            return false;
    }
}

template <class Arithmetic>
typename Arithmetic::Number Machine<Arithmetic>::ExpressionValue(std::uint32_t segment, Number* top) {
    if (!m_expressions[segment].known)
        m_expressions[segment] = {true, RunSegment(segment, top)};
    return m_expressions[segment].value;
}

}  // namespace

std::uint32_t FormulaProgram::FirstVariable() const noexcept {
    for (const Instruction& step : m_code) {
        const bool mayBranch = step.operation >= EOperation::Jump && step.operation <= EOperation::OrJump;
        if (mayBranch || step.operation == EOperation::Expression)
            break;
        if (step.operation == EOperation::Variable)
            return step.argument;
    }
    return UINT32_MAX;
}

/**
 * \brief Compute the formula as an integer
 * \throw OutOfRangeException A division by zero or a result that does not fit
 */
std::int64_t FormulaProgram::EvaluateInteger(IFormulaVariables& variables) const {
    if (m_floating)
        return TruncateToInteger(EvaluateFloat(variables));
    return Machine<IntegerArithmetic>(m_code, m_constants, m_segments, variables).Run(m_stackSize);
}

/**
 * \brief Compute the formula as a floating-point number
 * \throw OutOfRangeException A division by zero or a result that is no finite number
 */
double FormulaProgram::EvaluateFloat(IFormulaVariables& variables) const {
    if (!m_floating)
        return static_cast<double>(EvaluateInteger(variables));
    const double result = Machine<FloatArithmetic>(m_code, m_constants, m_segments, variables).Run(m_stackSize);
    if (!std::isfinite(result))
        throw OUT_OF_RANGE_EXCEPTION("Result of a formula is not a number");
    return result;
}

}  // namespace GenApi
