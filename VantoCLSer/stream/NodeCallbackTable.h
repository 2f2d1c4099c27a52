/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who watches which node for a stream grabber
 */
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "GenApi/GenApi.h"
#include "os/LockName.h"
#include "vanto/FgPlugin.h"

namespace Vanto {

/// Watched nodes and the functions that are told. Thread-safe. Functions run with the locks of the node's map and of
/// the stream grabber's own map held, taken in this order, and with no other.
class CNodeCallbackTable {
public:
    /// Makes the GenApi callback that leads to Dispatch.
    using MakeCallback = std::function<GenApi::CNodeCallback*(GenApi::INode*)>;
    /// True when a thread must not wait for a node map any longer: who has that locked waits for the thread.
    using GivesUp = std::function<bool()>;

    CNodeCallbackTable(MakeCallback makeCallback, GivesUp givesUp)
        : m_makeCallback(std::move(makeCallback)), m_givesUp(std::move(givesUp)) {}

    void Begin(GenApi::INodeMap* streamMap, std::size_t reserved);
    /// From now on other threads know the stream grabber, and one may stop the plug-in.
    void Share() noexcept { m_isShared = true; }
    FgNodeCallbackHandle Register(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function, void* context,
                                  std::uint32_t kind) noexcept;
    bool Deregister(FgNodeCallbackHandle handle) noexcept;
    void DeregisterAll() noexcept;
    void Dispatch(GenApi::INode* node) noexcept;

private:
    /// A free entry has no node. One with a node and without a function is not called any more: its watch is being
    /// ended or, while it still has a handle of GenApi, is left to be removed there.
    struct Entry {
        GenApi::INode* node = nullptr;
        FgNodeCallback function = nullptr;
        GenApi::CallbackHandleType handle = 0;
        void* context = nullptr;
        std::uint32_t kind = 0;

        bool IsLeft() const noexcept { return node != nullptr && function == nullptr && handle != 0; }
    };
    /// The walk of a thread along the entries of a node.
    struct Walk {
        const GenApi::INode* node;
        std::thread::id thread = std::this_thread::get_id();
        std::size_t position = 0;  ///< of the function that runs
        bool isKnown = false;      ///< there is an entry
        Walk* next = nullptr;
    };

    void Watch(GenApi::INodeMap& map, const Entry& entry, FgNodeCallbackHandle& handle);
    FgNodeCallbackHandle Add(Entry entry);
    FgNodeCallbackHandle Store(const Entry& entry);
    bool IsLast(const GenApi::INode* node) const;
    std::optional<Entry> BeginCall(Walk& walk);
    void EndCall(Walk& walk) noexcept;
    bool IsCalledByAnother(std::size_t position) const noexcept;
    std::size_t Size() const;
    GenApi::INode* NodeAt(std::size_t position) const;
    void RemoveLeft();
    Entry TakeLeft(std::size_t position, const GenApi::INode* node);

    const MakeCallback m_makeCallback;
    const GivesUp m_givesUp;
    GenApi::INodeMap* m_streamMap = nullptr;
    std::atomic<bool> m_isShared{false};
    std::atomic<bool> m_isClosed{false};

    mutable std::mutex m_lock;  // guards the following; no function runs and no other lock is waited for with it
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "callback table"};
    std::condition_variable m_callEnded;
    std::vector<Entry> m_entries;
    Walk* m_walks = nullptr;  // of the functions that run
};

}  // namespace Vanto
