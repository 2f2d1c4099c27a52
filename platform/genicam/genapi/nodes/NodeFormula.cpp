/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The formula of a node: its names, its compilation, its variables
 */

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/NodeMap.h"
#include "formula/FormulaCompiler.h"
#include "nodes/Enumeration.h"
#include "nodes/FormulaNodes.h"
#include "schema/Text.h"

namespace GenApi {

namespace {

using Part = FormulaVariable::Part;

/// The names that the elements of a node give to variables, constants and sub-expressions.
class NodeSymbols final : public IFormulaSymbols {
public:
    NodeSymbols(CNode& owner, std::string_view ownName);

    std::optional<FormulaSymbol> Find(std::string_view name) override;
    std::string_view ExpressionText(std::uint32_t index) override { return m_expressions[index]; }
    std::uint32_t ExpressionCount() override { return static_cast<std::uint32_t>(m_expressions.size()); }
    const std::vector<FormulaVariable>& Variables() const noexcept { return m_variables; }

private:
    struct Declaration {
        const Property* property;
        FormulaSymbol::Kind kind;
        std::uint32_t expression;
    };

    void Declare(ETag tag, FormulaSymbol::Kind kind);
    std::optional<FormulaSymbol> Search(std::string_view name);
    FormulaSymbol Add(const FormulaVariable& variable);
    FormulaVariable Resolve(std::string_view suffix, const Property& property) const;
    FormulaSymbol ConstantOf(std::string_view name, const Property& property) const;

