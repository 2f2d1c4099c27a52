/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who watches which node for a stream grabber
 */
#pragma once

#include <boost/thread/recursive_mutex.hpp>
#include <functional>
#include <vector>

#include "GenApi/GenApi.h"
#include "vanto/FgPlugin.h"

namespace Vanto {

/// Watched nodes and the functions that are told. Thread-safe. The lock of a node's map is always taken before the
/// table's own: GenApi reports changes with the node map's lock held.
class CNodeCallbackTable {
public:
    /// Makes the GenApi callback that leads to Dispatch.
    using MakeCallback = std::function<GenApi::CNodeCallback*(GenApi::INode*)>;

    explicit CNodeCallbackTable(MakeCallback makeCallback) : m_makeCallback(std::move(makeCallback)) {}

    void Reserve(std::size_t count);
    FgNodeCallbackHandle Register(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function, void* context,
                                  std::uint32_t kind) noexcept;
    bool Deregister(FgNodeCallbackHandle handle) noexcept;
    void DeregisterAll() noexcept;
    void Dispatch(GenApi::INode* node, GenApi::INodeMap* streamMap) noexcept;

private:
    struct Entry {
        GenApi::INode* node = nullptr;  // null marks a free entry
        FgNodeCallback function = nullptr;
        GenApi::CallbackHandleType handle = 0;
        void* context = nullptr;
        std::uint32_t kind = 0;
    };
    using Lock = boost::unique_lock<boost::recursive_mutex>;

    FgNodeCallbackHandle Add(GenApi::INode& node, Entry entry);
    FgNodeCallbackHandle Store(const Entry& entry);
    GenApi::INode* NodeOf(FgNodeCallbackHandle handle) const;
    bool Remove(Entry& entry);

    const MakeCallback m_makeCallback;
    mutable boost::recursive_mutex m_lock;
    std::vector<Entry> m_entries;
    bool m_closed = false;
};

}  // namespace Vanto
