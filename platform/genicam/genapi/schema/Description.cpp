/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a description says, for all node maps that are made from it
 */

#include "schema/Description.h"

#include <cstring>
#include <utility>

#include "schema/Text.h"

namespace GenApi {

Warning MoreWarnings() {
    return {wkSyntax, {}, 0, 0, {}, "There are more warnings; they are not listed"};
}

std::string_view Description::TextOf(const Property& property) const noexcept {
    switch (property.kind) {
        case Property::EValue::Text:
            return {m_texts.data() + property.value, property.length};
        case Property::EValue::LongText: {
            std::uint32_t length = 0;
            std::memcpy(&length, m_texts.data() + property.value, sizeof(length));
            return {m_texts.data() + property.value + sizeof(length), length};
        }
        case Property::EValue::Name:
            return m_names.TextOf(property.value);
        default:
            return {};
    }
}

std::uint32_t Description::NodeOf(const Property& property) const noexcept {
    switch (property.kind) {
        case Property::EValue::Name:
            return m_names.NodeOf(property.value);
        case Property::EValue::Node:
            return property.value;
        default:
            return kNoNode;
    }
}

// What an entry of a structure does not say itself, the structure around it says.
const Property* Description::Find(std::uint32_t node, ETag tag) const noexcept {
    for (const Property& property : PropertiesOf(node)) {
        if (property.tag == tag)
            return &property;
        // Nothing but nested nodes comes behind the first of them.
        if (property.tag == ETag::Nested)
            break;
    }
    const NodeRecord& record = m_nodes[node];
    const bool isEntry = record.kind == ENodeKind::StructEntry && record.enclosing != kNoNode;
    return isEntry ? Find(record.enclosing, tag) : nullptr;
}

std::uint32_t Description::FindNode(std::string_view name) const {
    if (const std::uint32_t node = FindUnqualified(name); node != kNoNode)
        return node;
    for (const auto& [prefix, isStandard] : {std::pair("Std::", true), std::pair("Cust::", false)}) {
        const std::string_view start(prefix);
        if (name.substr(0, start.size()) != start)
            continue;
        const std::uint32_t node = FindUnqualified(name.substr(start.size()));
        return node != kNoNode && m_nodes[node].isStandard == isStandard ? node : kNoNode;
    }
    return kNoNode;
}

std::uint32_t Description::FindUnqualified(std::string_view name) const {
    const std::uint32_t known = m_names.Find(name);
    std::uint32_t node = known != kNoNode ? m_names.NodeOf(known) : kNoNode;
    if (node != kNoNode && m_nodes[node].name != known)
        node = kNoNode;  // another way to write its name
    const bool mayBeEntry = node == kNoNode && name.substr(0, 10) == "EnumEntry_";
    return mayBeEntry ? FindEntry(name.substr(10)) : node;
}

// The name of the enumeration, an underscore, that of the entry; both names may have underscores.
std::uint32_t Description::FindEntry(std::string_view name) const {
    m_entriesIndexed.Do([this] { IndexEntries(); });
    return m_entryNames.Find(NameIndex::Hash(name), [&](std::uint32_t entry) {
        const std::string_view enumeration = NameOf(m_nodes[entry].enclosing);
        return name.substr(0, enumeration.size()) == enumeration && name.size() > enumeration.size() &&
               name[enumeration.size()] == '_' && name.substr(enumeration.size() + 1) == NameOf(entry);
    });
}

// Few descriptions are asked for entries by name: the others need not pay for an index. Called when all nodes are
// there.
void Description::IndexEntries() const {
    m_entryNames = {};
    std::string name;
    for (std::uint32_t node = 0; node < NodeCount(); ++node) {
        const NodeRecord& record = m_nodes[node];
        if (record.kind != ENodeKind::EnumEntry || record.Is(kReplaced) || record.enclosing == kNoNode)
            continue;
        name.assign(NameOf(record.enclosing)).append("_").append(NameOf(node));
        m_entryNames.Insert(NameIndex::Hash(name), node);
    }
}

const NodeTable<Invalidation>& Description::Dependents() const {
    m_dependentsFound.Do([this] { m_dependents = FindDependents(*this); });
    return m_dependents;
}

const NodeTable<Referrer>& Description::Referrers() const {
    m_referrersFound.Do([this] { m_referrers = FindReferrers(*this); });
    return m_referrers;
}

std::string Description::LabelOf(std::uint32_t node) const {
    const NodeRecord& record = m_nodes[node];
    std::string label(GenApi::NameOf(record.kind));
    label += " '";
    // Entries are known by the name of their enumeration as well: their own is not unique.
    if (record.kind == ENodeKind::EnumEntry && record.enclosing != kNoNode)
        label += "EnumEntry_" + Shortened(NameOf(record.enclosing)) + '_';
    label += Shortened(NameOf(node));
    return label + "' (line " + std::to_string(record.line) + ")";
}

const std::string& Description::ReasonOf(std::uint32_t node) const {
    static const std::string none;
    const auto found = m_reasons.find(node);
    return found != m_reasons.end() ? found->second : none;
}

}  // namespace GenApi
