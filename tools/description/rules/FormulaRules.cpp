/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Rules about formulas
 */
#include <fmt/format.h>

#include <cctype>
#include <functional>
#include <set>
#include <string>

#include "description/rules/Rules.h"
#include "output/Text.h"

namespace tools {

namespace {

bool IsNameLetter(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
}

// Words of a formula that begin with a letter: names of variables, functions and sub-expressions.
std::set<std::string, std::less<>> WordsOf(std::string_view formula) {
    std::set<std::string, std::less<>> words;
    for (std::size_t begin = 0; begin < formula.size();) {
        if (!IsNameLetter(formula[begin])) {
            ++begin;
            continue;
        }
        std::size_t end = begin;
        while (end < formula.size() && IsNameLetter(formula[end]))
            ++end;
        words.emplace(formula.substr(begin, end - begin));
        begin = end;
    }
    return words;
}

// Whether "/ 0" or "% 0" stands in a formula; "/ 0.5" and "/ 0x10" are something else.
bool DividesByZero(std::string_view formula) {
    for (std::size_t at = formula.find_first_of("/%"); at != std::string_view::npos;
         at = formula.find_first_of("/%", at + 1)) {
        std::size_t begin = formula.find_first_not_of(" \t\r\n(", at + 1);
        if (begin == std::string_view::npos || formula[begin] != '0')
            continue;
        const std::size_t end = formula.find_first_not_of("0.", begin);
        if (end == std::string_view::npos || !IsNameLetter(formula[end]))
            return true;
    }
    return false;
}

struct Formulas {
    std::set<std::string, std::less<>> words;  // of all formulas and expressions of the node
    Place place;
    bool exists = false;
};

Formulas FormulasOf(RuleReport& report, const DescribedNode& node) {
    Formulas all;
    for (const NodeElement& element : node.elements) {
        const bool isFormula =
            element.name == "Formula" || element.name == "FormulaTo" || element.name == "FormulaFrom";
        if (!isFormula && element.name != "Expression")
            continue;
        all.words.merge(WordsOf(element.text));
        if (isFormula) {
            all.place = element.place;
            all.exists = true;
        }
        if (DividesByZero(element.text))
            report.Add("division-by-zero", element.place,
                       fmt::format("{} of {} divides by 0: {}", element.name, Label(node), Printable(element.text)));
    }
    return all;
}

void CheckVariables(RuleReport& report, const DescribedNode& node, const Formulas& formulas) {
    for (const NodeElement& element : node.elements)
        if (element.name == "pVariable" && !element.label.empty() && !formulas.words.contains(element.label))
            report.Add("unused-variable", element.place,
                       fmt::format("no formula of {} uses the variable {}", Label(node), Printable(element.label)));
}

// A converter's formulas see what is converted under fixed names.
void CheckConverter(RuleReport& report, const DescribedNode& node) {
    const auto check = [&](std::string_view element, std::string_view variable) {
        const NodeElement* const formula = node.Find(element);
        if (formula != nullptr && !WordsOf(formula->text).contains(variable))
            report.Add("formula-ignores-value", formula->place,
                       fmt::format("{} of {} does not depend on {}: {}", element, Label(node), variable,
                                   Printable(formula->text)));
    };
    check("FormulaTo", "FROM");
    check("FormulaFrom", "TO");
}

}  // namespace

void CheckFormulas(RuleReport& report) {
    for (const DescribedNode& node : report.Model().Nodes()) {
        const Formulas formulas = FormulasOf(report, node);
        if (!formulas.exists)
            continue;
        CheckVariables(report, node, formulas);
        if (node.kind == "Converter" || node.kind == "IntConverter")
            CheckConverter(report, node);
    }
}

}  // namespace tools
