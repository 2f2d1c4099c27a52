/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Splits a formula into tokens
 */
#pragma once

#include <cstdint>
#include <string_view>

#include "formula/FormulaProgram.h"

namespace GenApi {

enum class EToken : std::uint8_t {
    End,
    Number,
    Name,
    Operator,
    LogicalAnd,
    LogicalOr,
    Not,
    Open,
    Close,
    Comma,
    Question,
    Colon
};

struct FormulaToken {
    EToken kind = EToken::End;
    EOperation operation = EOperation::Add;  ///< of an operator
    FormulaNumber number{};
    bool isFloating = false;  ///< of a number: it has a fraction or an exponent
    std::string_view name;
    std::size_t position = 0;
};

/// Reads the tokens of one formula. Reentrant.
class FormulaScanner {
public:
    explicit FormulaScanner(std::string_view text) : m_text(text) {}
    FormulaToken Next();

private:
    FormulaToken NextNumber(FormulaToken token);
    FormulaToken NextOperator(FormulaToken token);

    std::string_view m_text;
    std::size_t m_next = 0;
};

}  // namespace GenApi
