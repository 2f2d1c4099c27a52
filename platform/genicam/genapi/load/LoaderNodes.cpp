/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loads a description into a node map: the nodes and their elements
 */

#include <algorithm>
#include <array>

#include "Base/GCException.h"
#include "load/Loader.h"
#include "nodes/NodeFactory.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

namespace {

// Groups within groups.
constexpr int kMaxGroups = 64;

std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool IsRegisterKind(ENodeKind kind) {
    switch (kind) {
        case ENodeKind::IntReg:
        case ENodeKind::MaskedIntReg:
        case ENodeKind::StructEntry:
        case ENodeKind::FloatReg:
        case ENodeKind::StringReg:
        case ENodeKind::Register:
        case ENodeKind::ConfRom:
        case ENodeKind::AdvFeatureLock:
        case ENodeKind::SmartFeature:
            return true;
        default:
            return false;
    }
}

// The element that a node within a node stands for, Unknown when it has no place there.
ETag NestedTagOf(ENodeKind outer, ENodeKind inner) {
    if (inner == ENodeKind::EnumEntry)
        return outer == ENodeKind::Enumeration ? ETag::Nested : ETag::Unknown;
    if (inner == ENodeKind::StructEntry)
        return outer == ENodeKind::StructReg ? ETag::Nested : ETag::Unknown;
    if (inner == ENodeKind::IntKey || inner == ENodeKind::TextDesc)
        return outer == ENodeKind::ConfRom ? ETag::Nested : ETag::Unknown;
    // A formula within a register is a part of its address.
    const bool isFormula = inner == ENodeKind::IntSwissKnife || inner == ENodeKind::IntConverter;
    return isFormula && (IsRegisterKind(outer) || outer == ENodeKind::StructReg) ? ETag::pAddress : ETag::Unknown;
}

}  // namespace

void Loader::LoadNodes(pugi::xml_node parent, int depth) {
    if (depth > kMaxGroups)
        Refuse(PositionOf(parent), "Groups are nested too deeply");
    for (const pugi::xml_node element : parent.children()) {
        if (element.type() != pugi::node_element)
            continue;
        const std::string_view name = LocalName(element.name());
        const ENodeKind kind = KindOf(name);
        if (name == "Group") {
            ForEachAttribute(element, [](pugi::xml_attribute, std::string_view) {});
            LoadNodes(element, depth + 1);
        } else if (kind == ENodeKind::None || kind == ENodeKind::EnumEntry || kind == ENodeKind::StructEntry)
            Warn(wkUnknownElement, PositionOf(element), "", "Unknown element " + Shortened(name));
        else
            LoadNode(element, kind);
    }
}

void Loader::LoadNode(pugi::xml_node element, ENodeKind kind) {
    CNode& node = MakeNode(element, kind, nullptr);
    LoadContent(element, node);
    const bool needsName = kind != ENodeKind::StructReg;
    if (node.Name().empty()) {
        if (needsName) {
            Warn(wkBadValue, PositionOf(element), "", std::string(NameOf(kind)) + " has no name");
            Replace(node);
        }
        return;
    }
    if (!EnterName(node, element))
        Replace(node);
}

CNode& Loader::MakeNode(pugi::xml_node element, ENodeKind kind, CNode* enclosing) {
    const auto index = static_cast<std::uint32_t>(m_map.m_nodes.size());
    CNode* node = GenApi::MakeNode({&m_map, index, kind}, m_map.m_arena);
    m_map.m_nodes.push_back(node);
    const TextPlace place = m_source->PlaceOf(PositionOf(element));
    node->SetPlace(place.line, place.column, enclosing);
    if (IsRegisterKind(kind))
        node->AddTraits(kIsRegister);
    LoadNodeAttributes(element, *node);
    return *node;
}

