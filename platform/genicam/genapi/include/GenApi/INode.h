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

struct INode : virtual public IBase {
    /// The name, with \a fullQualified preceded by its name space ("Std::" or "Cust::").
    virtual GenICam::gcstring GetName(bool fullQualified = false) const = 0;
    virtual ENameSpace GetNameSpace() const = 0;
    virtual EVisibility GetVisibility() const = 0;
    /// Drops cached values of the node and of all that depend on it and runs their callbacks.
    virtual void InvalidateNode() = 0;
    virtual bool IsCachable() const = 0;
    virtual EYesNo IsAccessModeCacheable() const = 0;
    virtual ECachingMode GetCachingMode() const = 0;
    /// Recommended polling time in milliseconds, -1 for none.
    virtual std::int64_t GetPollingTime() const = 0;
    virtual GenICam::gcstring GetToolTip() const = 0;
    virtual GenICam::gcstring GetDescription() const = 0;
    virtual GenICam::gcstring GetDisplayName() const = 0;
    virtual GenICam::gcstring GetDeviceName() const = 0;
    virtual void GetChildren(NodeList_t& children, ELinkType linkType = ctReadingChildren) const = 0;
    virtual void GetParents(NodeList_t& parents) const = 0;
    /// Registers a callback and takes ownership of it.
    virtual CallbackHandleType RegisterCallback(CNodeCallback* callback) = 0;
    /// Removes and destroys a callback; false when the handle is not known. Afterwards the callback runs no more.
    virtual bool DeregisterCallback(CallbackHandleType handle) = 0;
    virtual INodeMap* GetNodeMap() const = 0;
    virtual GenICam::gcstring GetEventID() const = 0;
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
    virtual INode* GetAlias() const = 0;
    virtual INode* GetCastAlias() const = 0;
    virtual GenICam::gcstring GetDocuURL() const = 0;
    virtual bool IsDeprecated() const = 0;
    virtual EInterfaceType GetPrincipalInterfaceType() const = 0;
    /// True when categories lead to the node from the one that is named Root.
    virtual bool IsFeature() const = 0;
    virtual bool operator==(const INode& other) const { return this == &other; }

protected:
    INode() = default;
    INode(const INode&) = default;
    INode& operator=(const INode&) = default;
    ~INode() = default;
};

}  // namespace GenApi
