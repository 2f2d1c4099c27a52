/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What nodes with a value have in common
 */
#pragma once

#include "core/Node.h"

namespace GenApi {

/// A node with an interface for its value: node and interface lead to each other.
template <class Interface, EInterfaceType kType>
class CValueNode : public CNode, public Interface {
public:
    using CNode::CNode;
    using CNode::GetAccessMode;

    // IValue
    INode* GetNode() final { return this; }
    bool IsValueCacheValid() const override { return IsValueCached(); }
    // CNode
    EInterfaceType GetPrincipalInterfaceType() const final { return kType; }
    IValue* Value() final { return this; }

protected:
    ~CValueNode() = default;
};

}  // namespace GenApi