// Nodes within a node are made at once, so that the node can name them, and filled when the node is complete: the
// elements of one node lie side by side, those for nested nodes behind all others. There may be a million of them, and
// nobody who looks for another element has to pass them.
void Loader::LoadContent(pugi::xml_node element, CNode& node) {
    std::vector<Nested> nested;
    const auto first = static_cast<std::uint32_t>(m_map.m_properties.size());
    for (const pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element)
            continue;
        const std::string_view name = LocalName(child.name());
        const ETag plain = TagOf(name);
        const ENodeKind kind = plain == ETag::Unknown ? KindOf(name) : ENodeKind::None;
        const ETag tag = kind != ENodeKind::None ? NestedTagOf(node.Kind(), kind) : ETag::Unknown;
        if (tag == ETag::Unknown)
            LoadProperty(child, plain, node);
        else
            nested.push_back({MakeNode(child, kind, &node).Index(), tag, child});
    }
    // Parts of an address come before entries: who looks for another element stops at the first entry.
    for (const bool isEntry : {false, true}) {
        for (const Nested& inner : nested) {
            if ((inner.tag == ETag::Nested) == isEntry)
                Add(inner.tag, "", PositionOf(inner.element), inner.node);
        }
    }
    node.SetProperties(first, static_cast<std::uint32_t>(m_map.m_properties.size()) - first);
    for (const Nested& inner : nested)
        LoadNested(inner, node);
}

void Loader::LoadNested(const Nested& inner, const CNode& outer) {
    CNode& node = *m_map.m_nodes[inner.node];
    LoadContent(inner.element, node);
    // Entries are found by way of their enumeration: their names are not unique.
    if (node.Kind() != ENodeKind::EnumEntry && !node.Name().empty() && !EnterName(node, inner.element))
        Replace(node);
    if (node.Kind() == ENodeKind::StructEntry)
        node.AddTraits((outer.Is(kHasAccessRules) ? kHasAccessRules : 0U) |
                       (outer.Is(kUsesPolling) ? kUsesPolling : 0U) | (outer.Is(kHasErrorNode) ? kHasErrorNode : 0U));
}

void Loader::LoadNodeAttributes(pugi::xml_node element, CNode& node) {
    ForEachAttribute(element, [&](pugi::xml_attribute attribute, std::string_view name) {
        const std::string_view raw = attribute.value();
        const std::size_t position = m_source->PositionOf(attribute.name());
        if (name == "Name") {
            std::uint32_t text = 0;
            std::uint32_t length = 0;
            Store(raw, m_source->PositionOf(attribute.value()), text, length);
            node.SetName(text, length);
            WarnAboutBlanks(raw, position, node, "The name");
        } else if (name == "NameSpace") {
            const auto nameSpace = ParseNameSpace(Trimmed(raw));
            if (!nameSpace)
                Warn(wkBadValue, position, node.Name(), "NameSpace '" + Shortened(raw) + "' is not known");
            node.SetNameSpace(nameSpace.value_or(Custom));
        } else if (name == "MergePriority") {
            m_priorities[node.Index()] = ParseInteger(raw).value_or(0);
        } else if (name != "ExposeStatic" && name != "Comment" && name.substr(0, 5) != "xmlns") {
            Warn(wkUnknownAttribute, position, node.Name(),
                 std::string(NameOf(node.Kind())) + " has an unknown attribute " + Shortened(name));
        }
    });
}

void Loader::LoadProperty(pugi::xml_node element, ETag tag, CNode& node) {
    if (tag == ETag::Unknown) {
        Warn(wkUnknownElement, PositionOf(element), node.Name(),
             std::string(NameOf(node.Kind())) + " has an unknown element " + Shortened(LocalName(element.name())));
        return;
    }
    if (tag == ETag::Extension)
        return;
    const std::string_view text = TextOf(element);
    const bool hasPlace = !text.empty() && text.data() != m_joined.data();
    Add(tag, text, hasPlace ? m_source->PositionOf(text.data()) : PositionOf(element));
    CheckProperty(element, tag, text, node);
    if (tag == ETag::pIsImplemented || tag == ETag::pIsAvailable || tag == ETag::pIsLocked ||
        tag == ETag::ImposedAccessMode)
        node.AddTraits(kHasAccessRules);
    if (tag == ETag::PollingTime)
        node.AddTraits(kUsesPolling);
    if (tag == ETag::pError)
        node.AddTraits(kHasErrorNode);
    if (element.first_attribute())
        LoadPropertyAttributes(element, tag, node);
}