    CNode& m_owner;
    std::string_view m_ownName;
    std::unordered_map<std::string_view, Declaration> m_declarations;
    std::unordered_map<std::string_view, FormulaSymbol> m_found;
    std::vector<std::string_view> m_expressions;
    std::vector<FormulaVariable> m_variables;
};

NodeSymbols::NodeSymbols(CNode& owner, std::string_view ownName) : m_owner(owner), m_ownName(ownName) {
    Declare(ETag::pVariable, FormulaSymbol::Kind::Variable);
    Declare(ETag::Constant, FormulaSymbol::Kind::Constant);
    Declare(ETag::Expression, FormulaSymbol::Kind::Expression);
}

void NodeSymbols::Declare(ETag tag, FormulaSymbol::Kind kind) {
    const std::span<const Property> properties = m_owner.Properties();
    for (std::size_t i = 0; i + 1 < properties.size(); ++i) {
        if (properties[i].tag != tag || properties[i + 1].tag != ETag::AttributeName)
            continue;
        m_declarations.try_emplace(m_owner.TextOf(properties[i + 1]),
                                   Declaration{&properties[i], kind, static_cast<std::uint32_t>(m_expressions.size())});
        if (kind == FormulaSymbol::Kind::Expression)
            m_expressions.push_back(m_owner.TextOf(properties[i]));
    }
}

std::optional<FormulaSymbol> NodeSymbols::Find(std::string_view name) {
    if (const auto found = m_found.find(name); found != m_found.end())
        return found->second;
    const auto symbol = Search(name);
    if (symbol)
        m_found.emplace(name, *symbol);
    return symbol;
}

/**
 * \brief What a name stands for
 *
 * A variable may be declared with a suffix, or get one where it is used: A.Max is the maximum of A's node.
 */
std::optional<FormulaSymbol> NodeSymbols::Search(std::string_view name) {
    if (!m_ownName.empty() && name == m_ownName)
        return Add({nullptr, Part::Own, 0});
    const std::size_t dot = name.find('.');
    const std::string_view suffix = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
    if (const auto found = m_declarations.find(name); found != m_declarations.end()) {
        const Declaration& declaration = found->second;
        if (declaration.kind == FormulaSymbol::Kind::Constant)
            return ConstantOf(name, *declaration.property);
        if (declaration.kind == FormulaSymbol::Kind::Expression)
            return FormulaSymbol{FormulaSymbol::Kind::Expression, declaration.expression, {}, false};
        return Add(Resolve(suffix, *declaration.property));
    }
    const auto base = suffix.empty() ? m_declarations.end() : m_declarations.find(name.substr(0, dot));
    if (base == m_declarations.end() || base->second.kind != FormulaSymbol::Kind::Variable)
        return std::nullopt;
    return Add(Resolve(suffix, *base->second.property));
}

FormulaSymbol NodeSymbols::ConstantOf(std::string_view name, const Property& property) const {
    const std::string_view text = m_owner.TextOf(property);
    const auto integer = ParseInteger(text);
    const auto number = ParseFloat(text);
    if (!number)
        throw INVALID_ARGUMENT_EXCEPTION("Constant %s: '%s' is no number", Shortened(name), Shortened(text));
    return {FormulaSymbol::Kind::Constant, 0, {integer.value_or(0), *number}, !integer};
}

FormulaSymbol NodeSymbols::Add(const FormulaVariable& variable) {
    m_variables.push_back(variable);
    return {FormulaSymbol::Kind::Variable, static_cast<std::uint32_t>(m_variables.size() - 1), {}, false};
}

FormulaVariable NodeSymbols::Resolve(std::string_view suffix, const Property& property) const {
    CNode& node = NumberNodeOf(m_owner, property);
    if (suffix.empty() || suffix == "Value")
        return {&node, Part::Value, 0};
    if (suffix == "Min")
        return {&node, Part::Min, 0};
    if (suffix == "Max")
        return {&node, Part::Max, 0};
    if (suffix == "Inc")
        return {&node, Part::Inc, 0};
    constexpr std::array<std::string_view, 2> kEntryWords = {"Entry.", "Enum."};
    for (const std::string_view word : kEntryWords) {
        auto* enumeration = dynamic_cast<CEnumeration*>(&node);
        if (suffix.substr(0, word.size()) != word || enumeration == nullptr)
            continue;
        CEnumEntry* entry = enumeration->EntryOf(suffix.substr(word.size()));
        if (entry != nullptr)
            return {entry, Part::Entry, entry->Number64()};
    }
    throw INVALID_ARGUMENT_EXCEPTION("Variable '%s' has no '%s'", Shortened(m_owner.TextOf(property)),
                                     Shortened(suffix));
}

/// Fetches the variables of one evaluation.
class NodeVariables final : public IFormulaVariables {
public:
    NodeVariables(std::span<const FormulaVariable> variables, Evaluation& evaluation, std::int64_t ownInteger,
                  double ownNumber)
        : m_variables(variables), m_evaluation(evaluation), m_ownInteger(ownInteger), m_ownNumber(ownNumber) {}

    std::int64_t IntegerVariable(std::uint32_t index) override {
        const FormulaVariable& variable = m_variables[index];
        switch (variable.part) {
            case Part::Value:
                RequireReadable(*variable.node);
                return variable.node->Integer(m_evaluation);
            case Part::Min:
                return variable.node->IntegerBound(EBound::Min, m_evaluation);
            case Part::Max:
                return variable.node->IntegerBound(EBound::Max, m_evaluation);
            case Part::Inc:
                return variable.node->IntegerInc(m_evaluation);
            case Part::Own:
                return m_ownInteger;
            default:
                return variable.entry;
        }
    }

    double FloatVariable(std::uint32_t index) override {
        const FormulaVariable& variable = m_variables[index];
        switch (variable.part) {
            case Part::Value:
                RequireReadable(*variable.node);
                return variable.node->Float(m_evaluation);
            case Part::Min:
                return variable.node->FloatBound(EBound::Min, m_evaluation);
            case Part::Max:
                return variable.node->FloatBound(EBound::Max, m_evaluation);
            case Part::Inc:
                return variable.node->FloatInc(m_evaluation);
            case Part::Own:
                return m_ownNumber;
            default:
                return static_cast<double>(variable.entry);
        }
    }

private:
    void RequireReadable(CNode& node) {
        if (!IsReadable(node.Access(m_evaluation, false)))
            throw ACCESS_EXCEPTION("%s, a variable of a formula, is not readable", node.Label());
    }

