/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The nodes of one description, and what they share: the lock, the caches, the callbacks
 */
#pragma once

#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "GenApi/Diagnostics.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/INodeMap.h"
#include "core/AccessMemory.h"
#include "core/CallbackTable.h"
#include "core/DependencyGraph.h"
#include "core/Node.h"
#include "core/RegisterCache.h"
#include "os/LockName.h"
#include "schema/Arena.h"
#include "schema/Description.h"

namespace GenApi {

class CPort;

/// How deep operations lie within the one that is going on, and how many parts of nodes it has evaluated.
struct OngoingAccess {
    unsigned depth = 0;
    std::uint64_t work = 0;
};

/// Makes a node in an arena.
using NodeMaker = CNode* (*)(const NodeSeed& seed, Arena& arena);

/// The names of the files that a description and what is injected into it come from.
struct FileNames {
    std::string description;
    std::string injected;
};

/// A node map. Its public operations are thread-safe; those that the nodes and the loader use want its lock.
class CNodeMap final : public INodeMap, public IDeviceInfo {
public:
    /// Nodes are made when they are first asked for.
    CNodeMap(const GenICam::gcstring& deviceName, std::shared_ptr<const Description> description, FileNames files,
             NodeMaker maker);
    ~CNodeMap();
    CNodeMap(const CNodeMap&) = delete;
    CNodeMap& operator=(const CNodeMap&) = delete;

    // INodeMap
    void GetNodes(NodeList_t& nodes) const override;
    INode* GetNode(const GenICam::gcstring& name) const override;
    void InvalidateNodes() const override;
    bool Connect(IPort* port, const GenICam::gcstring& portName) const override;
    bool Connect(IPort* port) const override;
    GenICam::gcstring GetDeviceName() const override { return m_deviceName; }
    void Poll(std::int64_t elapsedTime) override;
    CLock& GetLock() const override { return m_lock; }
    std::uint64_t GetNumNodes() const override;
    bool ParseSwissKnives(GenICam::gcstring_vector* errorList = nullptr) const override;
    // IDeviceInfo
    GenICam::gcstring GetModelName() const override { return Info().modelName; }
    GenICam::gcstring GetVendorName() const override { return Info().vendorName; }
    GenICam::gcstring GetToolTip() const override { return Info().toolTip; }
    GenICam::gcstring GetStandardNameSpace() const override { return Info().standardNameSpace; }
    void GetGenApiVersion(Version_t& version, std::uint16_t& build) const override;
    void GetSchemaVersion(Version_t& version) const override { version = Info().schemaVersion; }
    void GetDeviceVersion(Version_t& version) const override { version = Info().deviceVersion; }
    GenICam::gcstring GetProductGuid() const override { return Info().productGuid; }
    GenICam::gcstring GetVersionGuid() const override { return Info().versionGuid; }

    WarningList_t Warnings() const;
    /// Sends what was found wrong in a description to the warning sink.
    static void TellWarnings(std::span<const LoadWarning> warnings, const FileNames& files);

    // For the nodes; the lock is held.
    CNode* FindNode(std::string_view name) const { return NodeAt(m_description->FindNode(name)); }
    /// The node of a number, made now when nobody asked for it before; null for kNoNode. Wants no lock.
    CNode* NodeAt(std::uint32_t node) const {
        if (node >= m_description->NodeCount())
            return nullptr;
        CNode* const known = m_nodes[node].load(std::memory_order_acquire);
        return known != nullptr ? known : MakeNode(node);
    }
    /// The node of a number if it was ever asked for, null otherwise.
    CNode* KnownNode(std::uint32_t node) const noexcept { return m_nodes[node].load(std::memory_order_acquire); }
    const Description& Schema() const noexcept { return *m_description; }
    Arena& Memory() noexcept { return m_arena; }
    RegisterCache& Registers() noexcept { return m_registers; }
    DependencyGraph& Dependencies() noexcept { return m_graph; }
    /// What the access that is going on has found out.
    AccessMemory& Memories() noexcept { return m_memories; }
    /// An operation of a user begins or ends. The outermost one knows nothing that an earlier one found out.
    void BeginAccess() {
        if (m_ongoing.depth++ == 0) {
            m_ongoing.work = 0;
            ForgetMemories();
            CheckPorts();
        }
    }
    void EndAccess() noexcept { --m_ongoing.depth; }
    /// The same for code of others, which is called within an operation: returns what to resume.
    OngoingAccess SuspendAccess() noexcept { return std::exchange(m_ongoing, {}); }
    void ResumeAccess(OngoingAccess suspended) noexcept { m_ongoing = suspended; }
    /// Counts one evaluation of a part of a node. Throws when the access makes far more of them than there are nodes.
    void CountWork(const CNode& node) {
        if (++m_ongoing.work > m_mostWork)
            ThrowTooMuchWork(node);
    }
    /// Forgets what was found out, because it may have changed.
    void ForgetMemories() noexcept {
        if (m_memories.Forget())
            ForgetAllMemos();
    }
    /// True in the debug mode that compares every cached value with the device.
    bool ChecksCaches() const noexcept { return m_checksCaches; }
    const std::string& ReasonOf(const CNode& node) const;
    void SetReason(const CNode& node, const std::string& reason);
    /// Keeps a warning and sends it to the sink.
    void Warn(Warning warning);
    /// Notes the access modes of the connected ports; drops cached access modes when one changed. Takes no lock.
    void CheckPorts() noexcept;

