/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who watches which node for a stream grabber
 */

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/ImpatientLock.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";

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

/**
 * \class CNodeCallbackTable
 * \brief The watches of a stream grabber and of its plug-in
 *
 * D, a thread of the plug-in, begins and ends watches at any time, and whoever stops the plug-in waits for D. T may do
 * so with the lock of the camera's node map held: it was told, by a node of the camera or by a failed access, that the
 * camera is gone. So D never waits for a node map without an end: it ends a watch without the node map's lock, and
 * gives up beginning one.
 */

/**
 * \brief Make ready for watches
 * \param[in] streamMap The stream grabber's own node map, which the functions may change. Its lock is taken after that
 *            of the camera's, as by whoever changes a node of the camera.
 */
void CNodeCallbackTable::Begin(GenApi::INodeMap* streamMap, std::size_t reserved) {
    const std::lock_guard lock(m_lock);
    m_streamMap = streamMap;
    m_entries.reserve(reserved);
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
        if (node != nullptr)
            Watch(*map, {.node = node, .function = function, .handle = 0, .context = context, .kind = kind}, handle);
        else
            LogTrace(StreamLog(), tracelog::kWarning, "Could not register nodecallback for node (%s)", nodeName);
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception setting node callback. (%s)", error.what());
    }
    return handle;
}

// The function is told the value with both maps' locks held. The plug-in's thread D takes them here, where it can give
// up while T, which holds one, stops the plug-in and waits for D: in GenApi it could not. As long as nobody else knows
// the stream grabber, nobody can stop the plug-in, and those who watch the node from outside the lock are called as
// they expect.
void CNodeCallbackTable::Watch(GenApi::INodeMap& map, const Entry& entry, FgNodeCallbackHandle& handle) {
    const auto isHopeless = [this] { return m_isClosed || m_givesUp(); };
    std::optional<CImpatientLock<>> mapLock(std::in_place, map.GetLock(), isHopeless);
    std::optional<CImpatientLock<>> streamLock(std::in_place, m_streamMap->GetLock(), isHopeless);
    if (!*mapLock || !*streamLock)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("A node map is locked by who ends the grab.");
    handle = Add(entry);
    if (!m_isShared) {
        streamLock.reset();
        mapLock.reset();
    }
    entry.node->InvalidateNode();
}

// All entries of a node share one registration with GenApi. Wants the lock of the node's map.
FgNodeCallbackHandle CNodeCallbackTable::Add(Entry entry) {
    const std::lock_guard lock(m_lock);
    if (m_isClosed)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("The stream grabber is being destroyed.");
    m_entries.reserve(m_entries.size() + 1);
    const auto other = std::find_if(m_entries.begin(), m_entries.end(), [&entry](const Entry& candidate) {
        return candidate.node == entry.node && candidate.handle != 0;
    });
    entry.handle = other != m_entries.end() ? other->handle : entry.node->RegisterCallback(m_makeCallback(entry.node));
    return Store(entry);
}

// What a watch of the node left behind is used again.
FgNodeCallbackHandle CNodeCallbackTable::Store(const Entry& entry) {
    auto place = std::find_if(m_entries.begin(), m_entries.end(), [&entry](const Entry& candidate) {
        return candidate.node == entry.node && candidate.IsLeft();
    });
    if (place == m_entries.end())
        place = std::find_if(m_entries.begin(), m_entries.end(),
                             [](const Entry& candidate) { return candidate.node == nullptr; });
    if (place == m_entries.end())
        place = m_entries.insert(place, entry);
    else
        *place = entry;
    return static_cast<FgNodeCallbackHandle>(place - m_entries.begin()) + 1;
}

/**
 * \brief End a watch
 * \return true when it was the last one of its node; false, too, for an unknown handle
 * \context Any thread, the watching functions of the same node map included. Waits until the function, if it runs on
 *          another thread, has returned; which therefore must not wait for this thread.
 */
bool CNodeCallbackTable::Deregister(FgNodeCallbackHandle handle) noexcept {
    try {
        bool isLast = false;
        {
            std::unique_lock lock(m_lock);
            if (handle == 0 || handle > m_entries.size() || m_entries[handle - 1].function == nullptr)
                return false;
            const std::size_t position = handle - 1;
            isLast = IsLast(m_entries[position].node);
            m_entries[position].function = nullptr;
            if (!isLast)
                m_entries[position].handle = 0;
            m_callEnded.wait(lock, [&] { return !IsCalledByAnother(position); });
            if (!isLast)
                m_entries[position] = Entry();
        }
        RemoveLeft();
        return isLast;
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception Deregistering genicam node callback. (%s)", error.what());
        return false;
    }
}