    std::span<const FormulaVariable> m_variables;
    Evaluation& m_evaluation;
    const std::int64_t m_ownInteger;
    const double m_ownNumber;
};

}  // namespace

namespace {

/// As FormulaVariable, whatever the map.
struct SharedVariable {
    std::uint32_t node;
    Part part;
    std::int64_t entry;
};

/// A compiled formula as all maps of a description have it.
struct SharedFormula {
    FormulaProgram program;
    std::span<const SharedVariable> variables;
};

const SharedFormula& Compile(CNode& owner, const Property& property, std::string_view ownName, bool floating) {
    NodeSymbols symbols(owner, ownName);
    try {
        const auto compiled = CompileFormula(owner.TextOf(property), symbols, floating);
        std::vector<SharedVariable> variables;
        for (const FormulaVariable& variable : symbols.Variables())
            variables.push_back(
                {variable.node != nullptr ? variable.node->Index() : kNoNode, variable.part, variable.entry});
        return owner.Schema().Parts().Keep<SharedFormula>(property, [&](Arena& arena) {
            return arena.New<SharedFormula>(SharedFormula{compiled.Program(arena), arena.Copy(variables)});
        });
    } catch (const GenICam::InvalidArgumentException& exception) {
        throw INVALID_ARGUMENT_EXCEPTION("%s does not parse: %s", std::string(NameOf(property.tag)),
                                         exception.GetDescription());
    }
}

}  // namespace

NodeFormula::NodeFormula(CNode& owner, ETag element, std::string_view ownName, bool floating) {
    const Property* property = owner.Find(element);
    if (property == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no %s", std::string(NameOf(element)));
    const auto* const known = owner.Schema().Parts().Find<SharedFormula>(*property);
    const SharedFormula& shared = known != nullptr ? *known : Compile(owner, *property, ownName, floating);
    std::vector<FormulaVariable> variables;
    for (const SharedVariable& variable : shared.variables)
        variables.push_back({owner.Map().NodeAt(variable.node), variable.part, variable.entry});
    m_program = &shared.program;
    m_variables = owner.Map().Memory().Copy(variables);
}

std::int64_t NodeFormula::EvaluateInteger(Evaluation& evaluation, std::int64_t own) const {
    NodeVariables variables(m_variables, evaluation, own, static_cast<double>(own));
    return m_program->EvaluateInteger(variables);
}

double NodeFormula::EvaluateFloat(Evaluation& evaluation, double own) const {
    NodeVariables variables(m_variables, evaluation, 0, own);
    return m_program->EvaluateFloat(variables);
}

bool NodeFormula::UsesOwnValue() const noexcept {
    return std::any_of(m_variables.begin(), m_variables.end(),
                       [](const FormulaVariable& variable) { return variable.part == Part::Own; });
}

// All variables must be readable, in their order; of their values the first one is needed that stands before a
// condition.
Waiting NodeFormula::Need(EPart part) const noexcept {
    const bool isAccess = part == EPart::ReadAccess || part == EPart::FullAccess;
    const std::uint32_t first = isAccess ? 0 : m_program->FirstVariable();
    if (IsLimit(part) || first >= m_variables.size() || m_variables[first].part != Part::Value)
        return {};
    return {m_variables[first].node, isAccess ? EPart::ReadAccess : EPart::Value};
}

bool NodeFormula::AllReadable(Evaluation& evaluation) const {
    for (const FormulaVariable& variable : m_variables) {
        if (variable.part == Part::Value && !IsReadable(variable.node->Access(evaluation, false)))
            return false;
    }
    return true;
}

}  // namespace GenApi
