/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Registering, queueing and retrieving buffers
 */

#include "VantoCLSer/stream/StreamBuffers.h"

#include <fmt/format.h>

#include "AllocationCount.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::RuntimeException;

// A delivery never allocates, whatever is queued and delivered beside it.
TEST(StreamBuffers, HaveRoomForAFrameThatIsUnderWayWhileAnotherBufferIsQueued) {
    CStreamBuffers buffers;
    std::uint8_t memory[2] = {};
    const StreamBufferHandle first = buffers.Register(&memory[0], 1).result.handle;
    const StreamBufferHandle second = buffers.Register(&memory[1], 1).result.handle;
    buffers.Queue(first);
    EXPECT_EQ(buffers.TakeEmpty(), first);
    buffers.Queue(second);
    EXPECT_EQ(buffers.TakeEmpty(), second);
    const std::size_t before = AllocationsOfThisThread();
    buffers.PutFilled(second);
    buffers.PutFilled(first);
    EXPECT_EQ(AllocationsOfThisThread(), before);
    EXPECT_EQ(buffers.FirstFilled(), second);
    buffers.TakeFilled();
    EXPECT_EQ(buffers.FirstFilled(), first);
}

TEST(StreamBuffers, CountNoFrameThatIsNotUnderWayAnyMore) {
    CStreamBuffers buffers;
    std::uint8_t memory = 0;
    const StreamBufferHandle handle = buffers.Register(&memory, 1).result.handle;
    std::size_t before = 0;
    for (int frame = 0; frame < 1000; ++frame) {
        if (frame == 10)
            before = AllocationsOfThisThread();
        buffers.Queue(handle);
        buffers.TakeEmpty();
        buffers.ForgetTaken();
        buffers.Queue(handle);
        buffers.TakeEmpty();
        buffers.PutFilled(handle);
        buffers.TakeFilled();
    }
    EXPECT_EQ(AllocationsOfThisThread(), before);
}

class StreamBuffersTest : public StreamTest {
protected:
    /// Puts a buffer into the queue of filled ones.
    StreamBufferHandle AddFilled() {
        const StreamBufferHandle handle = AddBuffer();
        m_grabber->QueueBuffer(handle, nullptr);
        m_plugin.Deliver(Frame());
        return handle;
    }
};

TEST_F(StreamBuffersTest, RegisteringANullAddressIsRefusedFirst) {
    const std::string text = "Invalid Buffer passed to RegisterBuffer";
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->RegisterBuffer(nullptr, 1); }), text);
    m_grabber->Close();
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->RegisterBuffer(nullptr, 1); }), text);
}

TEST_F(StreamBuffersTest, HandlesGrowByOne) {
    const StreamBufferHandle first = AddBuffer();
    EXPECT_EQ(AddBuffer(), first + 1);
    m_grabber->DeregisterBuffer(first + 1);
    EXPECT_EQ(AddBuffer(), first + 2);
}

TEST_F(StreamBuffersTest, RegistrationAndItsEndAreTraced) {
    std::uint8_t byte = 0;
    const StreamBufferHandle handle = m_grabber->RegisterBuffer(&byte, 16);
    EXPECT_EQ(m_grabber->DeregisterBuffer(handle), &byte);
    const std::string rest =
        fmt::format("(handle={:#x}; Addr={:#x}; size=16 (0x10))", handle, reinterpret_cast<std::uintptr_t>(&byte));
    EXPECT_EQ(m_log->CountText("Registereing Buffer " + rest, tracelog::kTrace), 1U);
    EXPECT_EQ(m_log->CountText("Deregistering Buffer " + rest, tracelog::kTrace), 1U);
}

TEST_F(StreamBuffersTest, RegistrationTracesTheWholeSize) {
    std::uint8_t byte = 0;
    m_grabber->RegisterBuffer(&byte, ~std::uint64_t{0});
    EXPECT_THAT(m_log->GetMessages().back().text, testing::EndsWith("size=18446744073709551615 (0xffffffffffffffff))"));
}

