/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compiles the formulas of the standard: an operator stack instead of recursion, so no formula is too deep
 */

#include "formula/FormulaCompiler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "Base/GCException.h"

namespace GenApi {

namespace {

struct Function {
    std::string_view name;
    EOperation operation;
    bool floating;  // has no meaning in integers
};

constexpr std::array kFunctions = {
    Function{"SGN", EOperation::Sign, false},
    Function{"NEG", EOperation::Negate, false},
    Function{"ABS", EOperation::Absolute, false},
    Function{"TRUNC", EOperation::Truncate, false},
    Function{"FLOOR", EOperation::Floor, false},
    Function{"CEIL", EOperation::Ceiling, false},
    Function{"ROUND", EOperation::Round, false},
    Function{"SQRT", EOperation::SquareRoot, true},
    Function{"SIN", EOperation::Sine, true},
    Function{"COS", EOperation::Cosine, true},
    Function{"TAN", EOperation::Tangent, true},
    Function{"ASIN", EOperation::ArcSine, true},
    Function{"ACOS", EOperation::ArcCosine, true},
    Function{"ATAN", EOperation::ArcTangent, true},
    Function{"EXP", EOperation::Exponential, true},
    Function{"LN", EOperation::NaturalLogarithm, true},
    Function{"LG", EOperation::DecimalLogarithm, true},
};

// How strongly an operator binds; a larger number binds stronger.
constexpr int kTernary = 1;
constexpr int kLogicalOr = 2;
constexpr int kLogicalAnd = 3;
constexpr int kUnary = 13;

constexpr int PrecedenceOf(EOperation operation) {
    switch (operation) {
        case EOperation::BitOr:
            return 4;
        case EOperation::BitXor:
            return 5;
        case EOperation::BitAnd:
            return 6;
        case EOperation::Equal:
        case EOperation::NotEqual:
            return 7;
        case EOperation::Less:
        case EOperation::Greater:
        case EOperation::LessOrEqual:
        case EOperation::GreaterOrEqual:
            return 8;
        case EOperation::ShiftLeft:
        case EOperation::ShiftRight:
            return 9;
        case EOperation::Add:
        case EOperation::Subtract:
            return 10;
        case EOperation::Multiply:
        case EOperation::Divide:
        case EOperation::Modulo:
            return 11;
        default:
            return 12;  // Power
    }
}

class Compiler {
public:
    Compiler(IFormulaSymbols& symbols, bool floating) : m_symbols(symbols) { m_result.floating = floating; }
    CompiledFormula Compile(std::string_view formula);

private:
    enum class Pending : std::uint8_t { Bracket, Function, Unary, Binary, LogicalAnd, LogicalOr, Question, Colon };

    struct Operator {
        Pending kind;
        EOperation operation;
        int precedence;
        std::uint32_t jump;  // the step whose target is still open
        unsigned arguments;
    };

    void CompileText(std::string_view text);
    void Operand(FormulaToken& token);
    void Name(const FormulaToken& token);
    void Call(const Function& function);
    void ConstantCall(const FormulaToken& name, double value);
    void AfterOperand(const FormulaToken& token);
    void Binary(const FormulaToken& token);
    void Logical(Pending kind, EOperation jump, int precedence);
    void Question();
    void Colon();
    void Close();
    void Comma();
    void Reduce(int precedence);
    void ReduceTop();
    void Finish();
    void Push(Pending kind, EOperation operation, int precedence, std::uint32_t jump = 0);
    std::uint32_t Emit(EOperation operation, std::uint32_t argument = 0);
    void EmitConstant(const FormulaNumber& number, bool isFloating);
    void Target(std::uint32_t jump) { m_result.code[jump].argument = Here(); }
    std::uint32_t Here() const { return static_cast<std::uint32_t>(m_result.code.size()); }
    FormulaToken Peek() const { return FormulaScanner(*m_scanner).Next(); }
    void MeasureStack();

