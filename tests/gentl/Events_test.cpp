/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Events: waiting, killing, unregistering, from several threads
 */
#include <future>
#include <set>

#include "tests/gentl/PortNodes.h"
#include "tests/gentl/StreamConsumer.h"
#include "tests/integration/SmallDescription.h"

namespace gentl_test {

namespace {

class Events : public StreamConsumer {
protected:
    static GC_ERROR Wait(EVENT_HANDLE event, std::uint64_t timeout) {
        char data[1024];
        std::size_t size = sizeof data;
        return TL().EventGetData(event, data, &size, timeout);
    }
    template <class T>
    T EventValue(EVENT_INFO_CMD command, INFO_DATATYPE expected) const {
        return InfoValue<T>(expected, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().EventGetInfo(event, command, type, value, size);
        });
    }
};

TEST_F(Events, AKillEndsOneWait) {
    Prepare(1);
    Register();
    EVENT_NEW_BUFFER_DATA data{};
    std::size_t size = sizeof data;
    EXPECT_EQ(TL().EventKill(event), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().EventGetData(event, &data, &size, 0), GC_ERR_ABORT);
    EXPECT_EQ(TL().EventGetData(event, &data, &size, 0), GC_ERR_TIMEOUT);
    auto waiting = std::async(std::launch::async, [&] {
        EVENT_NEW_BUFFER_DATA mine{};
        std::size_t mySize = sizeof mine;
        return TL().EventGetData(event, &mine, &mySize, GENTL_INFINITE);
    });
    EXPECT_EQ(TL().EventKill(event), GC_ERR_SUCCESS);
    EXPECT_EQ(waiting.get(), GC_ERR_ABORT);
}

TEST_F(Events, UnregisteringEndsAllWaits) {
    Prepare(1);
    Register();
    std::vector<std::future<GC_ERROR>> waits;
    for (int waiter = 0; waiter < 4; ++waiter)
        waits.push_back(std::async(std::launch::async, [&, mine = event] {
            EVENT_NEW_BUFFER_DATA data{};
            std::size_t size = sizeof data;
            const GC_ERROR result = TL().EventGetData(mine, &data, &size, GENTL_INFINITE);
            return result == GC_ERR_INVALID_HANDLE ? GC_ERR_ABORT : result;  // one that began too late
        }));
    EXPECT_EQ(TL().GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    for (auto& wait : waits)
        EXPECT_EQ(wait.get(), GC_ERR_ABORT);
    EXPECT_EQ(TL().GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_NOT_INITIALIZED);
    EXPECT_EQ(TL().EventKill(event), GC_ERR_INVALID_HANDLE);
}

TEST_F(Events, EventsOfOtherTypesAreNotThere) {
    Prepare(1);
    Register();
    EVENT_HANDLE other = nullptr;
    EXPECT_EQ(TL().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &other), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().GCRegisterEvent(stream, EVENT_REMOTE_DEVICE, &other), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().GCRegisterEvent(system, EVENT_MODULE, &other), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().GCRegisterEvent(device, EVENT_NEW_BUFFER, &other), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().GCUnregisterEvent(device, EVENT_NEW_BUFFER), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Events, ATooSmallBufferRemovesNothingAndNullRemovesOne) {
    Prepare(2);
    Register();
    QueueAll();
    EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
    char small[4];
    std::size_t size = sizeof small;
    EXPECT_EQ(TL().EventGetData(event, small, &size, 0), GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(Waiting(), 2u);
    EXPECT_EQ(TL().EventGetData(event, nullptr, &size, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(Waiting(), 1u);
    EXPECT_FALSE(BufferFlag(buffers[0], BUFFER_INFO_IS_QUEUED));
    EXPECT_EQ(TL().EventFlush(event), GC_ERR_SUCCESS);
    EXPECT_EQ(Waiting(), 0u);
}

TEST_F(Events, ClosingTheDeviceWakesWhoWaits) {
    Prepare(1);
    Register();
    auto waiting = std::async(std::launch::async, [&] {
        EVENT_NEW_BUFFER_DATA data{};
        std::size_t size = sizeof data;
        const GC_ERROR result = TL().EventGetData(event, &data, &size, GENTL_INFINITE);
        return result == GC_ERR_INVALID_HANDLE ? GC_ERR_ABORT : result;
    });
    EXPECT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
    EXPECT_EQ(waiting.get(), GC_ERR_ABORT);
    EXPECT_EQ(TL().DSQueueBuffer(stream, buffers[0]), GC_ERR_INVALID_HANDLE);
}

TEST_F(Events, AsManyKillsEndAsManyWaits) {
    Prepare(1);
    Register();
    std::vector<std::future<GC_ERROR>> waits;
    for (int waiter = 0; waiter < 3; ++waiter)
        waits.push_back(std::async(std::launch::async, [this] { return Wait(event, GENTL_INFINITE); }));
    std::vector<std::future<GC_ERROR>> kills;
    for (int killer = 0; killer < 3; ++killer)
        kills.push_back(std::async(std::launch::async, [this] { return TL().EventKill(event); }));
    for (auto& kill : kills)
        EXPECT_EQ(kill.get(), GC_ERR_SUCCESS);
    for (auto& wait : waits)
        EXPECT_EQ(wait.get(), GC_ERR_ABORT);
    EXPECT_EQ(Wait(event, 0), GC_ERR_TIMEOUT) << "no kill is left";
}

TEST_F(Events, EachFrameGoesToOneOfSeveralReaders) {
    constexpr std::uint64_t kFrames = 60;
    Prepare(6, "FrameRate=400");
    Register();
    QueueAll();
    Start(kFrames);
    const auto read = [this] {
        std::vector<std::uint64_t> ids;
        while (const BUFFER_HANDLE buffer = Next()) {
            ids.push_back(FrameId(buffer));
            EXPECT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
        }
        return ids;
    };
    std::vector<std::future<std::vector<std::uint64_t>>> readers;
    for (int reader = 0; reader < 3; ++reader)
        readers.push_back(std::async(std::launch::async, read));
    while (IsGrabbing() || Waiting() > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    for (std::size_t reader = 0; reader < readers.size(); ++reader)
        EXPECT_EQ(TL().EventKill(event), GC_ERR_SUCCESS);
    std::set<std::uint64_t> ids;
    std::size_t count = 0;
    for (auto& reader : readers)
        for (const std::uint64_t id : reader.get()) {
            ids.insert(id);
            ++count;
        }
    EXPECT_EQ(count, kFrames);
    EXPECT_EQ(ids.size(), kFrames) << "none twice";
    Stop();
}

TEST_F(Events, AWaitKeepsNobodyFromTheStream) {
    Prepare(2);
    Register();
    auto waiting = std::async(std::launch::async, [this] { return Wait(event, GENTL_INFINITE); });
    QueueAll();
    Start();
    EXPECT_EQ(waiting.get(), GC_ERR_SUCCESS);
    Stop();
    EXPECT_EQ(Flush(ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    waiting = std::async(std::launch::async, [this] { return Wait(event, GENTL_INFINITE); });
    EXPECT_EQ(TL().DSClose(stream), GC_ERR_SUCCESS);
    const GC_ERROR result = waiting.get();
    EXPECT_TRUE(result == GC_ERR_ABORT || result == GC_ERR_INVALID_HANDLE) << result;
}

TEST_F(Events, SayWhatTheyAre) {
    Prepare(3);
    Register();
    QueueAll();
    EXPECT_EQ(EventValue<std::int32_t>(EVENT_EVENT_TYPE, INFO_DATATYPE_INT32), EVENT_NEW_BUFFER);
    EXPECT_EQ(EventValue<std::size_t>(EVENT_SIZE_MAX, INFO_DATATYPE_SIZET), sizeof(EVENT_NEW_BUFFER_DATA));
    EXPECT_EQ(EventValue<std::size_t>(EVENT_INFO_DATA_SIZE_MAX, INFO_DATATYPE_SIZET), sizeof(EVENT_NEW_BUFFER_DATA));
    EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
    EXPECT_EQ(Wait(event, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(EventValue<std::size_t>(EVENT_NUM_IN_QUEUE, INFO_DATATYPE_SIZET), 2U);
    EXPECT_EQ(EventValue<std::uint64_t>(EVENT_NUM_FIRED, INFO_DATATYPE_UINT64), 3U);
    std::size_t size = 0;
    EXPECT_EQ(TL().EventGetInfo(event, 5, nullptr, nullptr, &size), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Events, UnregisteringGivesTheFramesBackThatNobodyFetched) {
    Prepare(3);
    Register();
    QueueAll();
    EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    for (const BUFFER_HANDLE buffer : buffers)
        EXPECT_EQ(TL().DSRevokeBuffer(stream, buffer, nullptr, nullptr), GC_ERR_SUCCESS);
}

TEST_F(Events, TheLossOfTheCameraReachesTheStreamAndNothingHangs) {
    Prepare(2, "FrameRate=100;Frames=0");
    Register();
    EVENT_HANDLE error = nullptr;
    EVENT_HANDLE module = nullptr;
    ASSERT_EQ(TL().GCRegisterEvent(stream, EVENT_ERROR, &error), GC_ERR_SUCCESS);
    ASSERT_EQ(TL().GCRegisterEvent(stream, EVENT_MODULE, &module), GC_ERR_SUCCESS);
    QueueAll();
    Start();
    simulator.Unplug("cam0");
    std::uint32_t version = 0;
    std::size_t size = sizeof version;
    EXPECT_EQ(TL().GCReadPort(remote, 0, &version, &size), GC_ERR_IO);
    EXPECT_EQ(Wait(error, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(Wait(module, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(Wait(module, 1), GC_ERR_TIMEOUT);
    Stop();
    EXPECT_EQ(TL().DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
}

/// A camera that keeps in a register whether its parameters are locked, and a consumer that trusts what it has read.
class LockedParameters : public StreamConsumer {
protected:
    void PrepareWithRegister() {
        const gencp::Register& place = MarlowSim::registers::kBlackLevelRaw;
        std::string nodes = integration::GrabbingNodes();
        const std::string own = "<Integer Name=\"TLParamsLocked\"><Value>0</Value></Integer>";
        nodes.replace(nodes.find(own), own.size(),
                      "<Integer Name=\"TLParamsLocked\"><pValue>LockReg</pValue></Integer>");
        nodes += "<IntReg Name=\"LockReg\"><Address>" + std::to_string(place.address) +
                 "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                 "<Cachable>WriteThrough</Cachable><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>";
        m_folder.Write("camera.xml", integration::SmallDescription(nodes));
        MarlowSim::CameraOptions camera = integration::Camera("21");
        camera.descriptionFile = m_folder / "camera.xml";
        Add("cam0", camera, kGrabber);
        OpenStream();
        Announce(1);
        PortNodes(remote, Description(remote)).Set("TLParamsLocked", "0");
    }
    void Listen() { ASSERT_EQ(TL().GCRegisterEvent(device, EVENT_FEATURE_INVALIDATE, &invalidated), GC_ERR_SUCCESS); }
    /// The feature that the next event names.
    std::string Invalidated() const {
        char data[1024];
        std::size_t size = sizeof data;
        const GC_ERROR result = TL().EventGetData(invalidated, data, &size, 0);
        if (result != GC_ERR_SUCCESS)
            return "error " + std::to_string(result);
        return InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* length) {
            return TL().EventGetDataInfo(invalidated, data, size, EVENT_DATA_ID, type, text, length);
        });
    }

    static constexpr const char* kGrabber =
        "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;</DeviceSpecificString>";
    EVENT_HANDLE invalidated = nullptr;
};

TEST_F(LockedParameters, AreReadAgainWhenTheStreamStartsOrStops) {
    PrepareWithRegister();
    Listen();
    const PortNodes nodes(remote, Description(remote));
    EXPECT_EQ(nodes.Value("TLParamsLocked"), "0");
    Start();
    EXPECT_EQ(nodes.Value("TLParamsLocked"), "0") << "from the consumer's cache";
    nodes[Invalidated().c_str()]->InvalidateNode();
    EXPECT_EQ(nodes.Value("TLParamsLocked"), "1");
    Stop();
    nodes[Invalidated().c_str()]->InvalidateNode();
    EXPECT_EQ(nodes.Value("TLParamsLocked"), "0");
}

TEST_F(LockedParameters, AreNotToldWhereTheConsumerItselfWritesThem) {
    PrepareWithRegister();
    Listen();
    PortNodes(remote, Description(remote)).Set("TLParamsLocked", "1");
    EXPECT_EQ(Invalidated(), "error " + std::to_string(GC_ERR_TIMEOUT));
}

TEST_F(LockedParameters, AreNotToldWhereNoRegisterKeepsThem) {
    Prepare(1);
    Listen();
    Start();
    Stop();
    EXPECT_EQ(Invalidated(), "error " + std::to_string(GC_ERR_TIMEOUT));
}

TEST_F(LockedParameters, AreToldByNameOnly) {
    PrepareWithRegister();
    Listen();
    Start();
    char data[1024];
    std::size_t size = sizeof data;
    ASSERT_EQ(TL().EventGetData(invalidated, data, &size, 0), GC_ERR_SUCCESS);
    for (const EVENT_DATA_INFO_CMD command : {EVENT_DATA_VALUE, EVENT_DATA_NUMID}) {
        std::size_t length = 0;
        EXPECT_EQ(TL().EventGetDataInfo(invalidated, data, size, command, nullptr, nullptr, &length),
                  GC_ERR_NOT_AVAILABLE);
    }
}

}  // namespace

}  // namespace gentl_test
