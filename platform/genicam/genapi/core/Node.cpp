/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The base of all nodes: names, texts and links
 */

#include "core/Node.h"

#include <algorithm>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "core/RegisterCore.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

CNode::CNode(const NodeSeed& seed)
    : m_map(seed.map),
      m_description(seed.description),
      m_index(seed.index),
      m_traits(seed.description->Node(seed.index).traits),
      m_kind(seed.description->Node(seed.index).kind),
      m_number(NumberOf(m_kind)) {
    if (Is(kIsBroken))
        Set(kBroken);
}

// --- The description of the node ---

std::string_view CNode::TextOf(ETag tag) const noexcept {
    const Property* property = Find(tag);
    return property != nullptr ? TextOf(*property) : std::string_view();
}

CNode* CNode::NodeOf(const Property& property) const {
    return m_map->NodeAt(m_description->NodeOf(property));
}

CNode* CNode::NodeOf(ETag tag) const {
    const Property* property = Find(tag);
    return property != nullptr ? NodeOf(*property) : nullptr;
}

CNode* CNode::Enclosing() const {
    return m_map->NodeAt(m_description->Node(m_index).enclosing);
}

Warning CNode::MakeWarning(EWarningKind kind, const std::string& what) const {
    const NodeRecord& record = m_description->Node(m_index);
    return {kind, {}, record.line, record.column, GenICam::gcstring(Shortened(Name())), Label() + ": " + what};
}

GenICam::gcstring CNode::StringOf(ETag tag) const {
    return GenICam::gcstring(TextOf(tag));
}

bool CNode::YesOf(ETag tag, bool otherwise) const {
    const Property* property = Find(tag);
    return property != nullptr ? ParseWord<bool>(TextOf(*property)).value_or(otherwise) : otherwise;
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
    const MapAccess access(*m_map);
    try {
        return FullAccess();
    } catch (const std::exception&) {
        return NA;
    }
}

GenICam::gcstring CNode::GetName(bool fullQualified) const {
    std::string name;
    if (fullQualified)
        name = GetNameSpace() == Standard ? "Std::" : "Cust::";
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
    return m_description->Node(m_index).isStandard ? Standard : Custom;
}

EVisibility CNode::GetVisibility() const {
    const EVisibility own = ParseWord<EVisibility>(TextOf(ETag::Visibility)).value_or(Beginner);
    const EVisibility imposed = ParseWord<EVisibility>(TextOf(ETag::ImposedVisibility)).value_or(Beginner);
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

}  // namespace GenApi
