/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A consumer beside a machine with simulated cameras
 */
#pragma once

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/gentl/Producer.h"
#include "tests/integration/Machine.h"

namespace gentl_test {

inline constexpr std::uint64_t kPatience = 30000;  // ms
inline const std::string kPort = "COM_Port#cam0";
inline const std::string kCamera = "Marlow-H2048-21";

/// How long a test goes on, which may be said for a longer run.
inline std::uint32_t NumberFromEnvironment(const char* name, std::uint32_t otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : otherwise;
}

/// The producer is initialised for the time of a test.
class Consumer : public integration::Machine {
protected:
    Consumer() { EXPECT_EQ(TL().GCInitLib(), GC_ERR_SUCCESS); }
    ~Consumer() override {
        if (m_isOpen) {
            EXPECT_EQ(TL().GCCloseLib(), GC_ERR_SUCCESS);
        }
    }
    void CloseLibrary() {
        EXPECT_EQ(TL().GCCloseLib(), GC_ERR_SUCCESS);
        m_isOpen = false;
        system = interface = device = remote = stream = event = nullptr;
    }
    void BeginAgain() {
        ASSERT_EQ(TL().GCInitLib(), GC_ERR_SUCCESS);
        m_isOpen = true;
    }

    void AddCamera(const std::string& parameters = "FrameRate=100", const char* name = "cam0",
                   const char* serial = "21") {
        Add(name, integration::Camera(serial),
            parameters.empty() ? ""
                               : "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;" +
                                     parameters + "</DeviceSpecificString>");
    }
    void OpenSystem() {
        ASSERT_EQ(TL().TLOpen(&system), GC_ERR_SUCCESS);
        ASSERT_EQ(TL().TLUpdateInterfaceList(system, nullptr, kPatience), GC_ERR_SUCCESS);
    }
    void OpenInterface() {
        if (system == nullptr)
            OpenSystem();
        ASSERT_EQ(TL().TLOpenInterface(system, kPort.c_str(), &interface), GC_ERR_SUCCESS);
    }
    void OpenDevice(DEVICE_ACCESS_FLAGS flags = DEVICE_ACCESS_CONTROL) {
        if (interface == nullptr)
            OpenInterface();
        ASSERT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), flags, &device), GC_ERR_SUCCESS);
        ASSERT_EQ(TL().DevGetPort(device, &remote), GC_ERR_SUCCESS);
    }
    void OpenStream() {
        if (device == nullptr)
            OpenDevice();
        const std::string id =
            Text([&](char* text, std::size_t* size) { return TL().DevGetDataStreamID(device, 0, text, size); });
        ASSERT_EQ(TL().DevOpenDataStream(device, id.c_str(), &stream), GC_ERR_SUCCESS);
    }
    void Announce(std::size_t count = 4) {
        for (std::size_t i = 0; i < count; ++i) {
            BUFFER_HANDLE buffer = nullptr;
            ASSERT_EQ(TL().DSAllocAndAnnounceBuffer(stream, PayloadSize(), nullptr, &buffer), GC_ERR_SUCCESS);
            buffers.push_back(buffer);
        }
    }
    void QueueAll() {
        for (const BUFFER_HANDLE buffer : buffers)
            ASSERT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
    }
    void Start(std::uint64_t frames = GENTL_INFINITE) {
        ASSERT_EQ(TL().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, frames), GC_ERR_SUCCESS);
    }
    void Stop() { EXPECT_EQ(TL().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT), GC_ERR_SUCCESS); }
    void Register() { ASSERT_EQ(TL().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event), GC_ERR_SUCCESS); }
    /// The buffer of the next frame; null after \a timeout.
    BUFFER_HANDLE Next(std::uint64_t timeout = kPatience) const {
        EVENT_NEW_BUFFER_DATA data{};
        std::size_t size = sizeof data;
        return TL().EventGetData(event, &data, &size, timeout) == GC_ERR_SUCCESS ? data.BufferHandle : nullptr;
    }

    std::size_t StreamSize(STREAM_INFO_CMD command) const {
        return InfoValue<std::size_t>(INFO_DATATYPE_SIZET, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().DSGetInfo(stream, command, type, value, size);
        });
    }
    std::uint64_t StreamCount(STREAM_INFO_CMD command) const {
        return InfoValue<std::uint64_t>(INFO_DATATYPE_UINT64, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().DSGetInfo(stream, command, type, value, size);
        });
    }
    bool IsGrabbing() const {
        return InfoValue<bool8_t>(INFO_DATATYPE_BOOL8, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
                   return TL().DSGetInfo(stream, STREAM_INFO_IS_GRABBING, type, value, size);
               }) != 0;
    }
    std::size_t PayloadSize() const { return StreamSize(STREAM_INFO_PAYLOAD_SIZE); }
    template <class T>
    T BufferValue(BUFFER_HANDLE buffer, BUFFER_INFO_CMD command, INFO_DATATYPE expected) const {
        return InfoValue<T>(expected, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().DSGetBufferInfo(stream, buffer, command, type, value, size);
        });
    }
    bool BufferFlag(BUFFER_HANDLE buffer, BUFFER_INFO_CMD command) const {
        return BufferValue<bool8_t>(buffer, command, INFO_DATATYPE_BOOL8) != 0;
    }
    std::size_t BufferSize(BUFFER_HANDLE buffer, BUFFER_INFO_CMD command) const {
        return BufferValue<std::size_t>(buffer, command, INFO_DATATYPE_SIZET);
    }

    /// The description that a port's URL leads to.
    static std::string Description(PORT_HANDLE port) {
        const std::string url = InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* size) {
            return TL().GCGetPortURLInfo(port, 0, URL_INFO_URL, type, text, size);
        });
        const std::size_t address = url.find(';');
        const std::size_t length = url.find(';', address + 1);
        if (url.rfind("local:", 0) != 0 || length == std::string::npos)
            return "no such URL: " + url;
        std::string xml(std::stoul(url.substr(length + 1), nullptr, 16), '\0');
        std::size_t size = xml.size();
        EXPECT_EQ(TL().GCReadPort(port, std::stoull(url.substr(address + 1), nullptr, 16), xml.data(), &size),
                  GC_ERR_SUCCESS);
        return xml;
    }

    TL_HANDLE system = nullptr;
    IF_HANDLE interface = nullptr;
    DEV_HANDLE device = nullptr;
    PORT_HANDLE remote = nullptr;
    DS_HANDLE stream = nullptr;
    EVENT_HANDLE event = nullptr;
    std::vector<BUFFER_HANDLE> buffers;

private:
    bool m_isOpen = true;
};

}  // namespace gentl_test
