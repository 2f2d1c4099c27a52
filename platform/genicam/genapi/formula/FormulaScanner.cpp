/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Splits a formula into tokens
 */

#include "formula/FormulaScanner.h"

#include <array>

#include "Base/GCException.h"
#include "schema/Text.h"

namespace GenApi {

namespace {

struct Symbol {
    std::string_view text;
    EToken kind;
    EOperation operation;
};

// Longer ones first. The standard compares with = and <>; == and != are understood as well because files have them.
constexpr std::array kSymbols = {
    Symbol{"**", EToken::Operator, EOperation::Power},
    Symbol{"&&", EToken::LogicalAnd, EOperation::AndJump},
    Symbol{"||", EToken::LogicalOr, EOperation::OrJump},
    Symbol{"<>", EToken::Operator, EOperation::NotEqual},
    Symbol{"!=", EToken::Operator, EOperation::NotEqual},
    Symbol{"<=", EToken::Operator, EOperation::LessOrEqual},
    Symbol{">=", EToken::Operator, EOperation::GreaterOrEqual},
    Symbol{"<<", EToken::Operator, EOperation::ShiftLeft},
    Symbol{">>", EToken::Operator, EOperation::ShiftRight},
    Symbol{"==", EToken::Operator, EOperation::Equal},
    Symbol{"=", EToken::Operator, EOperation::Equal},
    Symbol{"<", EToken::Operator, EOperation::Less},
    Symbol{">", EToken::Operator, EOperation::Greater},
    Symbol{"+", EToken::Operator, EOperation::Add},
    Symbol{"-", EToken::Operator, EOperation::Subtract},
    Symbol{"*", EToken::Operator, EOperation::Multiply},
    Symbol{"/", EToken::Operator, EOperation::Divide},
    Symbol{"%", EToken::Operator, EOperation::Modulo},
    Symbol{"&", EToken::Operator, EOperation::BitAnd},
    Symbol{"|", EToken::Operator, EOperation::BitOr},
    Symbol{"^", EToken::Operator, EOperation::BitXor},
    Symbol{"~", EToken::Not, EOperation::BitNot},
    Symbol{"(", EToken::Open, EOperation::Add},
    Symbol{")", EToken::Close, EOperation::Add},
    Symbol{",", EToken::Comma, EOperation::Add},
    Symbol{"?", EToken::Question, EOperation::Add},
    Symbol{":", EToken::Colon, EOperation::Add},
};

constexpr bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}
constexpr bool IsHexDigit(char character) {
    return IsDigit(character) || (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
}
constexpr bool IsNameStart(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_' ||
           static_cast<unsigned char>(character) >= 0x80;
}
constexpr bool IsNamePart(char character) {
    return IsNameStart(character) || IsDigit(character) || character == '.';
}

std::size_t SkipDigits(std::string_view text, std::size_t next) {
    while (next < text.size() && IsDigit(text[next]))
        ++next;
    return next;
}

// The end of the exponent that begins at next, or next when there is none.
std::size_t SkipExponent(std::string_view text, std::size_t next) {
    if (next >= text.size() || (text[next] != 'e' && text[next] != 'E'))
        return next;
    std::size_t digits = next + 1;
    if (digits < text.size() && (text[digits] == '+' || text[digits] == '-'))
        ++digits;
    const std::size_t end = SkipDigits(text, digits);
    return end > digits ? end : next;
}

}  // namespace

/**
 * \brief The next token, of kind End at the end
 * \throw InvalidArgumentException A character that no formula has, or a number that does not fit
 */
FormulaToken FormulaScanner::Next() {
    while (m_next < m_text.size() && IsBlank(m_text[m_next]))
        ++m_next;
    FormulaToken token;
    token.position = m_next;
    if (m_next >= m_text.size())
        return token;
    const char first = m_text[m_next];
    const bool isFraction = first == '.' && m_next + 1 < m_text.size() && IsDigit(m_text[m_next + 1]);
    if (IsDigit(first) || isFraction)
        return NextNumber(token);
    if (!IsNameStart(first))
        return NextOperator(token);
    const std::size_t begin = m_next;
    while (m_next < m_text.size() && IsNamePart(m_text[m_next]))
        ++m_next;
    token.kind = EToken::Name;
    token.name = m_text.substr(begin, m_next - begin);
    return token;
}

FormulaToken FormulaScanner::NextNumber(FormulaToken token) {
    const std::size_t begin = m_next;
    token.kind = EToken::Number;
    if (m_text[begin] == '0' && begin + 2 < m_text.size() && (m_text[begin + 1] == 'x' || m_text[begin + 1] == 'X') &&
        IsHexDigit(m_text[begin + 2])) {
        m_next += 2;
        while (m_next < m_text.size() && IsHexDigit(m_text[m_next]))
            ++m_next;
    } else {
        m_next = SkipDigits(m_text, m_next);
        const std::size_t fraction = m_next;
        if (m_next < m_text.size() && m_text[m_next] == '.')
            m_next = SkipDigits(m_text, m_next + 1);
        m_next = SkipExponent(m_text, m_next);
        token.isFloating = m_next > fraction;
    }
    const std::string_view digits = m_text.substr(begin, m_next - begin);
    const bool followedByName = m_next < m_text.size() && IsNamePart(m_text[m_next]);
    const auto integer = token.isFloating ? std::nullopt : ParseInteger(digits);
    const auto number = ParseFloat(digits);
    if (followedByName || !number)
        throw INVALID_ARGUMENT_EXCEPTION("'%s' is not a number", std::string(digits));
    token.isFloating = token.isFloating || !integer;
    token.number.integer = integer.value_or(0);
    token.number.number = *number;
    return token;
}

FormulaToken FormulaScanner::NextOperator(FormulaToken token) {
    const std::string_view rest = m_text.substr(m_next);
    for (const Symbol& symbol : kSymbols) {
        if (rest.substr(0, symbol.text.size()) == symbol.text) {
            m_next += symbol.text.size();
            token.kind = symbol.kind;
            token.operation = symbol.operation;
            return token;
        }
    }
    throw INVALID_ARGUMENT_EXCEPTION("Unexpected '%c' at character %u", rest.front(),
                                     static_cast<unsigned>(m_next + 1));
}

}  // namespace GenApi