TEST_F(StreamBuffersTest, SizesAreNotChecked) {
    GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode("MaxNumBuffer"))->SetValue(1);
    for (int count = 0; count < 20; ++count)
        AddBuffer(count == 0 ? 1 : 1 << 16);
}

TEST_F(StreamBuffersTest, UnknownHandlesAreRefused) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->DeregisterBuffer(handle);
    const std::string text = fmt::format("Invalid Bufferhandle {:#x} passed", handle);
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->DeregisterBuffer(handle); }), text);
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->QueueBuffer(handle, nullptr); }), text);
    EXPECT_STREQ(m_plugin->calls, "Create Init ");
}

TEST_F(StreamBuffersTest, QueuedBuffersCannotBeDeregistered) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->DeregisterBuffer(handle); }),
              fmt::format("Buffer h={:#x} waiting to be filled and cannot be deregistred now.", handle));
    m_plugin.Deliver(Frame());
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->DeregisterBuffer(handle); }),
              fmt::format("Buffer h={:#x} currently waiting to be retrieved and cannot be deregistred now", handle));
    Retrieve();
    EXPECT_EQ(m_grabber->DeregisterBuffer(handle), BufferOf(handle).data());
}

TEST_F(StreamBuffersTest, ABufferInBothQueuesCountsAsWaitingToBeFilled) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddFilled();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->DeregisterBuffer(handle); }),
              fmt::format("Buffer h={:#x} waiting to be filled and cannot be deregistred now.", handle));
}

TEST_F(StreamBuffersTest, AQueuedHandleThatIsForgottenIsUnknown) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->Close();
    m_grabber->Open();
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->DeregisterBuffer(handle); }),
              fmt::format("Invalid Bufferhandle {:#x} passed", handle));
}

TEST_F(StreamBuffersTest, AFailingStartLeavesTheBufferWithItsContext) {
    m_grabber->PrepareGrab();
    m_plugin->startResult = false;
    const StreamBufferHandle handle = AddBuffer();
    EXPECT_THROW(m_grabber->QueueBuffer(handle, &handle), RuntimeException);
    m_plugin.Deliver(Frame());
    EXPECT_EQ(Retrieve().context, &handle);
}

TEST_F(StreamBuffersTest, CancellingMovesTheHandlesInTheirOrder) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handles[] = {AddBuffer(), AddBuffer(), AddBuffer()};
    for (const std::size_t index : {2U, 0U, 1U})
        m_grabber->QueueBuffer(handles[index], &handles[index]);
    m_grabber->CancelGrab();
    EXPECT_TRUE(IsSignalled());
    for (const std::size_t index : {2U, 0U, 1U}) {
        const GrabResult result = Retrieve();
        EXPECT_EQ(result.handle, handles[index]);
        EXPECT_EQ(result.context, &handles[index]);
        EXPECT_EQ(result.status, 3);
    }
    EXPECT_FALSE(IsSignalled());
}

TEST_F(StreamBuffersTest, CancellingNothingSignalsNothing) {
    m_grabber->PrepareGrab();
    m_grabber->CancelGrab();
    EXPECT_FALSE(IsSignalled());
}

TEST_F(StreamBuffersTest, CancellingTouchesOnlyTheStatus) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddFilled();
    const GrabResult grabbed = Retrieve();
    m_grabber->QueueBuffer(handle, &handle);
    m_grabber->CancelGrab();
    const GrabResult cancelled = Retrieve();
    EXPECT_EQ(cancelled.status, Canceled);
    EXPECT_EQ(cancelled.payloadSize, grabbed.payloadSize);
    EXPECT_EQ(cancelled.width, grabbed.width);
    EXPECT_EQ(cancelled.pixelType, grabbed.pixelType);
}

