/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Node callbacks: functions and members that run when a node changed
 */
#pragma once

#include <type_traits>

#include "GenApi/INode.h"

namespace GenApi {

/// What a node runs when it changed. The node owns it once it is registered.
class CNodeCallback {
public:
    /// For a node, to run at the given moment.
    CNodeCallback(INode* node, ECallbackType callbackType) : m_pNode(node), m_CallbackType(callbackType) {}
    CNodeCallback(const CNodeCallback&) = delete;
    CNodeCallback& operator=(const CNodeCallback&) = delete;
    virtual ~CNodeCallback() = default;

    /// Runs the callback when it is one of \a callbackType.
    virtual void operator()(ECallbackType callbackType) const = 0;
    /// Deletes itself; the node calls it when the callback is removed.
    virtual void Destroy() = 0;

    /// The node it is for.
    INode* GetNode() const { return m_pNode; }
    /// When it runs.
    ECallbackType GetCallbackType() const { return m_CallbackType; }

protected:
    INode* m_pNode;                ///<  the node it is for
    ECallbackType m_CallbackType;  ///<  when it runs
};

/// Runs a function that takes the node.
template <class Function>
class Function_NodeCallback : public CNodeCallback {
public:
    /// Keeps a copy of the function.
    Function_NodeCallback(INode* node, const Function& function, ECallbackType callbackType)
        : CNodeCallback(node, callbackType), m_function(function) {}

    void operator()(ECallbackType callbackType) const override {
        if (callbackType == m_CallbackType)
            m_function(m_pNode);
    }
    /// Deletes itself.
    void Destroy() override { delete this; }

private:
    Function m_function;
};

/// Runs a member function that takes the node.
template <class Client, class Member>
class Member_NodeCallback : public CNodeCallback {
public:
    /// The object must outlive the registration.
    Member_NodeCallback(INode* node, Client& client, Member member, ECallbackType callbackType)
        : CNodeCallback(node, callbackType), m_client(client), m_member(member) {}

    void operator()(ECallbackType callbackType) const override {
        if (callbackType == m_CallbackType)
            (m_client.*m_member)(m_pNode);
    }
    /// Deletes itself.
    void Destroy() override { delete this; }

private:
    Client& m_client;
    Member m_member;
};

/// Registers a function that takes the node; returns the handle to deregister it with.
template <class Function>
CallbackHandleType Register(INode* node, const Function& function, ECallbackType callbackType = cbPostInsideLock) {
    return node->RegisterCallback(new Function_NodeCallback<Function>(node, function, callbackType));
}

/// Registers a member function that takes the node; \a client must outlive the registration.
template <class Client, class Member, class = std::enable_if_t<std::is_member_function_pointer_v<Member>>>
CallbackHandleType Register(INode* node, Client& client, Member member, ECallbackType callbackType = cbPostInsideLock) {
    return node->RegisterCallback(new Member_NodeCallback<Client, Member>(node, client, member, callbackType));
}

/// A callback of a member function, for INode::RegisterCallback, which takes it over.
template <class Client, class Member, class = std::enable_if_t<std::is_member_function_pointer_v<Member>>>
Member_NodeCallback<Client, Member>* make_NodeCallback(INode* node, Client& client, Member member,
                                                       ECallbackType callbackType = cbPostInsideLock) {
    return new Member_NodeCallback<Client, Member>(node, client, member, callbackType);
}

/// A callback of a function, for INode::RegisterCallback, which takes it over.
template <class Function>
Function_NodeCallback<Function>* make_NodeCallback(INode* node, const Function& function,
                                                   ECallbackType callbackType = cbPostInsideLock) {
    return new Function_NodeCallback<Function>(node, function, callbackType);
}

/// Removes a callback from the node it was registered with; 0 is allowed.
GENAPI_API bool Deregister(CallbackHandleType handle);

}  // namespace GenApi
