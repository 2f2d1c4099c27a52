/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a description says, for all node maps that are made from it
 */
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "GenApi/Diagnostics.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/Types.h"
#include "schema/Dependencies.h"
#include "schema/NameTable.h"
#include "schema/Once.h"
#include "schema/Property.h"
#include "schema/SharedParts.h"

namespace GenApi {

/// What is known of a node once it is loaded and never changes.
enum ENodeTrait : std::uint8_t {
    kReplaced = 1U << 0,        ///< another node of its name stands in its place
    kIsFeature = 1U << 1,       ///< categories lead to it from Root
    kUsesPolling = 1U << 2,     ///< it has a polling time
    kHasAccessRules = 1U << 3,  ///< it has rules about its access mode
    kIsRegister = 1U << 4,
    kHasErrorNode = 1U << 5,  ///< it names a node that tells what the device thinks of a write
    kIsBroken = 1U << 6       ///< it needs a node that does not exist
};

/// A node as the description has it.
struct NodeRecord {
    std::uint32_t name = 0;           ///< its number among the names
    std::uint32_t firstProperty = 0;  ///< of its elements, which lie side by side
    std::uint32_t propertyCount = 0;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::uint32_t enclosing = kNoNode;  ///< the node that it lies in
    ENodeKind kind = ENodeKind::None;
    std::uint8_t traits = 0;
    bool isStandard = false;  ///< of the standard's name space

    bool Is(std::uint32_t wanted) const noexcept { return (traits & wanted) != 0; }
};

/// What the root element says.
struct DescriptionInfo {
    GenICam::gcstring modelName;
    GenICam::gcstring vendorName;
    GenICam::gcstring toolTip;
    GenICam::gcstring standardNameSpace;
    GenICam::gcstring productGuid;
    GenICam::gcstring versionGuid;
    Version_t schemaVersion;
    Version_t deviceVersion;
};

/// The most warnings about a description, and one that says that there are more.
constexpr std::size_t kMostWarnings = 10000;
/// That one: it is about no node and has no place.
Warning MoreWarnings();

/// A fault that was found when the description was read.
struct LoadWarning {
    Warning warning;    ///< without the file
    bool isOfInjected;  ///< it is about what was injected
};

/// Nodes, names, elements and texts. Never changes once it is loaded: any thread may ask it, without a lock.
class Description {
public:
    std::uint32_t NodeCount() const noexcept { return static_cast<std::uint32_t>(m_nodes.size()); }
    const NodeRecord& Node(std::uint32_t node) const noexcept { return m_nodes[node]; }
    std::span<const NodeRecord> Nodes() const noexcept { return m_nodes.All(); }
    std::string_view NameOf(std::uint32_t node) const noexcept { return m_names.TextOf(m_nodes[node].name); }
    std::span<const Property> PropertiesOf(std::uint32_t node) const noexcept {
        return m_properties.All().subspan(m_nodes[node].firstProperty, m_nodes[node].propertyCount);
    }
    /// The text of an element; that of a reference is the name that it refers to.
    std::string_view TextOf(const Property& property) const noexcept;
    /// The node that an element refers to or that lies within this one, kNoNode when there is none.
    std::uint32_t NodeOf(const Property& property) const noexcept;
    /// The first element of a kind of a node, or of the structure around it; null when there is none.
    const Property* Find(std::uint32_t node, ETag tag) const noexcept;
    /// The node of a name: its own, with its name space, or that of an entry behind the name of its enumeration.
    std::uint32_t FindNode(std::string_view name) const;
    /// A name for messages: kind, name and line.
    std::string LabelOf(std::uint32_t node) const;
    /// Why a node can't work, empty where nothing is known against it.
    const std::string& ReasonOf(std::uint32_t node) const;
    /// Which nodes depend on which; found when they are first asked for.
    const NodeTable<Invalidation>& Dependents() const;
    const NodeTable<Referrer>& Referrers() const;
    /// What was made of its elements up to now.
    SharedParts& Parts() const noexcept { return m_parts; }
    const DescriptionInfo& Info() const noexcept { return m_info; }
    std::span<const LoadWarning> Warnings() const noexcept { return m_warnings; }

private:
    friend class DescriptionBuilder;

    std::uint32_t FindUnqualified(std::string_view name) const;
    std::uint32_t FindEntry(std::string_view name) const;
    void IndexEntries() const;

    PlainArray<NodeRecord> m_nodes;
    PlainArray<Property> m_properties;
    PlainArray<char> m_texts;
    NameTable m_names;
    DescriptionInfo m_info;
    std::vector<LoadWarning> m_warnings;
    std::unordered_map<std::uint32_t, std::string> m_reasons;
    mutable Once m_entriesIndexed;
    mutable NameIndex m_entryNames;  // entries by the names of their enumeration and their own
    mutable Once m_dependentsFound;
    mutable NodeTable<Invalidation> m_dependents;
    mutable SharedParts m_parts;
    mutable Once m_referrersFound;
    mutable NodeTable<Referrer> m_referrers;
};

}  // namespace GenApi
