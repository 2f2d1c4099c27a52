/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of watching nodes have in common
 */
#pragma once

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include "StreamTest.h"

namespace stream_test {

/// What a watching function was told.
struct Watch {
    std::vector<std::pair<std::int64_t, std::uint32_t>> calls;
    std::function<void()> onCall;

    static void Call(std::int64_t value, void* context, std::uint32_t kind) {
        auto& self = *static_cast<Watch*>(context);
        self.calls.emplace_back(value, kind);
        if (const std::function<void()> action = self.onCall)
            action();
    }
};

class NodeCallbacks : public StreamTest {
public:
    const PlainCalleeTable& Table() { return *m_plugin->callee->table; }
    std::uint64_t WatchDevice(const char* node, Watch& watch, std::uint32_t kind = 0) {
        return Table().registerDeviceNodeCallback(m_plugin->callee, node, &Watch::Call, &watch, kind);
    }
    std::uint64_t WatchStream(const char* node, Watch& watch, std::uint32_t kind = 0) {
        return Table().registerStreamNodeCallback(m_plugin->callee, node, &Watch::Call, &watch, kind);
    }
    bool Unwatch(std::uint64_t handle) { return Table().deregisterNodeCallback(m_plugin->callee, handle); }
    void SetStream(const char* node, std::int64_t value) {
        GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode(node))->SetValue(value);
    }
};

}  // namespace stream_test
