/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The order of operations and fields that separately built applications rely on
 */

#include <cstddef>

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

struct Application;

/// The operations of a stream grabber in their slots, written down once more.
struct StreamGrabberTable {
    void (*open)(Application* self);
    void (*close)(Application* self);
    bool (*isOpen)(const Application* self);
    std::uint64_t (*registerBuffer)(Application* self, void* buffer, std::uint64_t size);
    void* (*deregisterBuffer)(Application* self, std::uint64_t handle);
    void (*prepareGrab)(Application* self);
    void (*finishGrab)(Application* self);
    void (*queueBuffer)(Application* self, std::uint64_t handle, const void* context);
    void (*cancelGrab)(Application* self);
    bool (*retrieveResult)(Application* self, GrabResult* result);
    WaitObject* (*getWaitObject)(Application* self);
    GenApi::INodeMap* (*getNodeMap)(Application* self);
    void (*registerNodeCallback)(Application* self, GenApi::INodeMap* map, const char* nodeName,
                                 PlainNodeCallback function, void* context, std::uint32_t kind);
};

/// A stream grabber as one sees it who knows nothing but the table.
struct Application {
    const StreamGrabberTable* table;
};

class StreamGrabberInterface : public StreamTest {
protected:
    Application* m_self = reinterpret_cast<Application*>(static_cast<IStreamGrabber*>(m_grabber.get()));
    const StreamGrabberTable& m_table = *m_self->table;
};

TEST_F(StreamGrabberInterface, HasItsOperationsInTheirSlots) {
    m_table.close(m_self);
    EXPECT_FALSE(m_table.isOpen(m_self));
    m_table.open(m_self);
    EXPECT_TRUE(m_table.isOpen(m_self));
    std::vector<std::uint8_t> memory(32);
    const std::uint64_t handle = m_table.registerBuffer(m_self, memory.data(), memory.size());
    m_table.prepareGrab(m_self);
    m_table.queueBuffer(m_self, handle, &memory);
    m_plugin.Deliver(Frame(5));
    GrabResult result;
    EXPECT_TRUE(m_table.retrieveResult(m_self, &result));
    EXPECT_EQ(result.frameTag, 5U);
    EXPECT_EQ(result.context, &memory);
    m_table.queueBuffer(m_self, handle, nullptr);
    m_table.cancelGrab(m_self);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab ");
    EXPECT_TRUE(m_table.retrieveResult(m_self, &result));
    m_table.finishGrab(m_self);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StopGrab StopGrab ");
    EXPECT_EQ(m_table.deregisterBuffer(m_self, handle), memory.data());
    EXPECT_EQ(m_table.getWaitObject(m_self), &m_grabber->GetWaitObject());
    EXPECT_EQ(m_table.getNodeMap(m_self), m_grabber->GetNodeMap());
}

TEST_F(StreamGrabberInterface, WatchesNodesInTheSlotBehindThem) {
    std::int64_t told = -1;
    const PlainNodeCallback tell = [](std::int64_t value, void* context, std::uint32_t kind) {
        *static_cast<std::int64_t*>(context) = value + kind;
    };
    m_table.registerNodeCallback(m_self, m_device->GetNodeMap(), "Height", tell, &told, 1000);
    EXPECT_EQ(told, 1004);
}

/// A result, field by field.
struct PlainResult {
    const void* context;
    std::uint64_t handle;
    void* buffer;
    std::int32_t status;
    std::uint32_t frameTag;
    std::int32_t kind;
    std::int32_t pixelType;
    std::uint64_t reserved;
    std::int32_t width;
    std::int32_t height;
    std::int32_t offsetX;
    std::int32_t offsetY;
    std::int32_t reservedX;
    std::int32_t reservedY;
    std::uint64_t payloadSize;
    std::uint32_t errorCode;
};

TEST(GrabResultLayout, HasItsFieldsInTheirOrder) {
    const GrabResult result;
    const auto* const begin = reinterpret_cast<const char*>(&result);
    const auto at = [begin](const auto& field) {
        return static_cast<std::size_t>(reinterpret_cast<const char*>(&field) - begin);
    };
    EXPECT_EQ(at(result.context), offsetof(PlainResult, context));
    EXPECT_EQ(at(result.handle), offsetof(PlainResult, handle));
    EXPECT_EQ(at(result.buffer), offsetof(PlainResult, buffer));
    EXPECT_EQ(at(result.status), offsetof(PlainResult, status));
    EXPECT_EQ(at(result.frameTag), offsetof(PlainResult, frameTag));
    EXPECT_EQ(at(result.kind), offsetof(PlainResult, kind));
    EXPECT_EQ(at(result.pixelType), offsetof(PlainResult, pixelType));
    EXPECT_EQ(at(result.reserved), offsetof(PlainResult, reserved));
    EXPECT_EQ(at(result.width), offsetof(PlainResult, width));
    EXPECT_EQ(at(result.height), offsetof(PlainResult, height));
    EXPECT_EQ(at(result.offsetX), offsetof(PlainResult, offsetX));
    EXPECT_EQ(at(result.offsetY), offsetof(PlainResult, offsetY));
    EXPECT_EQ(at(result.reservedX), offsetof(PlainResult, reservedX));
    EXPECT_EQ(at(result.reservedY), offsetof(PlainResult, reservedY));
    EXPECT_EQ(at(result.payloadSize), offsetof(PlainResult, payloadSize));
    EXPECT_EQ(at(result.errorCode), offsetof(PlainResult, errorCode));
    EXPECT_GT(at(result.errorDescription), at(result.errorCode));
}

}  // namespace
