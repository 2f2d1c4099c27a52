/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The nodes of one description, and what they share: the lock, the caches, the callbacks
 */

#include "core/NodeMap.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <optional>

#include "Base/GCException.h"
#include "Base/GCUtilities.h"
#include "core/MapAccess.h"
#include "core/Port.h"
#include "core/RegisterCore.h"

namespace GenApi {

namespace {

// Callbacks that set nodes whose callbacks set nodes...: a circle of them must end.
constexpr unsigned kMaxChangeDepth = 32;

// What is evaluated is remembered until the access is over, or until it changes something: each write of many copies
// changes something. A few evaluations of each part of each node are plenty, and a small map may have more of them.
constexpr unsigned kWorkOfANode = 64;
constexpr std::uint64_t kLeastWork = 100'000;

// Set in tests of this very engine: every cached value is compared with the device.
bool IsCacheCheckWanted() {
    GenICam::gcstring value("$(VANTO_GENAPI_CHECK_CACHE)");
    GenICam::ReplaceEnvironmentVariables(value);
    return !value.empty() && value != "0";
}

// Structures and formulas within a node may have no name: nobody can ask for them.
bool IsListed(const Description& description, std::uint32_t node) {
    return !description.Node(node).Is(kReplaced) && !description.NameOf(node).empty();
}

}  // namespace

CNodeMap::CNodeMap(const GenICam::gcstring& deviceName, std::shared_ptr<const Description> description, FileNames files,
                   NodeMaker maker)
    : m_deviceName(deviceName),
      m_description(std::move(description)),
      m_files(std::move(files)),
      m_maker(maker),
      m_nodes(std::make_unique<std::atomic<CNode*>[]>(m_description->NodeCount())),
      m_mostWork(kLeastWork + std::uint64_t{kWorkOfANode} * m_description->NodeCount()),
      m_checksCaches(IsCacheCheckWanted()) {
    TellWarnings(m_description->Warnings(), m_files);
}

CNodeMap::~CNodeMap() = default;

// --- Nodes ---

// Two threads may ask for one node at once; nodes are also asked for without the map's lock.
CNode* CNodeMap::MakeNode(std::uint32_t node) const {
    const std::lock_guard lock(m_makingMutex);
    CNode* made = m_nodes[node].load(std::memory_order_relaxed);
    if (made == nullptr) {
        made = m_maker({&Self(), m_description.get(), node}, m_nodeArena);
        m_nodes[node].store(made, std::memory_order_release);
    }
    return made;
}

// What nobody asked for knows nothing that could be forgotten.
template <class Use>
void CNodeMap::ForEachKnownNode(Use&& use) {
    for (std::uint32_t node = 0; node < m_description->NodeCount(); ++node) {
        if (CNode* const known = KnownNode(node))
            use(*known);
    }
}

// --- INodeMap ---

void CNodeMap::GetNodes(NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(m_description->NodeCount());
    for (std::uint32_t node = 0; node < m_description->NodeCount(); ++node) {
        if (IsListed(*m_description, node))
            nodes.push_back(NodeAt(node));
    }
}

std::uint64_t CNodeMap::GetNumNodes() const {
    std::uint64_t count = 0;
    for (std::uint32_t node = 0; node < m_description->NodeCount(); ++node)
        count += IsListed(*m_description, node) ? 1 : 0;
    return count;
}

INode* CNodeMap::GetNode(const GenICam::gcstring& name) const {
    return FindNode(name.view());
}

void CNodeMap::InvalidateNodes() const {
    Self().Change(nullptr, [this] { Self().EverythingChanged(); });
}

bool CNodeMap::Connect(IPort* port) const {
    return Connect(port, "Device");
}

/**
 * \brief Connect a port node with what gives it access
 * \param[in] port Outlives the node map or is replaced before it goes; null to disconnect
 * \return False when there is no port node of that name
 */
bool CNodeMap::Connect(IPort* port, const GenICam::gcstring& portName) const {
    auto* node = dynamic_cast<CPort*>(FindNode(portName.view()));
    if (node == nullptr)
        return false;
    Self().Change(nullptr, [&] {
        std::vector<CPort*>& ports = Self().m_ports;
        std::erase(ports, node);
        node->ConnectTo(port);
        if (port != nullptr)
            ports.push_back(node);
        Self().m_registers.ForgetSettings();
        Self().EverythingChanged();
    });
    return true;
}

/**
 * \brief Tell the node map that time went by
 * \param[in] elapsedTime Milliseconds since the last call
 */
void CNodeMap::Poll(std::int64_t elapsedTime) {
    Change(nullptr, [&] {
        if (!m_polledKnown)
            FindPolled();
        for (PolledNode& polled : m_polled) {
            if (polled.node->IsPollingBlocked())
                continue;
            polled.elapsed += std::max<std::int64_t>(elapsedTime, 0);
            if (polled.elapsed < polled.period)
                continue;
            polled.elapsed = 0;
            Dropped(*polled.node);
        }
    });
}

void CNodeMap::FindPolled() {
    m_polledKnown = true;
    for (std::uint32_t index = 0; index < m_description->NodeCount(); ++index) {
        const NodeRecord& record = m_description->Node(index);
        CNode* const node = record.Is(kUsesPolling) && !record.Is(kReplaced) ? NodeAt(index) : nullptr;
        if (node != nullptr && node->GetPollingTime() > 0)
            m_polled.push_back({node, node->GetPollingTime(), 0});
    }
}

bool CNodeMap::ParseSwissKnives(GenICam::gcstring_vector* errorList) const {
    const MapAccess access(Self());
    bool isFine = true;
    for (std::uint32_t index = 0; index < m_description->NodeCount(); ++index) {
        const NodeRecord& record = m_description->Node(index);
        const bool hasFormula = record.kind == ENodeKind::IntSwissKnife || record.kind == ENodeKind::SwissKnife ||
                                record.kind == ENodeKind::IntConverter || record.kind == ENodeKind::Converter;
        CNode* const node = hasFormula && !record.Is(kReplaced) ? NodeAt(index) : nullptr;
        if (node == nullptr || node->Usable())
            continue;
        isFine = false;
        if (errorList != nullptr)
            errorList->push_back(node->Label() + ": " + ReasonOf(*node));
    }
    return isFine;
}

void CNodeMap::GetGenApiVersion(Version_t& version, std::uint16_t& build) const {
    version = {2, 3, 0};
    build = 0;
}

// --- Reasons and texts ---

const std::string& CNodeMap::ReasonOf(const CNode& node) const {
    const auto found = m_reasons.find(node.Index());
    return found != m_reasons.end() ? found->second : m_description->ReasonOf(node.Index());
}

void CNodeMap::SetReason(const CNode& node, const std::string& reason) {
    m_reasons[node.Index()] = reason;
}

std::string CNodeMap::OwnTextOf(const CNode& node) const {
    const auto found = m_ownTexts.find(node.Index());
    return found != m_ownTexts.end() ? found->second : std::string(node.TextOf(ETag::Value));
}

void CNodeMap::SetOwnText(const CNode& node, const std::string& text) {
    m_ownTexts[node.Index()] = text;
}

// --- Changes ---

void CNodeMap::CheckPorts() noexcept {
    bool changed = false;
    for (CPort* port : m_ports)
        changed = port->Refresh() || changed;
    if (!changed)
        return;
    ForEachKnownNode([](CNode& node) { node.Clear(kReadAccessValid | kFullAccessValid); });
}

CNodeMap::ChangeScope::ChangeScope(CNodeMap& map) : m_map(map) {
    if (m_map.m_changeDepth >= kMaxChangeDepth)
        throw LOGICAL_ERROR_EXCEPTION("Callbacks of '%s' change nodes in a circle", m_map.m_deviceName);
    ++m_map.m_changeDepth;
    m_map.BeginAccess();
}

CNodeMap::ChangeScope::~ChangeScope() {
    m_map.EndAccess();
    --m_map.m_changeDepth;
}

void CNodeMap::ThrowTooMuchWork(const CNode& node) {
    throw LOGICAL_ERROR_EXCEPTION("%s: one access evaluates nodes again and again", node.Label());
}

void CNodeMap::ForgetAllMemos() noexcept {
    ForEachKnownNode([](CNode& node) { node.ForgetMemos(); });
    m_memories.Use();
    m_memories.Forget();
}

/**
 * \brief Run the callbacks that want to run before a change
 * \throw Whatever the first callback threw; the change is then not made
 */
void CNodeMap::RunBefore(CNode& node, ECallbackType type) {
    thread_local unsigned depth = 0;
    if (depth >= kMaxChangeDepth)
        throw LOGICAL_ERROR_EXCEPTION("Callbacks of '%s' change nodes in a circle", m_deviceName);
    CallbackList list;
    {
        const AutoLock lock(m_lock);
        for (const std::uint32_t affected : m_graph.AffectedBy(*this, node))
            m_callbacks.Collect(affected, type, list);
    }
    ++depth;
    std::optional<ForeignCall> foreign;
    if (type == cbPreInsideLock)
        foreign.emplace(*this);
    const std::exception_ptr failure = m_callbacks.Run(list, type);
    --depth;
    if (failure)
        std::rethrow_exception(failure);
}

/**
 * \brief Announce a change
 * \param[out] outside Callbacks to run when the lock has been given back; of the outermost change only
 * \return The first exception of a callback
 */
std::exception_ptr CNodeMap::EndChange(CallbackList& outside) {
    std::exception_ptr failure;
    Spread();
    if (!m_announced.empty()) {
        CallbackList inside;
        for (const std::uint32_t node : m_announced) {
            m_callbacks.Collect(node, cbPostInsideLock, inside);
            m_callbacks.Collect(node, cbPostOutsideLock, m_outside);
        }
        m_announced.clear();
        const ForeignCall foreign(*this);
        failure = m_callbacks.Run(inside, cbPostInsideLock);
    }
    if (m_changeDepth == 1)
        outside.swap(m_outside);
    return failure;
}

void CNodeMap::Changed(CNode& node) {
    ForgetMemories();
    m_changes.push_back({node.Index(), EInvalidate::Derived});
}

void CNodeMap::Dropped(CNode& node) {
    ForgetMemories();
    m_changes.push_back({node.Index(), EInvalidate::Content});
}

void CNodeMap::BlockChanged(RegisterBlock& block) {
    ForgetMemories();
    const auto usersChanged = [this](const RegisterBlock& changed) {
        for (RegisterCore* user = changed.users; user != nullptr; user = user->NextUser())
            m_changes.push_back({user->Owner().Index(), EInvalidate::Derived, false});
    };
    usersChanged(block);
    for (RegisterBlock* other : m_registers.OverlapsOf(block)) {
        other->valid = false;
        usersChanged(*other);
    }
}

void CNodeMap::Spread() {
    if (!m_changes.empty())
        m_graph.Spread(*this, m_changes, m_announced);
}

void CNodeMap::SpreadQuietly(RegisterBlock& block) {
    std::vector<Invalidation> changes;
    for (RegisterCore* user = block.users; user != nullptr; user = user->NextUser())
        changes.push_back({user->Owner().Index(), EInvalidate::Derived, false});
    std::vector<std::uint32_t> nobody;
    m_graph.Spread(*this, changes, nobody);
}

void CNodeMap::EverythingChanged() {
    ForgetMemories();
    m_registers.InvalidateAll();
    ForEachKnownNode([this](CNode& node) {
        node.Clear(kCached);
        if (RegisterCore* core = node.Register())
            core->ForgetAddress();
        if (node.Has(kHasCallback))
            m_announced.push_back(node.Index());
    });
}

void CNodeMap::AttachRegisters() {
    // Caches of what was never read need not hear of a write, but who registered a callback wants to.
    if (m_registersAttached || m_callbacks.IsEmpty())
        return;
    m_registersAttached = true;
    for (std::uint32_t index = 0; index < m_description->NodeCount(); ++index) {
        const NodeRecord& record = m_description->Node(index);
        CNode* const node = record.Is(kIsRegister) && !record.Is(kReplaced) ? NodeAt(index) : nullptr;
        if (node != nullptr && node->Usable() && node->Register() != nullptr)
            node->Register()->AttachConstant();
    }
}

// --- Callbacks ---

CallbackHandleType CNodeMap::AddCallback(CNode& node, CNodeCallback* callback) {
    const AutoLock lock(m_lock);
    const CallbackHandleType handle = m_callbacks.Add(node.Index(), callback);
    node.Set(kHasCallback);
    m_graph.Learned();
    return handle;
}

/**
 * \brief Remove a callback and destroy it
 * \return False when the handle is not one of this node
 *
 * When it returns, no other thread runs the callback. A callback may remove itself; it is destroyed when it returns.
 */
bool CNodeMap::RemoveCallback(CNode& node, CallbackHandleType handle) {
    std::shared_ptr<CallbackEntry> entry;
    {
        const AutoLock lock(m_lock);
        entry = m_callbacks.Take(node.Index(), handle);
        if (!m_callbacks.Has(node.Index()))
            node.Clear(kHasCallback);
    }
    if (!entry)
        return false;
    if (!m_callbacks.WaitFor(entry)) {
        const AutoLock lock(m_lock);
        Warn(node.MakeWarning(wkCache, "a removed callback does not end"));
    }
    return true;
}

bool Deregister(CallbackHandleType handle) {
    auto* callback = reinterpret_cast<CNodeCallback*>(handle);
    return callback != nullptr && callback->GetNode() != nullptr && callback->GetNode()->DeregisterCallback(handle);
}

}  // namespace GenApi
