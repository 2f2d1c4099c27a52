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
constexpr std::size_t kMaxWarnings = 10000;

struct SinkHolder {
    std::mutex mutex;
    WarningSink_t sink;
};

SinkHolder& Sink() {
    static SinkHolder holder;
    return holder;
}

// Set in tests of this very engine: every cached value is compared with the device.
bool IsCacheCheckWanted() {
    GenICam::gcstring value("$(VANTO_GENAPI_CHECK_CACHE)");
    GenICam::ReplaceEnvironmentVariables(value);
    return !value.empty() && value != "0";
}

// Structures and formulas within a node may have no name: nobody can ask for them.
bool IsListed(const CNode* node) {
    return !node->Is(kReplaced) && !node->Name().empty();
}

}  // namespace

void SetWarningSink(WarningSink_t sink) {
    SinkHolder& holder = Sink();
    const std::lock_guard lock(holder.mutex);
    holder.sink = std::move(sink);
}

CNodeMap::CNodeMap(const GenICam::gcstring& deviceName)
    : m_deviceName(deviceName), m_checksCaches(IsCacheCheckWanted()) {}

CNodeMap::~CNodeMap() = default;

// --- INodeMap ---

void CNodeMap::GetNodes(NodeList_t& nodes) const {
    nodes.clear();
    nodes.reserve(m_nodes.size());
    std::copy_if(m_nodes.begin(), m_nodes.end(), std::back_inserter(nodes), IsListed);
}

std::uint64_t CNodeMap::GetNumNodes() const {
    return static_cast<std::uint64_t>(std::count_if(m_nodes.begin(), m_nodes.end(), IsListed));
}

INode* CNodeMap::GetNode(const GenICam::gcstring& name) const {
    return FindNode(name.view());
}

CNode* CNodeMap::FindNode(std::string_view name) const {
    if (CNode* node = FindUnqualified(name))
        return node;
    for (const auto& [prefix, nameSpace] : {std::pair("Std::", Standard), std::pair("Cust::", Custom)}) {
        const std::string_view start(prefix);
        if (name.substr(0, start.size()) != start)
            continue;
        CNode* node = FindUnqualified(name.substr(start.size()));
        return node != nullptr && node->GetNameSpace() == nameSpace ? node : nullptr;
    }
    return nullptr;
}

CNode* CNodeMap::FindUnqualified(std::string_view name) const {
    CNode* node = FindIndexed(name);
    const bool mayBeEntry = node == nullptr && name.substr(0, 10) == "EnumEntry_";
    return mayBeEntry ? FindEntry(name.substr(10)) : node;
}

CNode* CNodeMap::FindIndexed(std::string_view name) const noexcept {
    const std::uint32_t found = m_names.Find(NameIndex::Hash(name), [&](std::uint32_t index) {
        return m_nodes[index]->Name() == name && !m_nodes[index]->Is(kReplaced);
    });
    return found != kNoNode ? m_nodes[found] : nullptr;
}

// The name of the enumeration, an underscore, that of the entry; both names may have underscores.
CNode* CNodeMap::FindEntry(std::string_view name) const {
    std::call_once(m_entriesIndexed, [this] { IndexEntries(); });
    const std::uint32_t found = m_entryNames.Find(NameIndex::Hash(name), [&](std::uint32_t index) {
        const std::string_view enumeration = m_nodes[index]->Enclosing()->Name();
        return name.substr(0, enumeration.size()) == enumeration && name.size() > enumeration.size() &&
               name[enumeration.size()] == '_' && name.substr(enumeration.size() + 1) == m_nodes[index]->Name();
    });
    return found != kNoNode ? m_nodes[found] : nullptr;
}

// Few maps are asked for entries by name: the others need not pay for an index. Called when all nodes are loaded.
void CNodeMap::IndexEntries() const {
    std::string name;
    for (const CNode* node : m_nodes) {
        if (node->Kind() != ENodeKind::EnumEntry || node->Is(kReplaced) || node->Enclosing() == nullptr)
            continue;
        name.assign(node->Enclosing()->Name()).append("_").append(node->Name());
        m_entryNames.Insert(NameIndex::Hash(name), node->Index());
    }
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
        if (!m_polledKnown) {
            for (CNode* node : m_nodes) {
                if (node->Is(kUsesPolling) && !node->Is(kReplaced) && node->GetPollingTime() > 0)
                    m_polled.push_back({node, node->GetPollingTime(), 0});
            }
            m_polledKnown = true;
        }
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

bool CNodeMap::ParseSwissKnives(GenICam::gcstring_vector* errorList) const {
    const MapAccess access(Self());
    bool isFine = true;
    for (CNode* node : m_nodes) {
        const ENodeKind kind = node->Kind();
        const bool hasFormula = kind == ENodeKind::IntSwissKnife || kind == ENodeKind::SwissKnife ||
                                kind == ENodeKind::IntConverter || kind == ENodeKind::Converter;
        if (!hasFormula || node->Is(kReplaced) || node->Usable())
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

// --- Warnings and reasons ---

WarningList_t CNodeMap::Warnings() const {
    const AutoLock lock(m_lock);
    return m_warnings;
}

bool CNodeMap::TakesWarnings() const noexcept {
    return m_warnings.size() <= kMaxWarnings;
}

void CNodeMap::Warn(Warning warning) {
    // A hostile file has millions of faults: the first ones tell enough.
    if (!TakesWarnings())
        return;
    if (warning.File.empty())
        warning.File = m_info.fileName;
    if (m_warnings.size() == kMaxWarnings)
        warning.Message = "There are more warnings; they are not listed";
    m_warnings.push_back(warning);
    WarningSink_t sink;
    {
        const std::lock_guard lock(Sink().mutex);
        sink = Sink().sink;
    }
    if (!sink)
        return;
    try {
        sink(warning);
    } catch (...) {
        // A log that fails must not keep a camera from working.
        m_warnings.back().Message += " (the warning sink failed)";
    }
}

const std::string& CNodeMap::ReasonOf(const CNode& node) const {
    static const std::string none;
    const auto found = m_reasons.find(node.Index());
    return found != m_reasons.end() ? found->second : none;
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
    for (CNode* node : m_nodes)
        node->Clear(kReadAccessValid | kFullAccessValid);
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

void CNodeMap::ForgetAllMemos() noexcept {
    for (CNode* node : m_nodes)
        node->ForgetMemos();
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
    for (CNode* node : m_nodes) {
        node->Clear(kCached);
        if (RegisterCore* core = node->Register())
            core->ForgetAddress();
        if (node->Has(kHasCallback))
            m_announced.push_back(node->Index());
    }
}

void CNodeMap::AttachRegisters() {
    if (m_registersAttached)
        return;
    m_registersAttached = true;
    for (CNode* node : m_nodes) {
        if (node->Is(kIsRegister) && !node->Is(kReplaced) && node->Usable() && node->Register() != nullptr)
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