TEST_F(StreamBuffersTest, ACancelledBufferThatNeverHadAFrameHasNoValues) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->CancelGrab();
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.kind, -1);
    EXPECT_EQ(result.pixelType, -1);
    EXPECT_EQ(result.width, -1);
    EXPECT_EQ(result.height, -1);
    EXPECT_EQ(result.offsetX, -1);
    EXPECT_EQ(result.offsetY, -1);
    EXPECT_EQ(result.reservedX, -1);
    EXPECT_EQ(result.reservedY, -1);
    EXPECT_EQ(result.payloadSize, ~std::uint64_t{0});
    EXPECT_EQ(result.frameTag, 0U);
    EXPECT_EQ(result.errorCode, 0U);
    EXPECT_TRUE(result.errorDescription.empty());
}

TEST_F(StreamBuffersTest, CancellingAfterACloseGivesBackUnknownHandles) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle lost = AddBuffer();
    m_grabber->QueueBuffer(lost, nullptr);
    m_grabber->Close();
    m_grabber->Open();
    m_grabber->PrepareGrab();
    m_grabber->CancelGrab();
    EXPECT_TRUE(IsSignalled());
    GrabResult result;
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->RetrieveResult(result); }),
              fmt::format("Buffer with handle {:#x} not found", lost));
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
}

TEST_F(StreamBuffersTest, CancellingSaysNothingOfUnknownHandles) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->Close();
    m_grabber->Open();
    m_grabber->PrepareGrab();
    m_log->Clear();
    m_grabber->CancelGrab();
    EXPECT_TRUE(m_log->GetMessages().empty());
}

TEST_F(StreamBuffersTest, AnUnknownHandleLeavesStateAndWaitObject) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->Close();
    m_grabber->Open();
    m_grabber->PrepareGrab();
    m_grabber->FinishGrab();
    GrabResult result;
    result.width = 77;
    EXPECT_THROW(m_grabber->RetrieveResult(result), RuntimeException);
    EXPECT_EQ(result.width, 77);
    EXPECT_TRUE(IsSignalled());
    m_grabber->PrepareGrab();  // the state is 1
}

TEST_F(StreamBuffersTest, RetrievingNothingLeavesTheState) {
    GrabResult result;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
    m_grabber->PrepareGrab();  // the state is 1
}

TEST_F(StreamBuffersTest, RetrievingNothingLeavesTheResult) {
    GrabResult result;
    result.width = 77;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
    EXPECT_EQ(result.width, 77);
}

TEST_F(StreamBuffersTest, RetrievingNothingResetsTheWaitObject) {
    dynamic_cast<WaitObjectEx&>(m_grabber->GetWaitObject()).Signal();
    GrabResult result;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
    EXPECT_FALSE(IsSignalled());
}

TEST_F(StreamBuffersTest, TheWaitObjectIsSignalledWhileThereAreResults) {
    m_grabber->PrepareGrab();
    EXPECT_FALSE(IsSignalled());
    AddFilled();
    AddFilled();
    EXPECT_TRUE(IsSignalled());
    Retrieve();
    EXPECT_TRUE(IsSignalled());
    Retrieve();
    EXPECT_FALSE(IsSignalled());
}

TEST_F(StreamBuffersTest, ARecordShowsThatItsBufferWasQueuedAgain) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddFilled();
    m_grabber->QueueBuffer(handle, &handle);
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.context, &handle);
    EXPECT_EQ(result.payloadSize, 32U);
}

TEST_F(StreamBuffersTest, ARecordIsNotResetByItsRetrieval) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->QueueBuffer(handle, &handle);
    m_plugin.Deliver(Frame(1));
    EXPECT_EQ(Retrieve().frameTag, 1U);
    m_grabber->CancelGrab();
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, Canceled);
    EXPECT_EQ(result.frameTag, 1U);
}

TEST_F(StreamBuffersTest, ABufferQueuedTwiceIsFilledTwice) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->QueueBuffer(handle, &handle);
    m_plugin.Deliver(Frame(1));
    m_plugin.Deliver(Frame(2));
    const GrabResult first = Retrieve();
    const GrabResult second = Retrieve();
    EXPECT_EQ(first.handle, handle);
    EXPECT_EQ(first.frameTag, 2U);  // one record: the later frame has overwritten the first
    EXPECT_EQ(second.frameTag, 2U);
    EXPECT_EQ(second.context, &handle);
}

}  // namespace
