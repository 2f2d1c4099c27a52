/* SPDX-License-Identifier: Apache-2.0 */
/*
 * INodeMap: the nodes of one device
 */
#pragma once

#include "GenApi/INode.h"
#include "GenApi/IPort.h"
#include "GenApi/Synch.h"

namespace GenApi {

/// All nodes of one description. Thread-safe: every operation of it and of its nodes takes its lock.
struct INodeMap {
    /// Appends all nodes.
    virtual void GetNodes(NodeList_t& nodes) const = 0;
    /// The node of a name, which may be preceded by its name space ("Std::" or "Cust::"); null when there is none.
    virtual INode* GetNode(const GenICam::gcstring& name) const = 0;
    /// Drops all cached values and runs the callbacks of all nodes.
    virtual void InvalidateNodes() const = 0;
    /// Connects a port node with what gives it access; false when there is no such port node.
    virtual bool Connect(IPort* port, const GenICam::gcstring& portName) const = 0;
    /// Connects the port node "Device".
    virtual bool Connect(IPort* port) const = 0;
    /// The name that the node map was made with.
    virtual GenICam::gcstring GetDeviceName() const = 0;
    /// Tells that \a elapsedTime milliseconds went by; nodes whose polling time is over are invalidated.
    virtual void Poll(std::int64_t elapsedTime) = 0;
    /// The lock that every operation of the node map takes.
    virtual CLock& GetLock() const = 0;
    /// How many nodes there are.
    virtual std::uint64_t GetNumNodes() const = 0;
    /// Compiles all formulas; false when one does not parse, with one text each.
    virtual bool ParseSwissKnives(GenICam::gcstring_vector* errorList = nullptr) const = 0;

protected:
    INodeMap() = default;
    INodeMap(const INodeMap&) = default;
    INodeMap& operator=(const INodeMap&) = default;
    ~INodeMap() = default;
};

}  // namespace GenApi