bool CNodeCallbackTable::IsLast(const GenApi::INode* node) const {
    return std::count_if(m_entries.begin(), m_entries.end(), [node](const Entry& candidate) {
               return candidate.node == node && candidate.function != nullptr;
           }) < 2;
}

/**
 * \brief End all watches in the order of the table; there will be no others
 */
void CNodeCallbackTable::DeregisterAll() noexcept {
    {
        const std::lock_guard lock(m_lock);
        m_isClosed = true;
    }
    for (std::size_t position = 0; position < Size(); ++position) {
        GenApi::INode* const node = NodeAt(position);
        if (node == nullptr)
            continue;
        const GenApi::AutoLock mapLock(node->GetNodeMap()->GetLock());
        Deregister(position + 1);
        RemoveLeft();
    }
}

std::size_t CNodeCallbackTable::Size() const {
    const std::lock_guard lock(m_lock);
    return m_entries.size();
}

GenApi::INode* CNodeCallbackTable::NodeAt(std::size_t position) const {
    const std::lock_guard lock(m_lock);
    return m_entries[position].node;
}

// Removes from GenApi what ended watches have left there, but for nodes whose map is locked by another thread.
void CNodeCallbackTable::RemoveLeft() {
    for (std::size_t position = 0; position < Size(); ++position) {
        GenApi::INode* const node = NodeAt(position);
        if (node == nullptr)
            continue;
        const CImpatientLock mapLock(node->GetNodeMap()->GetLock(), [] { return true; });
        const Entry left = mapLock ? TakeLeft(position, node) : Entry();
        if (left.node != nullptr)
            node->DeregisterCallback(left.handle);
    }
}

CNodeCallbackTable::Entry CNodeCallbackTable::TakeLeft(std::size_t position, const GenApi::INode* node) {
    const std::lock_guard lock(m_lock);
    Entry& entry = m_entries[position];
    return entry.node == node && entry.IsLeft() ? std::exchange(entry, Entry()) : Entry();
}

/**
 * \brief Tell all functions that watch a node, in the order of the table
 * \param[in] node The node that changed; the lock of its map is held
 */
void CNodeCallbackTable::Dispatch(GenApi::INode* node) noexcept {
    const std::optional<std::int64_t> value = ValueOf(node);
    if (!value)
        return;
    const GenApi::AutoLock mapLock(m_streamMap->GetLock());
    // Functions may begin and end watches: no reference into the table outlives a call.
    Walk walk{.node = node};
    for (; const std::optional<Entry> entry = BeginCall(walk); ++walk.position) {
        Call(entry->function, *value, entry->context, entry->kind);
        EndCall(walk);
    }
    if (!walk.isKnown)
        LogTrace(StreamLog(), tracelog::kWarning, "Node not registered in callback table", node->GetName(true));
}

std::optional<CNodeCallbackTable::Entry> CNodeCallbackTable::BeginCall(Walk& walk) {
    const std::lock_guard lock(m_lock);
    for (; walk.position < m_entries.size(); ++walk.position) {
        const Entry& entry = m_entries[walk.position];
        walk.isKnown |= entry.node == walk.node;
        if (entry.node != walk.node || entry.function == nullptr)
            continue;
        walk.next = std::exchange(m_walks, &walk);
        return entry;
    }
    return std::nullopt;
}

void CNodeCallbackTable::EndCall(Walk& walk) noexcept {
    const std::lock_guard lock(m_lock);
    Walk** link = &m_walks;
    while (*link != &walk)
        link = &(*link)->next;
    *link = walk.next;
    m_callEnded.notify_all();
}

bool CNodeCallbackTable::IsCalledByAnother(std::size_t position) const noexcept {
    const std::thread::id self = std::this_thread::get_id();
    for (const Walk* walk = m_walks; walk != nullptr; walk = walk->next) {
        if (walk->position == position && walk->thread != self)
            return true;
    }
    return false;
}

}  // namespace Vanto
