/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A GenTL consumer: walks everything that a producer (.cti) has, and takes images from the first camera:
 * example-gentl_grab PRODUCER [COUNT]
 */

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "GenTLProducer.h"

namespace {

constexpr std::uint64_t kLookTimeout = 5000;   // ms
constexpr std::uint64_t kFrameTimeout = 5000;  // ms
constexpr std::size_t kBuffers = 4;

/// The texts that a producer gives in two calls: first the size, then the text.
template <class Call>
std::string Text(const GenTLProducer& producer, Call&& call) {
    std::size_t size = 0;
    producer.Check(call(nullptr, &size));
    std::string text(size, '\0');
    producer.Check(call(text.data(), &size));
    text.resize(size - 1);
    return text;
}

std::string DeviceText(const GenTLProducer& tl, IF_HANDLE interface, const std::string& id, DEVICE_INFO_CMD command) {
    return Text(tl, [&](char* text, std::size_t* size) {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        return tl.IFGetDeviceInfo(interface, id.c_str(), command, &type, text, size);
    });
}

template <class T>
T BufferInfo(const GenTLProducer& tl, DS_HANDLE stream, BUFFER_HANDLE buffer, BUFFER_INFO_CMD command) {
    T value{};
    std::size_t size = sizeof value;
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    tl.Check(tl.DSGetBufferInfo(stream, buffer, command, &type, &value, &size));
    return value;
}

/// The description of a port: its URL is "local:NAME;ADDRESS;LENGTH".
std::string Description(const GenTLProducer& tl, PORT_HANDLE port) {
    const std::string url = Text(tl, [&](char* text, std::size_t* size) {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        return tl.GCGetPortURLInfo(port, 0, URL_INFO_URL, &type, text, size);
    });
    const std::size_t address = url.find(';');
    const std::size_t length = url.find(';', address + 1);
    std::string xml(std::stoul(url.substr(length + 1), nullptr, 16), '\0');
    std::size_t size = xml.size();
    tl.Check(tl.GCReadPort(port, std::stoull(url.substr(address + 1), nullptr, 16), xml.data(), &size));
    std::cout << "    description " << url << '\n';
    return xml;
}

void Grab(const GenTLProducer& tl, DEV_HANDLE device, int count) {
    const std::string id =
        Text(tl, [&](char* text, std::size_t* size) { return tl.DevGetDataStreamID(device, 0, text, size); });
    DS_HANDLE stream = nullptr;
    tl.Check(tl.DevOpenDataStream(device, id.c_str(), &stream));
    std::size_t payload = 0;
    std::size_t size = sizeof payload;
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    tl.Check(tl.DSGetInfo(stream, STREAM_INFO_PAYLOAD_SIZE, &type, &payload, &size));
    EVENT_HANDLE event = nullptr;
    tl.Check(tl.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
    for (std::size_t i = 0; i < kBuffers; ++i) {
        BUFFER_HANDLE buffer = nullptr;
        tl.Check(tl.DSAllocAndAnnounceBuffer(stream, payload, nullptr, &buffer));
        tl.Check(tl.DSQueueBuffer(stream, buffer));
    }
    tl.Check(tl.DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
    for (int taken = 0; taken < count; ++taken) {
        EVENT_NEW_BUFFER_DATA data{};
        size = sizeof data;
        tl.Check(tl.EventGetData(event, &data, &size, kFrameTimeout));
        const BUFFER_HANDLE buffer = data.BufferHandle;
        std::cout << "    image " << BufferInfo<std::uint64_t>(tl, stream, buffer, BUFFER_INFO_FRAMEID) << ": "
                  << BufferInfo<std::size_t>(tl, stream, buffer, BUFFER_INFO_WIDTH) << " x "
                  << BufferInfo<std::size_t>(tl, stream, buffer, BUFFER_INFO_HEIGHT) << ", "
                  << BufferInfo<std::size_t>(tl, stream, buffer, BUFFER_INFO_SIZE_FILLED) << " bytes\n";
        tl.Check(tl.DSQueueBuffer(stream, buffer));
    }
    tl.Check(tl.DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT));
    tl.Check(tl.DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD));
    tl.Check(tl.DSClose(stream));
}

void Visit(const GenTLProducer& tl, IF_HANDLE interface, int count) {
    tl.Check(tl.IFUpdateDeviceList(interface, nullptr, kLookTimeout));
    std::uint32_t devices = 0;
    tl.Check(tl.IFGetNumDevices(interface, &devices));
    for (std::uint32_t index = 0; index < devices; ++index) {
        const std::string id =
            Text(tl, [&](char* text, std::size_t* size) { return tl.IFGetDeviceID(interface, index, text, size); });
        std::cout << "  device " << id << ": " << DeviceText(tl, interface, id, DEVICE_INFO_DISPLAYNAME) << '\n';
        DEV_HANDLE device = nullptr;
        tl.Check(tl.IFOpenDevice(interface, id.c_str(), DEVICE_ACCESS_CONTROL, &device));
        PORT_HANDLE port = nullptr;
        tl.Check(tl.DevGetPort(device, &port));
        const std::string xml = Description(tl, port);
        std::cout << "    " << xml.size() << " bytes of XML\n";
        std::uint32_t streams = 0;
        tl.Check(tl.DevGetNumDataStreams(device, &streams));
        if (streams != 0)
            Grab(tl, device, count);
        tl.Check(tl.DevClose(device));
    }
}

void Walk(const GenTLProducer& tl, int count) {
    tl.Check(tl.GCInitLib());
    TL_HANDLE system = nullptr;
    tl.Check(tl.TLOpen(&system));
    tl.Check(tl.TLUpdateInterfaceList(system, nullptr, kLookTimeout));
    std::uint32_t interfaces = 0;
    tl.Check(tl.TLGetNumInterfaces(system, &interfaces));
    for (std::uint32_t index = 0; index < interfaces; ++index) {
        const std::string id =
            Text(tl, [&](char* text, std::size_t* size) { return tl.TLGetInterfaceID(system, index, text, size); });
        std::cout << "interface " << id << '\n';
        IF_HANDLE interface = nullptr;
        tl.Check(tl.TLOpenInterface(system, id.c_str(), &interface));
        Visit(tl, interface, count);
        tl.Check(tl.IFClose(interface));
    }
    tl.Check(tl.TLClose(system));
    tl.Check(tl.GCCloseLib());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: example-gentl_grab PRODUCER [COUNT]\n";
        return 2;
    }
    try {
        const GenTLProducer producer(argv[1]);
        Walk(producer, argc > 2 ? std::atoi(argv[2]) : 10);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
