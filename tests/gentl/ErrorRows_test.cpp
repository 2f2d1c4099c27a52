/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What each function refuses, and with which code
 */
#include <functional>
#include <utility>

#include "simulator/CameraRegisters.h"
#include "tests/gentl/StreamConsumer.h"

namespace gentl_test {

namespace {

/// Everything is open, and an event was fetched.
class ErrorRows : public StreamConsumer {
protected:
    using InfoCall = std::function<GC_ERROR(std::int32_t, INFO_DATATYPE*, void*, std::size_t*)>;
    using TextCall = std::function<GC_ERROR(char*, std::size_t*)>;
    using Call = std::function<GC_ERROR()>;
    template <class T>
    using Named = std::vector<std::pair<const char*, T>>;

    ErrorRows() {
        Prepare(1);
        EXPECT_EQ(TL().IFUpdateDeviceList(interface, nullptr, kPatience), GC_ERR_SUCCESS);
        Register();
        QueueAll();
        EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
        std::size_t size = sizeof m_data;
        EXPECT_EQ(TL().EventGetData(event, &m_data, &size, 0), GC_ERR_SUCCESS);
    }

    template <class Function, class... Args>
    static auto Bind(Function function, Args... first) {
        return [=](auto... others) { return function(first..., others...); };
    }

    /// Those that take a command, where 0 has a value of more than one byte.
    Named<InfoCall> InfoFunctions() const {
        const char* const port = kPort.c_str();
        const char* const camera = kCamera.c_str();
        return {{"GCGetInfo", Bind(TL().GCGetInfo)},
                {"TLGetInfo", Bind(TL().TLGetInfo, system)},
                {"TLGetInterfaceInfo", Bind(TL().TLGetInterfaceInfo, system, port)},
                {"IFGetInfo", Bind(TL().IFGetInfo, interface)},
                {"IFGetDeviceInfo", Bind(TL().IFGetDeviceInfo, interface, camera)},
                {"DevGetInfo", Bind(TL().DevGetInfo, device)},
                {"DSGetInfo", Bind(TL().DSGetInfo, stream)},
                {"DSGetBufferInfo", Bind(TL().DSGetBufferInfo, stream, buffers[0])},
                {"DSGetBufferSegmentInfo", Bind(TL().DSGetBufferSegmentInfo, stream, buffers[0], 0)},
                {"GCGetPortInfo", Bind(TL().GCGetPortInfo, remote)},
                {"GCGetPortURLInfo", Bind(TL().GCGetPortURLInfo, remote, 0)},
                {"EventGetInfo", Bind(TL().EventGetInfo, event)},
                {"EventGetDataInfo", Bind(TL().EventGetDataInfo, event, &m_data, sizeof m_data)}};
    }
    Named<TextCall> TextFunctions() const {
        return {{"TLGetInterfaceID", Bind(TL().TLGetInterfaceID, system, 0)},
                {"IFGetDeviceID", Bind(TL().IFGetDeviceID, interface, 0)},
                {"DevGetDataStreamID", Bind(TL().DevGetDataStreamID, device, 0)},
                {"GCGetPortURL", Bind(TL().GCGetPortURL, remote)},
                {"GCGetLastError", Bind(TL().GCGetLastError, &m_code)}};
    }
    /// Each call answers the code, which is the last error then.
    static void ExpectAll(GC_ERROR code, const Named<Call>& calls) {
        for (const auto& [name, call] : calls) {
            EXPECT_EQ(call(), code) << name;
            EXPECT_EQ(LastError(), code) << name;
        }
    }