// What a file says in the wrong place or in words that do not exist would pass for something else.
void Loader::CheckProperty(pugi::xml_node element, ETag tag, std::string_view text, const CNode& node) {
    if (!HasElement(node.Kind(), tag))
        Warn(wkUnknownElement, PositionOf(element), node.Name(),
             std::string(NameOf(tag)) + " has no meaning in " + std::string(NameOf(node.Kind())));
    const bool isText = IsFreeText(tag) || (tag == ETag::Value && node.Kind() == ENodeKind::String);
    if (isText)
        return;
    WarnAboutBlanks(text, PositionOf(element), node, NameOf(tag));
    if (!IsKnownWord(tag, Trimmed(text)))
        Warn(wkBadValue, PositionOf(element), node.Name(),
             std::string(NameOf(tag)) + " '" + Shortened(Trimmed(text)) + "' is not known");
}

void Loader::WarnAboutBlanks(std::string_view raw, std::size_t position, const CNode& node, std::string_view what) {
    if (!raw.empty() && (IsBlank(raw.front()) || IsBlank(raw.back())))
        Warn(wkSyntax, position, node.Name(), std::string(what) + " has blanks around it");
}

void Loader::LoadPropertyAttributes(pugi::xml_node element, ETag tag, const CNode& node) {
    ForEachAttribute(element, [&](pugi::xml_attribute attribute, std::string_view name) {
        const std::size_t position = m_source->PositionOf(attribute.value());
        const bool isNamed = tag == ETag::pVariable || tag == ETag::Constant || tag == ETag::Expression;
        const std::string_view value = attribute.value();
        if (name == "Name" && isNamed)
            Add(ETag::AttributeName, value, position);
        else if (name == "Index" && (tag == ETag::ValueIndexed || tag == ETag::pValueIndexed))
            Add(ETag::AttributeIndex, value, position);
        else if (name == "Offset" && tag == ETag::pIndex)
            Add(ETag::AttributeOffset, value, position);
        else if (name == "pOffset" && tag == ETag::pIndex)
            Add(ETag::AttributePOffset, value, position);
        else if (name.substr(0, 5) != "xmlns")
            Warn(wkUnknownAttribute, m_source->PositionOf(attribute.name()), node.Name(),
                 std::string(NameOf(tag)) + " has an unknown attribute " + Shortened(name));
        WarnAboutBlanks(value, m_source->PositionOf(attribute.name()), node, name == "Name" ? "The name" : name);
    });
}

// False when the node gives way to another one of its name.
bool Loader::EnterName(CNode& node, pugi::xml_node element) {
    const std::uint32_t hash = NameIndex::Hash(node.Name());
    const std::uint32_t before = m_map.m_names.Find(hash, [&](std::uint32_t index) {
        const CNode& held = *m_map.m_nodes[index];
        return held.Name() == node.Name() && !held.Is(kReplaced);
    });
    if (before == kNoNode) {
        m_map.m_names.Insert(hash, node.Index());
        return true;
    }
    const auto priorityOf = [this](std::uint32_t index) {
        const auto found = m_priorities.find(index);
        return found != m_priorities.end() ? found->second : 0;
    };
    const std::int64_t own = priorityOf(node.Index());
    const std::int64_t other = priorityOf(before);
    const bool isOfThisDescription = before >= m_firstNode;
    if (isOfThisDescription)
        Warn(wkDuplicateName, PositionOf(element), node.Name(),
             "There is already a node '" + Shortened(node.Name()) + "'");
    // Within one description the first one counts, between two of them the injected one.
    if (own < other || (own == other && isOfThisDescription))
        return false;
    Replace(*m_map.m_nodes[before]);
    m_map.m_names.Replace(hash, before, node.Index());
    return true;
}