    IFormulaSymbols& m_symbols;
    CompiledFormula m_result;
    std::vector<Operator> m_operators;
    FormulaScanner* m_scanner = nullptr;
    bool m_wantsOperand = true;
    std::int64_t m_depth = 0;
    std::int64_t m_deepest = 0;
    std::vector<std::uint32_t> m_segmentStack;
};

[[noreturn]] void Fail(const char* what, std::size_t position) {
    throw INVALID_ARGUMENT_EXCEPTION("%s at character %u", what, static_cast<unsigned>(position + 1));
}

CompiledFormula Compiler::Compile(std::string_view formula) {
    m_result.segments.resize(m_symbols.ExpressionCount() + 1);
    m_segmentStack.resize(m_result.segments.size());
    for (std::uint32_t segment = 0; segment < m_result.segments.size(); ++segment) {
        m_result.segments[segment].begin = Here();
        m_depth = m_deepest = 0;
        CompileText(segment == 0 ? formula : m_symbols.ExpressionText(segment - 1));
        m_result.segments[segment].end = Here();
        m_segmentStack[segment] = static_cast<std::uint32_t>(m_deepest);
    }
    MeasureStack();
    return std::move(m_result);
}

void Compiler::CompileText(std::string_view text) {
    FormulaScanner scanner(text);
    m_scanner = &scanner;
    m_wantsOperand = true;
    m_operators.clear();
    for (;;) {
        FormulaToken token = scanner.Next();
        if (token.kind == EToken::End) {
            if (m_wantsOperand)
                Fail("Operand missing", token.position);
            break;
        }
        if (m_wantsOperand)
            Operand(token);
        else
            AfterOperand(token);
    }
    Finish();
}

void Compiler::Operand(FormulaToken& token) {
    switch (token.kind) {
        case EToken::Number:
            EmitConstant(token.number, token.isFloating);
            m_wantsOperand = false;
            return;
        case EToken::Name:
            Name(token);
            return;
        case EToken::Open:
            Push(Pending::Bracket, EOperation::Add, 0);
            return;
        case EToken::Not:
            Push(Pending::Unary, EOperation::BitNot, kUnary);
            return;
        case EToken::Operator:
            if (token.operation == EOperation::Subtract) {
                Push(Pending::Unary, EOperation::Negate, kUnary);
                return;
            }
            if (token.operation == EOperation::Add)
                return;
            break;
        default:
            break;
    }
    Fail("Operand expected", token.position);
}

// A name of the description comes before a function: a variable may be called EXP.
void Compiler::Name(const FormulaToken& token) {
    if (const auto symbol = m_symbols.Find(token.name)) {
        if (symbol->kind == FormulaSymbol::Kind::Constant)
            EmitConstant(symbol->constant, symbol->isFloating);
        else if (symbol->kind == FormulaSymbol::Kind::Variable)
            Emit(EOperation::Variable, symbol->index);
        else
            Emit(EOperation::Expression, symbol->index + 1);
        m_wantsOperand = false;
        return;
    }
    const bool isCall = Peek().kind == EToken::Open;
    for (const Function& function : kFunctions) {
        if (isCall && function.name == token.name)
            return Call(function);
    }
    if (token.name == "PI")
        return ConstantCall(token, std::numbers::pi);
    if (token.name == "E")
        return ConstantCall(token, std::numbers::e);
    throw INVALID_ARGUMENT_EXCEPTION("Unknown name '%s' at character %u", std::string(token.name),
                                     static_cast<unsigned>(token.position + 1));
}

void Compiler::Call(const Function& function) {
    m_scanner->Next();
    m_result.floating = m_result.floating || function.floating;
    Push(Pending::Function, function.operation, 0);
}

// PI and E may be written as a name or as a function without arguments.
void Compiler::ConstantCall(const FormulaToken& name, double value) {
    EmitConstant({0, value}, true);
    m_wantsOperand = false;
    if (Peek().kind != EToken::Open)
        return;
    m_scanner->Next();
    if (m_scanner->Next().kind != EToken::Close)
        Fail("')' missing", name.position);
}

void Compiler::AfterOperand(const FormulaToken& token) {
    switch (token.kind) {
        case EToken::Operator:
            Binary(token);
            return;
        case EToken::LogicalAnd:
            Logical(Pending::LogicalAnd, EOperation::AndJump, kLogicalAnd);
            return;
        case EToken::LogicalOr:
            Logical(Pending::LogicalOr, EOperation::OrJump, kLogicalOr);
            return;
        case EToken::Question:
            Question();
            return;
        case EToken::Colon:
            Colon();
            return;
        case EToken::Close:
            Close();
            return;
        case EToken::Comma:
            Comma();
            return;
        default:
            Fail("Operator expected", token.position);
    }
}

void Compiler::Binary(const FormulaToken& token) {
    const int precedence = PrecedenceOf(token.operation);
    // A power of a power is computed from the right.
    Reduce(token.operation == EOperation::Power ? precedence + 1 : precedence);
    Push(Pending::Binary, token.operation, precedence);
    m_wantsOperand = true;
}

void Compiler::Logical(Pending kind, EOperation jump, int precedence) {
    Reduce(precedence);
    Push(kind, jump, precedence, Emit(jump));
    m_wantsOperand = true;
}

void Compiler::Question() {
    Reduce(kTernary + 1);
    Push(Pending::Question, EOperation::Jump, 0, Emit(EOperation::JumpIfZero));
    m_wantsOperand = true;
}

void Compiler::Colon() {
    Reduce(kTernary);
    if (m_operators.empty() || m_operators.back().kind != Pending::Question)
        throw INVALID_ARGUMENT_EXCEPTION("':' without '?'");
    const std::uint32_t condition = m_operators.back().jump;
    m_operators.pop_back();
    const std::uint32_t jump = Emit(EOperation::Jump);
    Target(condition);
    Push(Pending::Colon, EOperation::Jump, kTernary, jump);
    m_wantsOperand = true;
}

void Compiler::Close() {
    Reduce(kTernary);
    if (m_operators.empty() || m_operators.back().kind == Pending::Question)
        throw INVALID_ARGUMENT_EXCEPTION(m_operators.empty() ? "')' without '('" : "'?' without ':'");
    const Operator open = m_operators.back();
    m_operators.pop_back();
    if (open.kind == Pending::Bracket)
        return;
    const bool isRoundTo = open.operation == EOperation::Round && open.arguments == 1;
    if (open.arguments != 0 && !isRoundTo)
        throw INVALID_ARGUMENT_EXCEPTION("Wrong number of arguments of a function");
    Emit(isRoundTo ? EOperation::RoundTo : open.operation);
}

void Compiler::Comma() {
    Reduce(kTernary);
    if (m_operators.empty() || m_operators.back().kind != Pending::Function)
        throw INVALID_ARGUMENT_EXCEPTION("',' outside the arguments of a function");
    ++m_operators.back().arguments;
    m_wantsOperand = true;
}

// Emits what binds at least as strongly as precedence; brackets, functions and open conditions have 0 and stay.
void Compiler::Reduce(int precedence) {
    while (!m_operators.empty() && m_operators.back().precedence >= std::max(precedence, 1))
        ReduceTop();
}

void Compiler::ReduceTop() {
    const Operator top = m_operators.back();
    m_operators.pop_back();
    switch (top.kind) {
        case Pending::Unary:
        case Pending::Binary:
            Emit(top.operation);
            return;
        case Pending::LogicalAnd:
        case Pending::LogicalOr:
            Emit(EOperation::ToBoolean);
            break;
        default:
            break;
    }
    Target(top.jump);
}

void Compiler::Finish() {
    Reduce(kTernary);
    if (m_operators.empty())
        return;
    const bool isCondition = m_operators.back().kind == Pending::Question;
    throw INVALID_ARGUMENT_EXCEPTION(isCondition ? "'?' without ':'" : "')' missing");
}

void Compiler::Push(Pending kind, EOperation operation, int precedence, std::uint32_t jump) {
    m_operators.push_back({kind, operation, precedence, jump, 0});
}

// Emits a step and follows how many operands lie on the stack after it.
std::uint32_t Compiler::Emit(EOperation operation, std::uint32_t argument) {
    m_result.code.push_back({operation, argument});
    const bool pushes = operation <= EOperation::Expression;
    const bool pops =
        (operation >= EOperation::Add && operation <= EOperation::OrJump) || operation == EOperation::RoundTo;
    m_depth += pushes ? 1 : (pops ? -1 : 0);
    m_deepest = std::max(m_deepest, m_depth);
    return Here() - 1;
}

void Compiler::EmitConstant(const FormulaNumber& number, bool isFloating) {
    m_result.floating = m_result.floating || isFloating;
    m_result.constants.push_back(number);
    Emit(EOperation::Constant, static_cast<std::uint32_t>(m_result.constants.size() - 1));
}

// Sub-expressions run on the stack of their user: the need of a chain of them adds up. Those that use none are known
// at once; each round settles those that use only settled ones, and what never settles is part of a circle.
void Compiler::MeasureStack() {
    const std::size_t count = m_result.segments.size();
    std::vector<bool> settled(count, false);
    std::vector<std::uint32_t> nesting(count, 1);
    std::size_t left = count;
    for (bool moved = true; moved && left > 0;) {
        moved = false;
        for (std::size_t segment = count; segment-- > 0;) {
            if (settled[segment])
                continue;
            std::uint32_t used = 0;
            std::uint32_t depth = 0;
            bool ready = true;
            for (std::uint32_t step = m_result.segments[segment].begin; step < m_result.segments[segment].end; ++step) {
                const Instruction& instruction = m_result.code[step];
                if (instruction.operation != EOperation::Expression)
                    continue;
                ready = ready && settled[instruction.argument];
                used = std::max(used, m_segmentStack[instruction.argument]);
                depth = std::max(depth, nesting[instruction.argument]);
            }
            if (!ready)
                continue;
            settled[segment] = moved = true;
            m_segmentStack[segment] += used;
            nesting[segment] += depth;
            --left;
            if (nesting[segment] > 64)
                throw INVALID_ARGUMENT_EXCEPTION("Expressions are nested too deeply");
        }
    }
    if (left > 0)
        throw INVALID_ARGUMENT_EXCEPTION("Expressions refer to one another in a circle");
    m_result.stackSize = m_segmentStack[0];
}

}  // namespace

CompiledFormula CompileFormula(std::string_view formula, IFormulaSymbols& symbols, bool floating) {
    return Compiler(symbols, floating).Compile(formula);
}

}  // namespace GenApi
