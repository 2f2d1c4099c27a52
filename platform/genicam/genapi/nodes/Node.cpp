/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The base of all nodes: names, texts and links
 */

#include "nodes/Node.h"

#include <algorithm>
#include <unordered_set>

#include "Base/GCException.h"
#include "GenApi/Pointer.h"
#include "map/NodeMap.h"
#include "map/Text.h"
#include "map/Values.h"
#include "nodes/RegisterCore.h"

namespace GenApi {

CNode::CNode(const NodeSeed& seed)
    : m_map(seed.map), m_index(seed.index), m_kind(seed.kind), m_number(NumberOf(seed.kind)) {}

// --- The description of the node ---

std::string_view CNode::Name() const noexcept {
    return m_map->Text(m_nameText, m_nameLength);
}

std::span<const Property> CNode::Properties() const noexcept {
    return m_map->PropertiesOf(m_firstProperty, m_propertyCount);
}

// What an entry of a structure does not say itself, the structure around it says.
const Property* CNode::Find(ETag tag) const noexcept {
    for (const Property& property : Properties()) {
        if (property.tag == tag)
            return &property;
        // Nothing but nested nodes comes behind the first of them.
        if (property.tag == ETag::Nested)
            break;
    }
    return m_kind == ENodeKind::StructEntry && Enclosing() != nullptr ? Enclosing()->Find(tag) : nullptr;
}

std::string_view CNode::TextOf(const Property& property) const noexcept {
    return m_map->Text(property.text, property.length);
}

std::string_view CNode::TextOf(ETag tag) const noexcept {
    const Property* property = Find(tag);
    return property != nullptr ? TextOf(*property) : std::string_view();
}

CNode* CNode::NodeOf(const Property& property) const noexcept {
    return m_map->NodeAt(property.node);
}

CNode* CNode::NodeOf(ETag tag) const noexcept {
    const Property* property = Find(tag);
    return property != nullptr ? NodeOf(*property) : nullptr;
}

CNode* CNode::Enclosing() const noexcept {
    return m_map->NodeAt(m_enclosing);
}

std::string CNode::Label() const {
    std::string label(NameOf(m_kind));
    label += " '";
    // Entries are known by the name of their enumeration as well: their own is not unique.
    if (m_kind == ENodeKind::EnumEntry && Enclosing() != nullptr)
        label += "EnumEntry_" + Shortened(Enclosing()->Name()) + '_';
    label += Shortened(Name());
    return label + "' (line " + std::to_string(m_line) + ")";
}

Warning CNode::MakeWarning(EWarningKind kind, const std::string& what) const {
    return {kind, {}, m_line, m_column, GenICam::gcstring(Shortened(Name())), Label() + ": " + what};
}

void CNode::SetName(std::uint32_t text, std::uint32_t length) noexcept {
    m_nameText = text;
    m_nameLength = length;
}

void CNode::SetProperties(std::uint32_t first, std::uint32_t count) noexcept {
    m_firstProperty = first;
    m_propertyCount = count;
}

void CNode::SetPlace(std::uint32_t line, std::uint32_t column, CNode* enclosing) noexcept {
    m_line = line;
    m_column = column;
    m_enclosing = enclosing != nullptr ? enclosing->m_index : kNoNode;
}

GenICam::gcstring CNode::StringOf(ETag tag) const {
    return GenICam::gcstring(TextOf(tag));
}

bool CNode::YesOf(ETag tag, bool otherwise) const {
    const Property* property = Find(tag);
    return property != nullptr ? ParseYesNo(TextOf(*property)).value_or(otherwise) : otherwise;
}

// --- IBase and INode ---

/**
 * \brief What may be done with the node now
 *
 * A device that can't be asked leaves the node not available.
 *
 * \context Any thread
 */
EAccessMode CNode::GetAccessMode() const {
    const AutoLock lock(m_map->GetLock());
    m_map->CheckPorts();
    try {
        return FullAccess();
    } catch (const std::exception&) {
        return NA;
    }
}

GenICam::gcstring CNode::GetName(bool fullQualified) const {
    std::string name;
    if (fullQualified)
        name = m_nameSpace == Standard ? "Std::" : "Cust::";
    // Entries are known by the name of their enumeration as well: their own is not unique.
    if (m_kind == ENodeKind::EnumEntry && Enclosing() != nullptr) {
        name += "EnumEntry_";
        name += Enclosing()->Name();
        name += '_';
    }
    name += Name();
    return name;
}

ENameSpace CNode::GetNameSpace() const {
    return m_nameSpace;
}

EVisibility CNode::GetVisibility() const {
    const EVisibility own = ParseVisibility(TextOf(ETag::Visibility)).value_or(Beginner);
    const EVisibility imposed = ParseVisibility(TextOf(ETag::ImposedVisibility)).value_or(Beginner);
    const AutoLock lock(m_map->GetLock());
    return Combine(Combine(own, imposed), m_userVisibility);
}

void CNode::InvalidateNode() {
    m_map->Change(this, [this] { m_map->Dropped(*this); });
}

bool CNode::IsCachable() const {
    return GetCachingMode() != NoCache;
}

EYesNo CNode::IsAccessModeCacheable() const {
    GetAccessMode();
    const AutoLock lock(m_map->GetLock());
    return Has(kFullAccessValid) ? Yes : No;
}

namespace {

// What a value is made of, the place of a register included.
bool IsPartOfValue(ETag tag) {
    switch (tag) {
        case ETag::pValue:
        case ETag::pValueIndexed:
        case ETag::pValueDefault:
        case ETag::pIndex:
        case ETag::AttributePOffset:
        case ETag::pVariable:
        case ETag::pAddress:
        case ETag::pLength:
        case ETag::p1212Parser:
            return true;
        default:
            return false;
    }
}

ECachingMode LessCaching(ECachingMode left, ECachingMode right) {
    if (left == NoCache || right == NoCache)
        return NoCache;
    return left == WriteAround ? left : right;
}

}  // namespace

/**
 * \brief How the node's value is cached: like the part of it that is cached least
 *
 * Parts are the registers that the value comes from, and whatever they or formulas are computed from.
 */
ECachingMode CNode::GetCachingMode() const {
    ECachingMode mode = WriteThrough;
    std::vector<const CNode*> parts{this};
    std::unordered_set<const CNode*> seen{this};
    const auto addPartsOf = [&](const CNode& node) {
        for (const Property& property : node.Properties()) {
            const CNode* part = IsPartOfValue(property.tag) ? node.NodeOf(property) : nullptr;
            if (part != nullptr && seen.insert(part).second)
                parts.push_back(part);
        }
    };
    for (std::size_t next = 0; next < parts.size() && mode != NoCache; ++next) {
        const CNode& node = *parts[next];
        if (const Property* caching = node.Find(ETag::Cachable))
            mode = LessCaching(mode, ParseCachingMode(node.TextOf(*caching)).value_or(WriteThrough));
        addPartsOf(node);
        if (node.Kind() == ENodeKind::StructEntry && node.Enclosing() != nullptr)
            addPartsOf(*node.Enclosing());
    }
    return mode;
}

std::int64_t CNode::GetPollingTime() const {
    const Property* property = Find(ETag::PollingTime);
    const auto time = property != nullptr ? ParseInteger(TextOf(*property)) : std::nullopt;
    return time && *time >= 0 ? *time : -1;
}

GenICam::gcstring CNode::GetToolTip() const {
    return StringOf(ETag::ToolTip);
}
GenICam::gcstring CNode::GetDescription() const {
    return StringOf(ETag::Description);
}

GenICam::gcstring CNode::GetDisplayName() const {
    const GenICam::gcstring given = StringOf(ETag::DisplayName);
    return given.empty() ? GenICam::gcstring(Name()) : given;
}

GenICam::gcstring CNode::GetDeviceName() const {
    return m_map->GetDeviceName();
}
INodeMap* CNode::GetNodeMap() const {
    return m_map;
}
GenICam::gcstring CNode::GetEventID() const {
    return StringOf(ETag::EventID);
}
bool CNode::IsStreamable() const {
    return YesOf(ETag::Streamable, false);
}
GenICam::gcstring CNode::GetDocuURL() const {
    return StringOf(ETag::DocuURL);
}
bool CNode::IsDeprecated() const {
    return YesOf(ETag::IsDeprecated, false);
}
bool CNode::IsFeature() const {
    return Is(kIsFeature);
}
INode* CNode::GetAlias() const {
    return NodeOf(ETag::pAlias);
}
INode* CNode::GetCastAlias() const {
    return NodeOf(ETag::pCastAlias);
}

CallbackHandleType CNode::RegisterCallback(CNodeCallback* callback) {
    if (callback == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("%s: null callback", Label());
    return m_map->AddCallback(*this, callback);
}

bool CNode::DeregisterCallback(CallbackHandleType handle) {
    return m_map->RemoveCallback(*this, handle);
}

void CNode::GetPropertyNames(GenICam::gcstring_vector& names) const {
    names.clear();
    for (const Property& property : Properties()) {
        const GenICam::gcstring name(NameOf(property.tag));
        if (!IsAttribute(property.tag) && property.tag != ETag::Unknown && !names.contains(name))
            names.push_back(name);
    }
}

bool CNode::GetProperty(const GenICam::gcstring& name, GenICam::gcstring& value, GenICam::gcstring& attribute) const {
    value.clear();
    attribute.clear();
    bool found = false;
    bool isAttributeOfIt = false;
    for (const Property& property : Properties()) {
        if (IsAttribute(property.tag)) {
            if (isAttributeOfIt)
                attribute += (attribute.empty() ? "" : "\t") + GenICam::gcstring(TextOf(property));
            continue;
        }
        isAttributeOfIt = NameOf(property.tag) == name.view() && property.tag != ETag::Unknown;
        if (!isAttributeOfIt)
            continue;
        const CNode* nested = property.tag == ETag::Nested ? NodeOf(property) : nullptr;
        value += (found ? "\t" : "") + GenICam::gcstring(nested != nullptr ? nested->Name() : TextOf(property));
        found = true;
    }
    return found;
}

/**
 * \brief Restrict the access mode at run time
 * \param[in] imposed What is allowed at most; RW takes the restriction away
 *
 * The node and all that depend on it are announced.
 */
void CNode::ImposeAccessMode(EAccessMode imposed) {
    if (imposed != NI && imposed != NA && imposed != WO && imposed != RO && imposed != RW)
        throw INVALID_ARGUMENT_EXCEPTION("%s: %d is not an access mode", Label(), static_cast<int>(imposed));
    m_map->Change(this, [&] {
        m_userAccess = imposed;
        m_map->Changed(*this);
    });
}

void CNode::ImposeVisibility(EVisibility imposed) {
    if (imposed != Beginner && imposed != Expert && imposed != Guru && imposed != Invisible)
        throw INVALID_ARGUMENT_EXCEPTION("%s: %d is not a visibility", Label(), static_cast<int>(imposed));
    const AutoLock lock(m_map->GetLock());
    m_userVisibility = imposed;
}

// --- Links ---

namespace {

bool IsReadingLink(ETag tag) {
    return IsRequiredReference(tag) && tag != ETag::pError;
}

bool IsWritingLink(ETag tag) {
    return tag == ETag::pValue || tag == ETag::pValueCopy || tag == ETag::pValueIndexed || tag == ETag::pValueDefault;
}

void AddOnce(NodeList_t& list, INode* node) {
    if (node != nullptr && std::find(list.begin(), list.end(), node) == list.end())
        list.push_back(node);
}

// The nodes that one walks to by links, from a node outwards.
template <class Links>
std::vector<CNode*> Closure(CNode& start, Links&& links) {
    std::vector<CNode*> found{&start};
    std::vector<bool> seen(start.Map().Nodes().size(), false);
    seen[start.Index()] = true;
    for (std::size_t next = 0; next < found.size(); ++next) {
        links(*found[next], [&](CNode* linked) {
            if (linked != nullptr && !seen[linked->Index()]) {
                seen[linked->Index()] = true;
                found.push_back(linked);
            }
        });
    }
    found.erase(found.begin());
    return found;
}

}  // namespace

void CNode::GetChildren(NodeList_t& children, ELinkType linkType) const {
    children.clear();
    const AutoLock lock(m_map->GetLock());
    CNode& self = *const_cast<CNode*>(this);
    if (linkType == ctParentNodes)
        return GetParents(children);
    if (linkType == ctDependingNodes) {
        const auto dependents = Closure(self, [](CNode& node, auto&& found) {
            for (const Invalidation& dependent : node.Map().Dependencies().DependentsOf(node.Map(), node.Index()))
                found(node.Map().NodeAt(dependent.node));
        });
        children.assign(dependents.begin(), dependents.end());
        return;
    }
    if (linkType == ctTerminalNodes) {
        const auto written = Closure(self, [](CNode& node, auto&& found) {
            for (const Property& property : node.Properties()) {
                if (IsWritingLink(property.tag))
                    found(node.NodeOf(property));
            }
        });
        for (CNode* node : written) {
            if (node->Find(ETag::pPort) != nullptr || node->Kind() == ENodeKind::StructEntry)
                children.push_back(node);
        }
        return;
    }
    for (const Property& property : Properties()) {
        const bool isLink = linkType == ctReadingChildren ? IsReadingLink(property.tag) || property.tag == ETag::Nested
                            : linkType == ctWritingChildren ? IsWritingLink(property.tag)
                                                            : property.tag == ETag::pInvalidator;
        if (isLink || (linkType == ctReadingChildren && property.tag == ETag::pFeature))
            AddOnce(children, NodeOf(property));
    }
}

void CNode::GetParents(NodeList_t& parents) const {
    parents.clear();
    const AutoLock lock(m_map->GetLock());
    for (const Referrer& referrer : m_map->Dependencies().ReferrersOf(*m_map, m_index)) {
        const bool isLink =
            IsReadingLink(referrer.tag) || referrer.tag == ETag::pFeature || referrer.tag == ETag::Nested;
        CNode* node = m_map->NodeAt(referrer.node);
        // References of one node come one after the other.
        if (isLink && (parents.empty() || parents.back() != node))
            parents.push_back(node);
    }
}

bool CNode::IsSelector() const {
    return Find(ETag::pSelected) != nullptr;
}

void CNode::GetSelectedFeatures(FeatureList_t& features) const {
    features.clear();
    for (const Property& property : Properties()) {
        CNode* node = property.tag == ETag::pSelected ? NodeOf(property) : nullptr;
        if (node != nullptr && node->Value() != nullptr)
            features.push_back(node->Value());
    }
}

void CNode::GetSelectingFeatures(FeatureList_t& features) const {
    features.clear();
    const AutoLock lock(m_map->GetLock());
    for (const Referrer& referrer : m_map->Dependencies().ReferrersOf(*m_map, m_index)) {
        IValue* selector = referrer.tag == ETag::pSelected ? m_map->NodeAt(referrer.node)->Value() : nullptr;
        if (selector != nullptr && (features.empty() || features.back() != selector))
            features.push_back(selector);
    }
}

}  // namespace GenApi
