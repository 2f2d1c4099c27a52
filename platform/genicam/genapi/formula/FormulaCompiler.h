/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Compiles the formulas of the standard
 */
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "formula/FormulaProgram.h"
#include "formula/FormulaScanner.h"

namespace GenApi {

/// What a name in a formula stands for.
struct FormulaSymbol {
    enum class Kind : std::uint8_t { Variable, Constant, Expression };

    Kind kind = Kind::Variable;
    std::uint32_t index = 0;   ///< of a variable, or of a sub-expression
    FormulaNumber constant{};  ///< of a constant
    bool isFloating = false;   ///< of a constant: it is no integer
};

/// The names that a formula may use.
class IFormulaSymbols {
public:
    virtual std::optional<FormulaSymbol> Find(std::string_view name) = 0;
    virtual std::string_view ExpressionText(std::uint32_t index) = 0;
    virtual std::uint32_t ExpressionCount() = 0;

protected:
    ~IFormulaSymbols() = default;
};

/// The steps of a compiled formula, before they move into an arena.
struct CompiledFormula {
    std::vector<Instruction> code;
    std::vector<FormulaNumber> constants;
    std::vector<FormulaSegment> segments;
    std::uint32_t stackSize = 0;
    bool floating = false;

    FormulaProgram Program() const { return {code, constants, segments, stackSize, floating}; }
    FormulaProgram Program(Arena& arena) const {
        return {arena.Copy(code), arena.Copy(constants), arena.Copy(segments), stackSize, floating};
    }
};

/// Compiles a formula. With \a floating false it computes in 64 bit integers, unless a part of it is no integer.
/// Throws InvalidArgumentException when the formula does not parse.
CompiledFormula CompileFormula(std::string_view formula, IFormulaSymbols& symbols, bool floating);

}  // namespace GenApi
