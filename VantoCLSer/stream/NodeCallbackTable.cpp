/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who watches which node for a stream grabber
 */

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include <algorithm>
#include <optional>

#include "VantoCLSer/base/Log.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

// The value that functions are told; nothing when it can't be read.
std::optional<std::int64_t> ValueOf(GenApi::INode* node) {
    try {
        if (const GenApi::CIntegerPtr integer = node; integer.IsValid())
            return integer->GetValue();
        if (const GenApi::CEnumerationPtr enumeration = node; enumeration.IsValid())
            return enumeration->GetIntValue();
        LogTrace(StreamLog(), tracelog::kError, "Invalid node type. Only inter like types are supported");
        return 0;
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception getting node value (%s)", error.what());
        return std::nullopt;
    }
}

// Functions may be foreign: nothing gets past here.
void Call(FgNodeCallback function, std::int64_t value, void* context, std::uint32_t kind) noexcept {
    try {
        function(value, context, kind);
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kError, "GenericException in callback func (%s)", error.GetDescription());
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "std::exception in callback func (%s)", error.what());
    } catch (...) {
        LogTrace(StreamLog(), tracelog::kError, "Unknown exception in callback func");
    }
}

}  // namespace

void CNodeCallbackTable::Reserve(std::size_t count) {
    const Lock lock(m_lock);
    m_entries.reserve(count);
}

/**
 * \brief Watch a node
 * \param[in] map The node's map
 * \param[in] nodeName Name of an integer or an enumeration
 * \param[in] function Called at once and at every change, with the value, \a context and \a kind, on the thread that
 *            changes the node and with the lock of its map held
 * \return The entry's position plus one; 0, logged, when nothing is watched
 * \context Any thread, the watching functions of the same node map included
 */
FgNodeCallbackHandle CNodeCallbackTable::Register(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function,
                                                  void* context, std::uint32_t kind) noexcept {
    const char* refusal = nodeName == nullptr   ? "Invalid nodename passed."
                          : function == nullptr ? "Invalid callbackaddress passed."
                          : map == nullptr      ? "Cannot setup nodemap callback on null nodemap."
                                                : nullptr;
    if (refusal != nullptr) {
        LogTrace(StreamLog(), tracelog::kError, refusal);
        return 0;
    }
    FgNodeCallbackHandle handle = 0;
    try {
        GenApi::INode* const node = map->GetNode(nodeName);
        if (node == nullptr) {
            LogTrace(StreamLog(), tracelog::kWarning, "Could not register nodecallback for node (%s)", nodeName);
            return 0;
        }
        handle = Add(*node, {.node = node, .function = function, .handle = 0, .context = context, .kind = kind});
        if (handle != 0)
            node->InvalidateNode();
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception setting node callback. (%s)", error.what());
    }
    return handle;
}

// All entries of a node share one registration with GenApi.
FgNodeCallbackHandle CNodeCallbackTable::Add(GenApi::INode& node, Entry entry) {
    const GenApi::AutoLock mapLock(node.GetNodeMap()->GetLock());
    const Lock lock(m_lock);
    if (m_closed)
        return 0;
    const auto other = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&node](const Entry& candidate) { return candidate.node == &node; });
    entry.handle = other != m_entries.end() ? other->handle : node.RegisterCallback(m_makeCallback(&node));
    return Store(entry);
}

FgNodeCallbackHandle CNodeCallbackTable::Store(const Entry& entry) {
    auto place = std::find_if(m_entries.begin(), m_entries.end(),
                              [](const Entry& candidate) { return candidate.node == nullptr; });
    if (place == m_entries.end())
        place = m_entries.insert(place, entry);
    else
        *place = entry;
    return static_cast<FgNodeCallbackHandle>(place - m_entries.begin()) + 1;
}

GenApi::INode* CNodeCallbackTable::NodeOf(FgNodeCallbackHandle handle) const {
    const Lock lock(m_lock);
    return handle != 0 && handle <= m_entries.size() ? m_entries[handle - 1].node : nullptr;
}

/**
 * \brief End a watch
 * \return true when it was the last one of its node; false, too, for an unknown handle
 * \context Any thread, the watching functions of the same node map included. Waits until a function that runs on
 *          another thread has returned, which therefore must not wait for this thread.
 */
bool CNodeCallbackTable::Deregister(FgNodeCallbackHandle handle) noexcept {
    try {
        GenApi::INode* const node = NodeOf(handle);
        if (node == nullptr)
            return false;
        const GenApi::AutoLock mapLock(node->GetNodeMap()->GetLock());
        const Lock lock(m_lock);
        Entry& entry = m_entries[handle - 1];
        return entry.node == node && Remove(entry);
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception Deregistering genicam node callback. (%s)", error.what());
        return false;
    }
}

bool CNodeCallbackTable::Remove(Entry& entry) {
    GenApi::INode* const node = entry.node;
    const bool isLast = std::count_if(m_entries.begin(), m_entries.end(),
                                      [node](const Entry& candidate) { return candidate.node == node; }) < 2;
    if (isLast)
        node->DeregisterCallback(entry.handle);
    entry = Entry();
    return isLast;
}

/**
 * \brief End all watches in the order of the table; there will be no others
 */
void CNodeCallbackTable::DeregisterAll() noexcept {
    std::size_t count = 0;
    {
        const Lock lock(m_lock);
        m_closed = true;
        count = m_entries.size();
    }
    for (FgNodeCallbackHandle handle = 1; handle <= count; ++handle)
        Deregister(handle);
}

/**
 * \brief Tell all functions that watch a node, in the order of the table
 * \param[in] node The node that changed; the lock of its map is held
 * \param[in] streamMap The stream grabber's own map, which the functions may change. Its lock is taken before the
 *            table's, as by whoever changes one of its nodes.
 */
void CNodeCallbackTable::Dispatch(GenApi::INode* node, GenApi::INodeMap* streamMap) noexcept {
    const std::optional<std::int64_t> value = ValueOf(node);
    if (!value)
        return;
    std::optional<GenApi::AutoLock> mapLock;
    if (streamMap != nullptr)
        mapLock.emplace(streamMap->GetLock());
    const Lock lock(m_lock);
    bool isWatched = false;
    // Functions may add and remove entries: no reference into the table outlives a call.
    for (std::size_t position = 0; position < m_entries.size(); ++position) {
        const Entry entry = m_entries[position];
        if (entry.node != node)
            continue;
        isWatched = true;
        Call(entry.function, *value, entry.context, entry.kind);
    }
    if (!isWatched)
        LogTrace(StreamLog(), tracelog::kWarning, "Node not registered in callback table", node->GetName(true));
}

}  // namespace Vanto
