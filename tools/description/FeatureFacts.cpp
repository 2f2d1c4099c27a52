/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a description says of one feature before any camera is asked
 */
#include "description/FeatureFacts.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <map>

namespace tools {

namespace {

constexpr int kLongestChain = 100;  // of pValue references; a longer one is a circle or hostile

const std::map<std::string_view, std::string_view>& Interfaces() {
    static const std::map<std::string_view, std::string_view> interfaces{
        {"IntReg", "Integer"},       {"MaskedIntReg", "Integer"},  {"StructEntry", "Integer"},
        {"IntConverter", "Integer"}, {"IntSwissKnife", "Integer"}, {"IntKey", "Integer"},
        {"FloatReg", "Float"},       {"Converter", "Float"},       {"SwissKnife", "Float"},
        {"StringReg", "String"},     {"TextDesc", "String"},       {"StructReg", "Register"}};
    return interfaces;
}

std::string InterfaceOf(const DescribedNode& node) {
    const auto found = Interfaces().find(node.kind);
    return found != Interfaces().end() ? std::string(found->second) : node.kind;
}

bool IsRegister(const DescribedNode& node) {
    return node.Find("Address") != nullptr || node.Find("pAddress") != nullptr || node.Find("pPort") != nullptr;
}

std::string Combined(const std::string& left, const std::string& right) {
    if (left == right || right == "RW")
        return left;
    return left == "RW" ? right : "NA";
}

/// Access along the chain of values, as far as the file fixes it.
std::string AccessOf(const DescriptionModel& model, const DescribedNode& start) {
    std::string access = "RW";
    const DescribedNode* node = &start;
    for (int link = 0; node != nullptr && link < kLongestChain; ++link) {
        if (node->kind == "Category")
            return "RO";
        if (node->kind == "SwissKnife" || node->kind == "IntSwissKnife" || node->kind == "IntKey" ||
            node->kind == "TextDesc")
            access = Combined(access, "RO");
        if (const NodeElement* imposed = node->Find("ImposedAccessMode"))
            access = Combined(access, imposed->text);
        if (IsRegister(*node)) {
            const std::string mode = node->Text("AccessMode");
            return Combined(access, mode.empty() ? "RO" : mode);
        }
        const NodeElement* value = node->Find("pValue");
        node = value != nullptr ? model.Find(value->text) : nullptr;
    }
    return access;
}

/// The node whose range and unit count where a node has none itself: the one that its value comes from unchanged.
const DescribedNode* Behind(const DescriptionModel& model, const DescribedNode& node) {
    const bool passesOn = node.kind == "Integer" || node.kind == "Float";
    const NodeElement* value = passesOn ? node.Find("pValue") : nullptr;
    return value != nullptr ? model.TargetOf(*value) : nullptr;
}

/// The nearest node of the chain that has one of both elements.
const DescribedNode* Owner(const DescriptionModel& model, const DescribedNode& start, const std::string& constant,
                           const std::string& reference) {
    const DescribedNode* node = &start;
    for (int link = 0; node != nullptr && link < kLongestChain; ++link, node = Behind(model, *node))
        if (node->Find(constant) != nullptr || node->Find(reference) != nullptr)
            return node;
    return nullptr;
}

/// A limit: a number of the file, or the name of the node that knows it.
std::string LimitOf(const DescriptionModel& model, const DescribedNode& start, const std::string& name) {
    const DescribedNode* node = Owner(model, start, name, "p" + name);
    if (node == nullptr)
        return {};
    const NodeElement* reference = node->Find("p" + name);
    if (reference == nullptr)
        return node->Text(name);
    const DescribedNode* target = model.TargetOf(*reference);
    const NodeElement* value = target != nullptr ? target->Find("Value") : nullptr;
    return value != nullptr && target->Find("pValue") == nullptr ? value->text : reference->text;
}

std::string UnitOf(const DescriptionModel& model, const DescribedNode& start) {
    const DescribedNode* node = Owner(model, start, "Unit", "Unit");
    return node != nullptr ? node->Text("Unit") : std::string();
}

}  // namespace

/// Collects what the file says of a feature: of itself and, where it says nothing, of the node of its value.
FeatureFacts FactsOf(const DescriptionModel& model, const DescribedNode& node) {
    FeatureFacts facts;
    facts.interfaceName = InterfaceOf(node);
    facts.access = AccessOf(model, node);
    facts.minimum = LimitOf(model, node, "Min");
    facts.maximum = LimitOf(model, node, "Max");
    facts.increment = LimitOf(model, node, "Inc");
    facts.unit = UnitOf(model, node);
    facts.visibility = node.Find("Visibility") != nullptr ? node.Text("Visibility") : "Beginner";
    facts.documentation = node.Find("Description") != nullptr ? node.Text("Description") : node.Text("ToolTip");
    for (const std::size_t entry : node.entries)
        facts.entries.push_back(model.Nodes()[entry].name);
    for (const auto& [element, condition] :
         {std::pair("pIsImplemented", "implemented if"), std::pair("pIsAvailable", "available if"),
          std::pair("pIsLocked", "locked if")})
        if (const NodeElement* reference = node.Find(element))
            facts.conditions.emplace_back(condition, reference->text);
    return facts;
}

std::string RangeText(const FeatureFacts& facts) {
    if (!facts.entries.empty())
        return fmt::format("{}", fmt::join(facts.entries, ", "));
    std::string text;
    if (!facts.minimum.empty() || !facts.maximum.empty())
        text = fmt::format("{} .. {}", facts.minimum, facts.maximum);
    if (!facts.increment.empty() && facts.increment != "1")
        text += fmt::format("{}step {}", text.empty() ? "" : " ", facts.increment);
    if (!facts.unit.empty())
        text += (text.empty() ? "" : " ") + facts.unit;
    return text;
}

}  // namespace tools