    EVENT_NEW_BUFFER_DATA m_data{};
    mutable GC_ERROR m_code = GC_ERR_SUCCESS;
    void* m_opened = nullptr;
    std::size_t m_size = 0;
};

TEST_F(ErrorRows, UnknownCommandsAreNotImplemented) {
    for (const auto& [name, call] : InfoFunctions())
        for (const std::int32_t command : {-1, 999, 1000}) {
            std::size_t size = 0;
            INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
            EXPECT_EQ(call(command, &type, nullptr, &size), GC_ERR_NOT_IMPLEMENTED) << name << ' ' << command;
        }
}

TEST_F(ErrorRows, BuffersThatAreTooSmallGetNothing) {
    for (const auto& [name, call] : InfoFunctions()) {
        char buffer = '#';
        std::size_t size = 1;
        EXPECT_EQ(call(0, nullptr, &buffer, &size), GC_ERR_BUFFER_TOO_SMALL) << name;
        EXPECT_EQ(buffer, '#') << name;
    }
    for (const auto& [name, call] : TextFunctions()) {
        char buffer = '#';
        std::size_t size = 1;
        EXPECT_EQ(call(&buffer, &size), GC_ERR_BUFFER_TOO_SMALL) << name;
        EXPECT_EQ(buffer, '#') << name;
    }
}

TEST_F(ErrorRows, WithoutAPlaceForTheSizeNothingIsAnswered) {
    char buffer[1024];
    for (const auto& [name, call] : InfoFunctions())
        EXPECT_EQ(call(0, nullptr, buffer, nullptr), GC_ERR_INVALID_PARAMETER) << name;
    for (const auto& [name, call] : TextFunctions())
        EXPECT_EQ(call(buffer, nullptr), GC_ERR_INVALID_PARAMETER) << name;
}

TEST_F(ErrorRows, NamesOfNothingAreInvalidIds) {
    const char* const none = "none";
    ExpectAll(GC_ERR_INVALID_ID,
              {{"TLOpenInterface", [&] { return TL().TLOpenInterface(system, none, &m_opened); }},
               {"TLGetInterfaceInfo",
                [&] { return TL().TLGetInterfaceInfo(system, none, INTERFACE_INFO_ID, nullptr, nullptr, &m_size); }},
               {"IFOpenDevice", [&] { return TL().IFOpenDevice(interface, none, DEVICE_ACCESS_CONTROL, &m_opened); }},
               {"IFGetDeviceInfo",
                [&] { return TL().IFGetDeviceInfo(interface, none, DEVICE_INFO_ID, nullptr, nullptr, &m_size); }},
               {"DevOpenDataStream", [&] { return TL().DevOpenDataStream(device, none, &m_opened); }}});
}

TEST_F(ErrorRows, PlacesBehindTheEndAreInvalidIndexes) {
    ExpectAll(GC_ERR_INVALID_INDEX,
              {{"TLGetInterfaceID", [&] { return TL().TLGetInterfaceID(system, 1, nullptr, &m_size); }},
               {"IFGetDeviceID", [&] { return TL().IFGetDeviceID(interface, 1, nullptr, &m_size); }},
               {"DevGetDataStreamID", [&] { return TL().DevGetDataStreamID(device, 1, nullptr, &m_size); }},
               {"DSGetBufferID", [&] { return TL().DSGetBufferID(stream, 1, &m_opened); }},
               {"DSGetBufferSegmentInfo",
                [&] { return TL().DSGetBufferSegmentInfo(stream, buffers[0], 1, 0, nullptr, nullptr, &m_size); }},
               {"GCGetPortURLInfo", [&] { return TL().GCGetPortURLInfo(remote, 1, 0, nullptr, nullptr, &m_size); }}});
}

TEST_F(ErrorRows, WhatIsThereAlreadyIsInUse) {
    const std::string id =
        Text([&](char* text, std::size_t* size) { return TL().DevGetDataStreamID(device, 0, text, size); });
    ASSERT_EQ(TL().DSQueueBuffer(stream, buffers[0]), GC_ERR_SUCCESS);
    ExpectAll(GC_ERR_RESOURCE_IN_USE,
              {{"GCInitLib", [&] { return TL().GCInitLib(); }},
               {"TLOpen", [&] { return TL().TLOpen(&m_opened); }},
               {"TLOpenInterface", [&] { return TL().TLOpenInterface(system, kPort.c_str(), &m_opened); }},
               {"IFOpenDevice",
                [&] { return TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &m_opened); }},
               {"DevOpenDataStream", [&] { return TL().DevOpenDataStream(device, id.c_str(), &m_opened); }},
               {"GCRegisterEvent", [&] { return TL().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &m_opened); }},
               {"DSQueueBuffer", [&] { return TL().DSQueueBuffer(stream, buffers[0]); }},
               {"DSStopAcquisition", [&] { return TL().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT); }}});
}

TEST_F(ErrorRows, FlagsOfNothingAreNotImplemented) {
    ExpectAll(GC_ERR_NOT_IMPLEMENTED, {{"DSFlushQueue", [&] { return TL().DSFlushQueue(stream, 99); }},
                                       {"DSStartAcquisition", [&] { return TL().DSStartAcquisition(stream, 99, 1); }},
                                       {"DSStopAcquisition", [&] { return TL().DSStopAcquisition(stream, 99); }},
                                       {"GCRegisterEvent", [&] { return TL().GCRegisterEvent(stream, 99, &m_opened); }},
                                       {"GCUnregisterEvent", [&] { return TL().GCUnregisterEvent(stream, 99); }}});
}

TEST_F(ErrorRows, WhatTheStreamHasNotIsNotImplementedOrHasNoData) {
    void* memory = &m_data;
    std::size_t length = sizeof m_data;
    DS_BUFFER_PART_INFO_STACKED part{};
    ExpectAll(GC_ERR_NOT_IMPLEMENTED,
              {{"DSAnnounceCompositeBuffer",
                [&] { return TL().DSAnnounceCompositeBuffer(stream, 1, &memory, &length, nullptr, &m_opened); }},
               {"DSGetFlowInfo", [&] { return TL().DSGetFlowInfo(stream, 0, 0, nullptr, nullptr, &m_size); }},
               {"GCGetPortInfo", [&] { return TL().GCGetPortInfo(buffers[0], 0, nullptr, nullptr, &m_size); }}});
    ExpectAll(GC_ERR_NO_DATA,
              {{"DSGetInfo", [&] { return TL().DSGetInfo(stream, STREAM_INFO_FLOW_TABLE, nullptr, nullptr, &m_size); }},
               {"DSGetBufferPartInfoStacked",
                [&] { return TL().DSGetBufferPartInfoStacked(stream, buffers[0], &part, 1); }}});
}

TEST_F(ErrorRows, AccessesTellWhatTheCameraRefuses) {
    char bytes[4] = {0, 0, 0, 1};
    std::size_t four = sizeof bytes;
    const auto write = [&](std::uint64_t address) { return TL().GCWritePort(remote, address, bytes, &four); };
    ExpectAll(GC_ERR_INVALID_ADDRESS, {{"GCWritePort", [&] { return write(0x7000000000000000); }}});
    ExpectAll(GC_ERR_ACCESS_DENIED, {{"GCWritePort", [&] { return write(0); }}});
    ExpectAll(GC_ERR_INVALID_VALUE, {{"GCWritePort", [&] { return write(MarlowSim::registers::kWidth.address); }}});
}

}  // namespace

}  // namespace gentl_test
