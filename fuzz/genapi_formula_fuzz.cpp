/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Feeds formulas to the compiler and evaluates those that parse, in integers and in floating point
 */

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Base/GCException.h"
#include "formula/FormulaCompiler.h"

using namespace GenApi;

namespace {

/// A few variables and constants; the lines after the first are sub-expressions X0, X1, ...
class FuzzSymbols final : public IFormulaSymbols {
public:
    explicit FuzzSymbols(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            m_lines.push_back(text.substr(0, end));
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        }
    }
    std::optional<FormulaSymbol> Find(std::string_view name) override {
        if (name.size() == 1 && name[0] >= 'A' && name[0] <= 'D')
            return FormulaSymbol{FormulaSymbol::Kind::Variable, static_cast<std::uint32_t>(name[0] - 'A'), {}, false};
        if (name == "K")
            return FormulaSymbol{FormulaSymbol::Kind::Constant, 0, {3, 3.0}, false};
        if (name == "H")
            return FormulaSymbol{FormulaSymbol::Kind::Constant, 0, {0, 0.5}, true};
        if (name.size() == 2 && name[0] == 'X' && name[1] >= '0' && name[1] <= '9' &&
            static_cast<std::uint32_t>(name[1] - '0') < ExpressionCount())
            return FormulaSymbol{FormulaSymbol::Kind::Expression, static_cast<std::uint32_t>(name[1] - '0'), {}, false};
        return std::nullopt;
    }
    std::string_view ExpressionText(std::uint32_t index) override { return m_lines[index + 1]; }
    std::uint32_t ExpressionCount() override {
        return m_lines.empty() ? 0 : static_cast<std::uint32_t>(m_lines.size() - 1);
    }
    std::string_view Formula() const { return m_lines.empty() ? std::string_view() : m_lines.front(); }

private:
    std::vector<std::string_view> m_lines;
};

class FuzzVariables final : public IFormulaVariables {
public:
    std::int64_t IntegerVariable(std::uint32_t index) override { return kIntegers[index]; }
    double FloatVariable(std::uint32_t index) override { return kNumbers[index]; }

private:
    static constexpr std::int64_t kIntegers[] = {0, -1, INT64_MAX, INT64_MIN};
    static constexpr double kNumbers[] = {0.0, -1.5, 1e300, 7.0};
};

void Run(std::string_view text, bool isFloating) {
    FuzzSymbols symbols(text);
    FuzzVariables variables;
    try {
        const CompiledFormula formula = CompileFormula(symbols.Formula(), symbols, isFloating);
        if (isFloating)
            formula.Program().EvaluateFloat(variables);
        else
            formula.Program().EvaluateInteger(variables);
    } catch (const GenICam::InvalidArgumentException&) {
        return;
    } catch (const GenICam::OutOfRangeException&) {
        return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Run(text, false);
    Run(text, true);
    return 0;
}
