/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads a description: the nodes and their elements
 */

#include <algorithm>
#include <array>

#include "Base/GCException.h"
#include "load/Loader.h"
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

// What an element makes of the node that it is in.
constexpr std::uint8_t TraitsOf(ETag tag) {
    switch (tag) {
        case ETag::pIsImplemented:
        case ETag::pIsAvailable:
        case ETag::pIsLocked:
        case ETag::ImposedAccessMode:
            return kHasAccessRules;
        case ETag::PollingTime:
            return kUsesPolling;
        case ETag::pError:
            return kHasErrorNode;
        default:
            return 0;
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

void Loader::LoadNodes(int depth) {
    for (EXml found = m_scanner->Next(); found != EXml::Close; found = m_scanner->Next()) {
        if (found == EXml::Open)
            LoadElement(depth);
    }
}

void Loader::LoadElement(int depth) {
    std::string_view name = m_scanner->Name();
    const std::size_t position = PositionOf(name);
    ENodeKind kind = KindOf(name);
    if (kind == ENodeKind::None) {
        name = LocalName(name);
        kind = KindOf(name);
    }
    if (name == "Group") {
        if (depth >= kMaxGroups)
            Refuse(position, "Groups are nested too deeply");
        ForEachAttribute([](const XmlAttribute&) {});
        LoadNodes(depth + 1);
    } else if (kind == ENodeKind::None || kind == ENodeKind::EnumEntry || kind == ENodeKind::StructEntry) {
        Warn(wkUnknownElement, position, "", {"Unknown element ", name});
        m_scanner->Skip();
    } else {
        LoadNode(kind);
    }
}

void Loader::LoadNode(ENodeKind kind) {
    const std::size_t position = PositionOf(m_scanner->Name());
    const std::uint32_t node = MakeNode(kind, kNoNode);
    LoadContent(node);
    const bool needsName = kind != ENodeKind::StructReg;
    if (NameOf(node).empty()) {
        if (needsName) {
            Warn(wkBadValue, position, "", {GenApi::NameOf(kind), " has no name"});
            Replace(node);
        }
        return;
    }
    if (!EnterName(node, position))
        Replace(node);
}

std::uint32_t Loader::MakeNode(ENodeKind kind, std::uint32_t enclosing) {
    const TextPlace place = m_source->PlaceOf(PositionOf(m_scanner->Name()));
    const std::uint32_t node = m_builder.AddNode();
    NodeRecord& record = m_builder.Node(node);
    record.kind = kind;
    record.enclosing = enclosing;
    record.line = place.line;
    record.column = place.column;
    record.traits = IsRegisterKind(kind) ? kIsRegister : 0;
    LoadNodeAttributes(node);
    return node;
}

// The elements of one node lie side by side, those for nested nodes behind all others. There may be a million of them,
// and nobody who looks for another element has to pass them.
void Loader::LoadContent(std::uint32_t node) {
    const std::size_t first = m_pending.size();
    const std::size_t firstNested = m_nested.size();
    auto& followers = m_followers[static_cast<std::size_t>(m_builder.Node(node).kind)];
    ETag* guess = &followers[0];
    for (;;) {
        const EXml found = m_scanner->Next(*guess != ETag::Unknown ? GenApi::NameOf(*guess) : std::string_view());
        if (found == EXml::Close)
            break;
        if (found != EXml::Open)
            continue;
        const ETag tag = m_scanner->IsAsExpected() ? *guess : TagOfChild();
        *guess = tag;
        guess = &followers[static_cast<std::size_t>(tag)];
        if (tag != ETag::Unknown)
            LoadProperty(tag, node);
        else
            LoadInner(node);
    }
    AddNested(node, firstNested);
    m_builder.SetProperties(node, std::span(m_pending).subspan(first));
    m_positions.Append(m_pendingPositions.data() + first, m_pendingPositions.size() - first);
    m_pending.resize(first);
    m_pendingPositions.resize(first);
}

// Few files have a prefix before each name: those that are known as they stand have none.
ETag Loader::TagOfChild() {
    const std::string_view name = m_scanner->Name();
    const ETag plain = TagOf(name);
    const std::string_view local = plain == ETag::Unknown ? LocalName(name) : name;
    return local.size() != name.size() ? TagOf(local) : plain;
}

void Loader::LoadInner(std::uint32_t node) {
    const std::string_view name = LocalName(m_scanner->Name());
    const ENodeKind kind = KindOf(name);
    const ENodeKind outer = m_builder.Node(node).kind;
    const ETag tag = kind != ENodeKind::None ? NestedTagOf(outer, kind) : ETag::Unknown;
    const std::size_t position = PositionOf(m_scanner->Name());
    if (tag == ETag::Unknown) {
        Warn(wkUnknownElement, position, NameOf(node), {GenApi::NameOf(outer), " has an unknown element ", name});
        return m_scanner->Skip();
    }
    const std::uint32_t inner = MakeNode(kind, node);
    m_nested.push_back({inner, tag, static_cast<std::uint32_t>(position)});
    LoadContent(inner);
    // Entries are found by way of their enumeration: their names are not unique.
    if (kind != ENodeKind::EnumEntry && !NameOf(inner).empty() && !EnterName(inner, position))
        Replace(inner);
}

void Loader::AddNested(std::uint32_t node, std::size_t first) {
    constexpr unsigned kInherited = kHasAccessRules | kUsesPolling | kHasErrorNode;
    const unsigned inherited = m_builder.Node(node).traits & kInherited;
    // Parts of an address come before entries: who looks for another element stops at the first entry.
    for (const bool isEntry : {false, true}) {
        for (std::size_t i = first; i < m_nested.size(); ++i) {
            const Nested& inner = m_nested[i];
            if ((inner.tag == ETag::Nested) != isEntry)
                continue;
            Add({inner.node, 0, inner.tag, Property::EValue::Node}, inner.position);
            NodeRecord& record = m_builder.Node(inner.node);
            if (record.kind == ENodeKind::StructEntry)
                record.traits = static_cast<std::uint8_t>(record.traits | inherited);
        }
    }
    m_nested.resize(first);
}

void Loader::LoadNodeAttributes(std::uint32_t node) {
    ForEachAttribute([&](const XmlAttribute& attribute) {
        const std::string_view raw = attribute.value;
        const std::size_t position = PositionOf(attribute.name);
        const ENodeKind kind = m_builder.Node(node).kind;
        if (attribute.name == "Name") {
            m_builder.Node(node).name = m_builder.Intern(Clean(raw, attribute.mayRefer));
            WarnAboutBlanks(raw, position, node, "The name");
        } else if (attribute.name == "NameSpace") {
            const auto nameSpace = ParseWord<ENameSpace>(Trimmed(raw));
            if (!nameSpace)
                Warn(wkBadValue, position, NameOf(node), {"NameSpace '", raw, "' is not known"});
            m_builder.Node(node).isStandard = nameSpace == Standard;
        } else if (attribute.name == "MergePriority") {
            m_priorities[node] = ParseInteger(raw).value_or(0);
        } else if (attribute.name != "ExposeStatic" && attribute.name != "Comment" &&
                   attribute.name.substr(0, 5) != "xmlns") {
            Warn(wkUnknownAttribute, position, NameOf(node),
                 {GenApi::NameOf(kind), " has an unknown attribute ", attribute.name});
        }
    });
}

// The text of an element is one piece nearly always. Reads up to its end.
std::string_view Loader::ReadText() {
    return m_scanner->TakePlainText() ? m_scanner->Text() : ReadMixedText();
}

/**
 * \brief A text as it is meant: without blanks around it and references to characters
 * \param[in] raw As it stands in the document
 * \param[in] mayRefer False when there are no references
 * \return Valid until the next text
 */
std::string_view Loader::Clean(std::string_view raw, bool mayRefer) {
    const std::string_view trimmed = Trimmed(raw);
    const bool isPlain = !mayRefer && !m_source->HasInvalidUtf8();
    return isPlain ? trimmed : Decoded(trimmed);
}

Property Loader::MakeProperty(ETag tag, std::string_view raw, bool mayRefer) {
    return m_builder.MakeProperty(tag, Clean(raw, mayRefer));
}

void Loader::LoadProperty(ETag tag, std::uint32_t node) {
    if (tag == ETag::Extension)
        return m_scanner->Skip();
    const std::size_t position = PositionOf(m_scanner->Name());
    const std::size_t place = m_pending.size();
    Add({}, position);
    if (!m_scanner->Attributes().empty())
        LoadPropertyAttributes(tag, node);
    const std::string_view text = ReadText();
    const bool hasPlace = !text.empty() && text.data() != m_joined.data();
    if (hasPlace)
        m_pendingPositions[place] = static_cast<std::uint32_t>(PositionOf(text));
    const Property property = MakeProperty(tag, text, m_scanner->MayRefer() || !hasPlace);
    m_pending[place] = property;
    CheckProperty(property, text, position, node);
    if (const std::uint8_t traits = TraitsOf(tag))
        m_builder.Node(node).traits |= traits;
}

// What a file says in the wrong place or in words that do not exist would pass for something else. Most elements are no
// words, or say what the one of their kind before said.
void Loader::CheckProperty(const Property& property, std::string_view text, std::size_t position, std::uint32_t node) {
    const ENodeKind kind = m_builder.Node(node).kind;
    const Said& right = m_right[static_cast<std::size_t>(property.tag)];
    const bool isSaidAgain = right.value == property.value && (right.kinds >> static_cast<unsigned>(kind) & 1U) != 0;
    const bool isRight = TakesAnyText(kind, property.tag) || isSaidAgain;
    if (!isRight || Trimmed(text).size() != text.size())
        CheckWord(property, text, position, node);
}

void Loader::CheckWord(const Property& property, std::string_view text, std::size_t position, std::uint32_t node) {
    const ETag tag = property.tag;
    const ENodeKind kind = m_builder.Node(node).kind;
    const bool hasPlace = HasElement(kind, tag);
    if (!hasPlace)
        Warn(wkUnknownElement, position, NameOf(node),
             {GenApi::NameOf(tag), " has no meaning in ", GenApi::NameOf(kind)});
    const bool isText = IsFreeText(tag) || (tag == ETag::Value && kind == ENodeKind::String);
    if (isText)
        return;
    WarnAboutBlanks(text, position, node, GenApi::NameOf(tag));
    Said& right = m_right[static_cast<std::size_t>(tag)];
    if (!IsKnownWord(tag, Trimmed(text)))
        Warn(wkBadValue, position, NameOf(node), {GenApi::NameOf(tag), " '", Trimmed(text), "' is not known"});
    else if (hasPlace)
        right = {property.value,
                 (right.value == property.value ? right.kinds : 0U) | 1U << static_cast<unsigned>(kind)};
}

void Loader::WarnAboutBlanks(std::string_view raw, std::size_t position, std::uint32_t node, std::string_view what) {
    if (!raw.empty() && (IsBlank(raw.front()) || IsBlank(raw.back())))
        Warn(wkSyntax, position, NameOf(node), {what, " has blanks around it"});
}

void Loader::LoadPropertyAttributes(ETag tag, std::uint32_t node) {
    ForEachAttribute([&](const XmlAttribute& attribute) {
        const std::string_view name = attribute.name;
        const bool isNamed = tag == ETag::pVariable || tag == ETag::Constant || tag == ETag::Expression;
        const auto add = [&](ETag meaning) {
            Add(MakeProperty(meaning, attribute.value, attribute.mayRefer), PositionOf(attribute.value));
        };
        if (name == "Name" && isNamed)
            add(ETag::AttributeName);
        else if (name == "Index" && (tag == ETag::ValueIndexed || tag == ETag::pValueIndexed))
            add(ETag::AttributeIndex);
        else if (name == "Offset" && tag == ETag::pIndex)
            add(ETag::AttributeOffset);
        else if (name == "pOffset" && tag == ETag::pIndex)
            add(ETag::AttributePOffset);
        else if (name.substr(0, 5) != "xmlns")
            Warn(wkUnknownAttribute, PositionOf(name), NameOf(node),
                 {GenApi::NameOf(tag), " has an unknown attribute ", name});
        WarnAboutBlanks(attribute.value, PositionOf(name), node, name == "Name" ? "The name" : name);
    });
}

void Loader::Add(const Property& property, std::size_t position) {
    m_pending.push_back(property);
    m_pendingPositions.push_back(static_cast<std::uint32_t>(position));
}

// False when the node gives way to another one of its name.
bool Loader::EnterName(std::uint32_t node, std::size_t position) {
    const std::uint32_t name = m_builder.Node(node).name;
    const std::uint32_t before = m_builder.NodeOfName(name);
    if (before == kNoNode) {
        m_builder.SetNodeOfName(name, node);
        return true;
    }
    const auto priorityOf = [this](std::uint32_t which) {
        const auto found = m_priorities.find(which);
        return found != m_priorities.end() ? found->second : 0;
    };
    const std::int64_t own = priorityOf(node);
    const std::int64_t other = priorityOf(before);
    const bool isOfThisDescription = before >= m_firstNode;
    if (isOfThisDescription)
        Warn(wkDuplicateName, position, NameOf(node), {"There is already a node '", NameOf(node), "'"});
    // Within one description the first one counts, between two of them the injected one.
    if (own < other || (own == other && isOfThisDescription))
        return false;
    Replace(before);
    m_builder.SetNodeOfName(name, node);
    return true;
}

void Loader::Replace(std::uint32_t node) {
    NodeRecord& record = m_builder.Node(node);
    record.traits |= kReplaced;
    if (m_builder.NodeOfName(record.name) == node)
        m_builder.SetNodeOfName(record.name, kNoNode);
    for (const Property& property : m_builder.Built().PropertiesOf(node)) {
        if (property.kind == Property::EValue::Node)
            Replace(property.value);
    }
}

}  // namespace GenApi