    /// Runs a change: takes the lock, runs \a body, drops the caches of all that depends on what it changed, runs the
    /// callbacks inside the lock, gives the lock back and runs those outside. Callbacks before the change run for
    /// \a node, null for none, and what depends on what it writes.
    template <class Body>
    void Change(CNode* node, Body&& body);
    /// Says that the state of a node changed.
    void Changed(CNode& node);
    /// Says that the value of a node must be read from the device again.
    void Dropped(CNode& node);
    /// Says that the bytes of a block changed: all registers that share some of them changed.
    void BlockChanged(RegisterBlock& block);
    /// Drops the caches of all that depends on what changed up to now.
    void Spread();
    /// The same for one block whose content turned out to be different; nobody is told.
    void SpreadQuietly(RegisterBlock& block);
    /// Says that anything may have changed.
    void EverythingChanged();
    /// The text of a string node that has it itself.
    std::string OwnTextOf(const CNode& node) const;
    void SetOwnText(const CNode& node, const std::string& text);
    /// Where there are callbacks, gives every register of a constant address its block, so that a write finds all that
    /// share it.
    void AttachRegisters();

    CallbackHandleType AddCallback(CNode& node, CNodeCallback* callback);
    bool RemoveCallback(CNode& node, CallbackHandleType handle);

private:
    /// A change that is being made, within others that callbacks make. Throws when there are too many of them.
    class ChangeScope {
    public:
        explicit ChangeScope(CNodeMap& map);
        ~ChangeScope();
        ChangeScope(const ChangeScope&) = delete;
        ChangeScope& operator=(const ChangeScope&) = delete;

    private:
        CNodeMap& m_map;
    };

    /// A node with a polling time, and how much of it has gone by.
    struct PolledNode {
        CNode* node;
        std::int64_t period;
        std::int64_t elapsed;
    };

    [[noreturn]] static void ThrowTooMuchWork(const CNode& node);
    void FindPolled();
    void ForgetAllMemos() noexcept;
    void RunBefore(CNode& node, ECallbackType type);
    std::exception_ptr EndChange(CallbackList& outside);
    CNode* MakeNode(std::uint32_t node) const;
    template <class Use>
    void ForEachKnownNode(Use&& use);
    const DescriptionInfo& Info() const noexcept { return m_description->Info(); }
    CNodeMap& Self() const noexcept { return const_cast<CNodeMap&>(*this); }

    const GenICam::gcstring m_deviceName;
    const std::shared_ptr<const Description> m_description;
    const FileNames m_files;
    const NodeMaker m_maker;
    mutable CLock m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "node map"};
    Arena m_arena;
    mutable std::mutex m_makingMutex;  // held while a node is made; nothing else is locked meanwhile
    [[no_unique_address]] const os::LockName m_makingMutexName{&m_makingMutex, "making of a node"};
    mutable Arena m_nodeArena;                             // guarded by it
    const std::unique_ptr<std::atomic<CNode*>[]> m_nodes;  // null for those that nobody asked for
    std::vector<CPort*> m_ports;

    AccessMemory m_memories;
    OngoingAccess m_ongoing;
    const std::uint64_t m_mostWork;
    RegisterCache m_registers;
    DependencyGraph m_graph;
    CallbackTable m_callbacks;
    std::vector<Invalidation> m_changes;
    std::vector<std::uint32_t> m_announced;
    CallbackList m_outside;
    unsigned m_changeDepth = 0;
    bool m_registersAttached = false;
    bool m_checksCaches = false;
    std::unordered_map<std::uint32_t, std::string> m_reasons;
    std::unordered_map<std::uint32_t, std::string> m_ownTexts;
    std::vector<PolledNode> m_polled;
    bool m_polledKnown = false;
    WarningList_t m_warnings;  // since the description was loaded
};

/**
 * Callbacks before the change that want no lock run before it is taken. Where this change is made within another one,
 * by a callback inside the lock, the lock is held by that one, so they run inside it, too.
 *
 * A change that throws may have changed something before: what depends on it is invalidated and announced all the same.
 * An exception of the body goes before one of a callback.
 */
template <class Body>
void CNodeMap::Change(CNode* node, Body&& body) {
    CallbackList outside;
    std::exception_ptr failure;
    if (node != nullptr && m_callbacks.WantsBefore())
        RunBefore(*node, cbPreOutsideLock);
    {
        const AutoLock lock(m_lock);
        const ChangeScope scope(*this);
        try {
            if (node != nullptr && m_callbacks.WantsBefore())
                RunBefore(*node, cbPreInsideLock);
            body();
        } catch (...) {
            failure = std::current_exception();
        }
        const std::exception_ptr callbackFailure = EndChange(outside);
        if (!failure)
            failure = callbackFailure;
    }
    if (!outside.empty()) {
        const std::exception_ptr callbackFailure = m_callbacks.Run(outside, cbPostOutsideLock);
        if (!failure)
            failure = callbackFailure;
    }
    if (failure)
        std::rethrow_exception(failure);
}

}  // namespace GenApi
