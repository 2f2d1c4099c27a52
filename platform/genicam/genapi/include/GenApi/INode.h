/* SPDX-License-Identifier: Apache-2.0 */
/*
 * INode: what every node of a node map implements
 */
#pragma once

#include <vector>

#include "Base/GCStringVector.h"
#include "GenApi/IBase.h"

namespace GenApi {

struct INode;
struct INodeMap;
class CNodeCallback;

using NodeList_t = std::vector<INode*>;
using CallbackHandleType = std::intptr_t;

/// What every node of a node map has. Thread-safe; a node lives as long as its node map.
struct INode : virtual public IBase {
    /// The name, with \a fullQualified preceded by its name space ("Std::" or "Cust::").
    virtual GenICam::gcstring GetName(bool fullQualified = false) const = 0;
    /// Whether the name is of the standard or the maker's own.
    virtual ENameSpace GetNameSpace() const = 0;
    /// For whom it is meant, from beginners to nobody.
    virtual EVisibility GetVisibility() const = 0;
    /// Drops cached values of the node and of all that depend on it and runs their callbacks.
    virtual void InvalidateNode() = 0;
    /// Whether its value may be kept until something changes it.
    virtual bool IsCachable() const = 0;
    /// Whether its access mode may be kept.
    virtual EYesNo IsAccessModeCacheable() const = 0;
    /// What becomes of a kept value when it is written.
    virtual ECachingMode GetCachingMode() const = 0;
    /// Recommended polling time in milliseconds, -1 for none.
    virtual std::int64_t GetPollingTime() const = 0;
    /// One sentence; may be empty.
    virtual GenICam::gcstring GetToolTip() const = 0;
    /// The documentation; may be empty.
    virtual GenICam::gcstring GetDescription() const = 0;
    /// The name for people; the name itself where the description has no other.
    virtual GenICam::gcstring GetDisplayName() const = 0;
    /// The name that the node map was made with.
    virtual GenICam::gcstring GetDeviceName() const = 0;
    /// Appends the nodes that this one refers to in one of the ways.
    virtual void GetChildren(NodeList_t& children, ELinkType linkType = ctReadingChildren) const = 0;
    /// Appends the nodes that refer to this one.
    virtual void GetParents(NodeList_t& parents) const = 0;
    /// Registers a callback and takes ownership of it.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* callback) = 0;
    /// Removes and destroys a callback; false when the handle is not known. Afterwards the callback runs no more.
    virtual bool DeregisterCallback(CallbackHandleType handle) = 0;
    /// The node map that it belongs to.
    virtual INodeMap* GetNodeMap() const = 0;
    /// The event that it tells of; empty for none.
    virtual GenICam::gcstring GetEventID() const = 0;
    /// Whether it belongs to what is saved to put a device back as it was.
    virtual bool IsStreamable() const = 0;
    /// Names of the elements that the description gives for this node.
    virtual void GetPropertyNames(GenICam::gcstring_vector& names) const = 0;
    /// Text and attribute of such an element; several values are separated by tabulators.
    virtual bool GetProperty(const GenICam::gcstring& name, GenICam::gcstring& value,
                             GenICam::gcstring& attribute) const = 0;
    /// Restricts the access mode at run time; RW lifts the restriction.
    virtual void ImposeAccessMode(EAccessMode imposed) = 0;
    /// Raises the visibility level at run time.
    virtual void ImposeVisibility(EVisibility imposed) = 0;
    /// A node that shows the same thing in another way; null for none.
    virtual INode* GetAlias() const = 0;
    /// A node that shows the same thing as another type; null for none.
    virtual INode* GetCastAlias() const = 0;
    /// Where more is written about it; may be empty.
    virtual GenICam::gcstring GetDocuURL() const = 0;
    /// Whether it is there only for programs of the past.
    virtual bool IsDeprecated() const = 0;
    /// Which of its interfaces says best what it is.
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;
    /// True when categories lead to the node from the one that is named Root.
    virtual bool IsFeature() const = 0;
    /// Whether both are the same node.
    virtual bool operator==(const INode& other) const { return this == &other; }

protected:
    INode() = default;
    INode(const INode&) = default;
    INode& operator=(const INode&) = default;
    ~INode() = default;
};

}  // namespace GenApi