void Loader::Replace(CNode& node) {
    node.AddTraits(kReplaced);
    // While a description is read, only nodes within this one are known by number.
    for (const Property& property : node.Properties()) {
        if (property.node != kNoNode)
            Replace(*m_map.m_nodes[property.node]);
    }
}

// --- Texts ---

void Loader::Add(ETag tag, std::string_view raw, std::size_t position, std::uint32_t node) {
    Property property;
    property.tag = tag;
    property.node = node;
    Store(raw, position, property.text, property.length);
    m_map.m_properties.push_back(property);
    m_positions.push_back(static_cast<std::uint32_t>(position));
}

/**
 * \brief Put a text into the map's store
 * \param[in] raw As it stands in the document
 * \param[in] position Where it begins there
 */
void Loader::Store(std::string_view raw, std::size_t position, std::uint32_t& text, std::uint32_t& length) {
    const std::string_view trimmed = Trimmed(raw);
    if (trimmed.empty()) {
        text = length = 0;
        return;
    }
    position += static_cast<std::size_t>(trimmed.data() - raw.data());
    std::string& store = m_map.m_texts;
    text = static_cast<std::uint32_t>(store.size());
    if (trimmed.find('&') == std::string_view::npos && !m_source->HasInvalidUtf8()) {
        store += trimmed;
    } else {
        m_decoded.clear();
        Decode(trimmed, position);
        Repair(position);
        store += m_decoded;
    }
    length = static_cast<std::uint32_t>(store.size()) - text;
}

void Loader::Decode(std::string_view raw, std::size_t position) {
    std::size_t next = 0;
    while (next < raw.size()) {
        const std::size_t reference = std::min(raw.find('&', next), raw.size());
        m_decoded += raw.substr(next, reference - next);
        next = reference;
        if (next < raw.size())
            next += DecodeReference(raw.substr(next), position + next);
    }
}

// Appends what a reference stands for; returns how many characters it has.
std::size_t Loader::DecodeReference(std::string_view rest, std::size_t position) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    for (const auto& [entity, character] : kEntities) {
        if (rest.substr(0, entity.size()) == entity) {
            m_decoded += character;
            return entity.size();
        }
    }
    const std::size_t end = rest.substr(0, 12).find(';');
    if (rest.substr(0, 2) == "&#" && end != std::string_view::npos) {
        const std::string_view digits = rest.substr(2, end - 2);
        const bool isHexadecimal = digits.substr(0, 1) == "x";
        const auto code = ParseInteger(isHexadecimal ? "0" + std::string(digits) : std::string(digits));
        if (code && *code > 0 && *code < 0x110000 && (*code < 0xD800 || *code > 0xDFFF)) {
            AppendUtf8(m_decoded, static_cast<std::uint32_t>(*code));
            return end + 1;
        }
    }
    Warn(wkSyntax, position, "", "'&' is not part of a reference");
    m_decoded += '&';
    return 1;
}

// Bytes that are not UTF-8 are taken as Latin-1.
void Loader::Repair(std::size_t position) {
    const std::size_t bad = FindInvalidUtf8(m_decoded);
    if (bad == std::string::npos)
        return;
    Warn(wkSyntax, position + bad, "", "A character is not UTF-8; it is taken as Latin-1");
    m_decoded = RepairUtf8(m_decoded);
}

// The text of an element is one piece nearly always; comments and CDATA sections split it.
std::string_view Loader::TextOf(pugi::xml_node element) {
    const std::string_view embedded = element.value();
    if (!element.first_child())
        return embedded;
    m_joined = embedded;
    for (const pugi::xml_node child : element.children()) {
        if (child.type() == pugi::node_pcdata) {
            m_joined += child.value();
        } else if (child.type() == pugi::node_cdata) {
            for (const char character : std::string_view(child.value()))
                m_joined += character == '&' ? std::string("&amp;") : std::string(1, character);
        } else if (child.type() == pugi::node_element) {
            Warn(wkUnknownElement, PositionOf(child), "",
                 Shortened(element.name()) + " has an unknown element " + Shortened(child.name()));
        }
    }
    return m_joined;
}

}  // namespace GenApi
