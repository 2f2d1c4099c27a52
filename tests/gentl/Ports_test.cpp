/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Ports: descriptions and registers of the modules and of the camera
 */
#include <array>
#include <sstream>

#include "base/Sha1.h"
#include "tests/gentl/Consumer.h"
#include "tests/gentl/PortNodes.h"

namespace gentl_test {

namespace {

class Ports : public Consumer {
protected:
    static std::string PortText(PORT_HANDLE port, PORT_INFO_CMD command) {
        return InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* size) {
            return TL().GCGetPortInfo(port, command, type, text, size);
        });
    }
    static bool PortFlag(PORT_HANDLE port, PORT_INFO_CMD command) {
        return InfoValue<bool8_t>(INFO_DATATYPE_BOOL8, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
                   return TL().GCGetPortInfo(port, command, type, value, size);
               }) != 0;
    }
    /// All features of a module that the naming convention makes a duty.
    static void ExpectFeatures(PORT_HANDLE port, const std::vector<const char*>& names) {
        PortNodes nodes(port, Description(port));
        for (const char* const name : names) {
            ASSERT_NE(nodes[name], nullptr) << name;
            EXPECT_TRUE(GenApi::IsImplemented(nodes[name])) << name;
        }
        EXPECT_TRUE(nodes.Map()._GetWarnings().empty());
    }
};

TEST_F(Ports, SayWhoseTheyAre) {
    AddCamera();
    OpenStream();
    EXPECT_EQ(PortText(system, PORT_INFO_MODULE), "TLSystem");
    EXPECT_EQ(PortText(interface, PORT_INFO_MODULE), "TLInterface");
    EXPECT_EQ(PortText(device, PORT_INFO_MODULE), "TLDevice");
    EXPECT_EQ(PortText(stream, PORT_INFO_MODULE), "TLDataStream");
    EXPECT_EQ(PortText(remote, PORT_INFO_MODULE), "Device");
    EXPECT_EQ(PortText(remote, PORT_INFO_ID), kCamera);
    EXPECT_TRUE(PortFlag(remote, PORT_INFO_BIG_ENDIAN));
    EXPECT_FALSE(PortFlag(remote, PORT_INFO_LITTLE_ENDIAN));
    EXPECT_TRUE(PortFlag(system, PORT_INFO_LITTLE_ENDIAN));
}

TEST_F(Ports, OfTheSystemHaveItsFeatures) {
    AddCamera();
    OpenSystem();
    ExpectFeatures(
        system, {"Root", "TLPort", "TLID", "TLVendorName", "TLModelName", "TLVersion", "TLPath", "TLType",
                 "GenTLVersionMajor", "GenTLVersionMinor", "InterfaceUpdateList", "InterfaceSelector", "InterfaceID"});
    PortNodes nodes(system, Description(system));
    EXPECT_EQ(nodes.Value("TLType"), "CameraLink");
    EXPECT_EQ(nodes.Value("InterfaceID"), kPort);
    EXPECT_EQ(nodes.Value("GenTLVersionMinor"), "6");
    nodes.Execute("InterfaceUpdateList");
}

TEST_F(Ports, OfTheInterfaceHaveItsFeatures) {
    AddCamera();
    OpenInterface();
    ExpectFeatures(interface, {"Root", "InterfacePort", "InterfaceID", "InterfaceType", "DeviceUpdateList",
                               "DeviceSelector", "DeviceID", "DeviceVendorName", "DeviceModelName",
                               "DeviceAccessStatus", "InterfaceTLVersionMajor", "DeviceTLVersionMinor"});
    PortNodes nodes(interface, Description(interface));
    // The command waits a second for the port, which a busy machine may exceed.
    for (int looks = 0; looks < 30 && nodes.Value("DeviceID").empty(); ++looks)
        nodes.Execute("DeviceUpdateList");
    EXPECT_EQ(nodes.Value("DeviceID"), kCamera);
    EXPECT_EQ(nodes.Value("DeviceAccessStatus"), "ReadWrite");
    EXPECT_THROW(nodes.Set("DeviceSelector", "1"), GenICam::GenericException);
}

TEST_F(Ports, OfTheDeviceHaveItsFeaturesAndThoseOfTheSerialPort) {
    AddCamera();
    OpenDevice();
    ExpectFeatures(device, {"Root", "DevicePort", "DeviceID", "DeviceVendorName", "DeviceModelName", "DeviceType",
                            "DeviceAccessStatus", "StreamSelector", "StreamID"});
    PortNodes nodes(device, Description(device));
    EXPECT_EQ(nodes.Value("DeviceID"), kCamera);
    nodes.Set("AutoCloseTimeout", "5000");
    EXPECT_EQ(nodes.Value("AutoCloseTimeout"), "5000");
}

TEST_F(Ports, OfTheStreamHaveItsFeaturesAndThoseOfTheFrameGrabber) {
    AddCamera("FrameRate=100;PixelClock=1234");
    OpenStream();
    ExpectFeatures(stream,
                   {"Root", "StreamPort", "StreamInformation", "StreamID", "StreamType", "StreamAnnouncedBufferCount",
                    "StreamAnnounceBufferMinimum", "StreamBufferHandlingMode", "StreamAcquisitionModeSelector"});
    PortNodes nodes(stream, Description(stream));
    EXPECT_EQ(nodes.Value("PixelClockDetected"), "1234");
    EXPECT_EQ(nodes.Value("PayloadSize"), std::to_string(PayloadSize()));
    EXPECT_EQ(nodes.Value("StreamAnnouncedBufferCount"), "0");
    Announce(3);
    EXPECT_EQ(nodes.Value("StreamAnnouncedBufferCount"), "3");
    EXPECT_EQ(nodes.Value("StreamBufferHandlingMode"), "OldestFirst");
}

TEST_F(Ports, OfTheCameraHaveItsOwnDescriptionAndWhatItLacks) {
    AddCamera();
    OpenDevice();
    PortNodes nodes(remote, Description(remote));
    EXPECT_EQ(nodes.Value("DeviceModelName"), "H2048");
    for (const char* const name : {"Width", "Height", "PixelFormat", "PayloadSize", "AcquisitionMode",
                                   "AcquisitionStart", "AcquisitionStop", "DeviceVendorName", "DeviceUserID"})
        EXPECT_NE(nodes[name], nullptr) << name;
    EXPECT_EQ(nodes.Value("PayloadSize"), std::to_string(2048 * 2048));
    nodes.Execute("AcquisitionStart");
    nodes.Execute("AcquisitionStop");
}

TEST_F(Ports, AWrittenWidthReachesTheFrameGrabber) {
    AddCamera();
    OpenStream();
    PortNodes nodes(remote, Description(remote));
    nodes.Set("Width", "1024");
    EXPECT_EQ(nodes.Value("Width"), "1024");
    EXPECT_EQ(PayloadSize(), 1024u * 2048u);
}

TEST_F(Ports, UrlsSayWhereTheDescriptionLies) {
    AddCamera();
    OpenSystem();
    std::uint32_t urls = 0;
    EXPECT_EQ(TL().GCGetNumPortURLs(system, &urls), GC_ERR_SUCCESS);
    EXPECT_EQ(urls, 1u);
    std::size_t size = 0;
    EXPECT_EQ(TL().GCGetPortURLInfo(system, 1, URL_INFO_URL, nullptr, nullptr, &size), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(TL().GCGetPortURLInfo(system, 0, 99, nullptr, nullptr, &size), GC_ERR_NOT_IMPLEMENTED);
    const std::string list =
        Text([&](char* text, std::size_t* bytes) { return TL().GCGetPortURL(system, text, bytes); });
    EXPECT_NE(list.find("?SchemaVersion=1.1.0"), std::string::npos) << list;
    const auto bytes =
        InfoValue<std::uint64_t>(INFO_DATATYPE_UINT64, [&](INFO_DATATYPE* type, void* value, std::size_t* s) {
            return TL().GCGetPortURLInfo(system, 0, URL_INFO_FILE_SIZE, type, value, s);
        });
    EXPECT_EQ(Description(system).size(), bytes);
    EXPECT_EQ(Description(system).back(), '\n');
}

TEST_F(Ports, AListOfUrlsEndsInTwoZeros) {
    AddCamera();
    OpenSystem();
    char text[512];
    std::size_t size = sizeof text;
    ASSERT_EQ(TL().GCGetPortURL(system, text, &size), GC_ERR_SUCCESS);
    ASSERT_GE(size, 2u);
    EXPECT_EQ(text[size - 1], '\0');
    EXPECT_EQ(text[size - 2], '\0');
    EXPECT_EQ(std::strlen(text), size - 2);
}

TEST_F(Ports, AccessesThatCannotBeAreRefused) {
    AddCamera();
    OpenDevice();
    char byte = 0;
    std::size_t one = 1;
    std::size_t none = 0;
    EXPECT_EQ(TL().GCReadPort(system, 4, &byte, &one), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(TL().GCWritePort(system, 0x10000, &byte, &one), GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(TL().GCReadPort(remote, 0, nullptr, &one), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().GCReadPort(remote, 0, &byte, &none), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().GCReadPort(remote, 0x7000000000000000, &byte, &one), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(TL().GCReadPort(remote, 0, &byte, &one), GC_ERR_SUCCESS) << "the camera is there all the same";
}

TEST_F(Ports, AReadOnlyDeviceTakesNoWrites) {
    AddCamera();
    OpenDevice(DEVICE_ACCESS_READONLY);
    PortNodes nodes(remote, Description(remote));
    EXPECT_EQ(nodes.Value("Width"), "2048");
    EXPECT_THROW(nodes.Set("Width", "1024"), GenICam::GenericException);
    EXPECT_EQ(LastError(), GC_ERR_ACCESS_DENIED);
    EXPECT_FALSE(PortFlag(remote, PORT_INFO_ACCESS_WRITE));
}

TEST_F(Ports, StackedAccessesSayHowManyWentWell) {
    AddCamera();
    OpenDevice();
    std::uint32_t version = 0;
    std::uint32_t other = 0;
    PORT_REGISTER_STACK_ENTRY entries[] = {
        {0, &version, sizeof version}, {0x7000000000000000, &other, sizeof other}, {0, &other, sizeof other}};
    std::size_t count = 3;
    EXPECT_EQ(TL().GCReadPortStacked(remote, entries, &count), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(count, 1u);
    EXPECT_NE(version, 0u);
    EXPECT_EQ(other, 0u);
}

TEST_F(Ports, ABufferHasNone) {
    AddCamera();
    OpenStream();
    Announce(1);
    std::size_t size = 0;
    EXPECT_EQ(TL().GCGetPortInfo(buffers[0], PORT_INFO_ID, nullptr, nullptr, &size), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Ports, OfACameraThatIsGoneAnswerIo) {
    AddCamera();
    OpenDevice();
    EVENT_HANDLE error = nullptr;
    EVENT_HANDLE module = nullptr;
    ASSERT_EQ(TL().GCRegisterEvent(device, EVENT_ERROR, &error), GC_ERR_SUCCESS);
    ASSERT_EQ(TL().GCRegisterEvent(device, EVENT_MODULE, &module), GC_ERR_SUCCESS);
    simulator.Unplug("cam0");
    std::uint32_t version = 0;
    std::size_t size = sizeof version;
    EXPECT_EQ(TL().GCReadPort(remote, 0, &version, &size), GC_ERR_IO);
    EXPECT_EQ(TL().GCReadPort(remote, 0, &version, &size), GC_ERR_IO);
    char data[1024];
    size = sizeof data;
    ASSERT_EQ(TL().EventGetData(error, data, &size, 0), GC_ERR_SUCCESS);
    const auto code =
        InfoValue<std::int32_t>(INFO_DATATYPE_INT32, [&](INFO_DATATYPE* type, void* value, std::size_t* s) {
            return TL().EventGetDataInfo(error, data, size, EVENT_DATA_ID, type, value, s);
        });
    EXPECT_EQ(code, GC_ERR_IO);
    size = sizeof data;
    ASSERT_EQ(TL().EventGetData(module, data, &size, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* s) {
                  return TL().EventGetDataInfo(module, data, size, EVENT_DATA_ID, type, text, s);
              }),
              "9001");
    EXPECT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
}

TEST_F(Ports, WhatNobodyListenedToIsLost) {
    AddCamera();
    OpenDevice();
    simulator.Unplug("cam0");
    std::uint32_t version = 0;
    std::size_t size = sizeof version;
    EXPECT_EQ(TL().GCReadPort(remote, 0, &version, &size), GC_ERR_IO);
    EVENT_HANDLE error = nullptr;
    ASSERT_EQ(TL().GCRegisterEvent(device, EVENT_ERROR, &error), GC_ERR_SUCCESS);
    char data[1024];
    size = sizeof data;
    EXPECT_EQ(TL().EventGetData(error, data, &size, 0), GC_ERR_TIMEOUT);
}

TEST_F(Ports, OfACameraThatIsGoneLetItsStreamBeOpenedAndClosed) {
    AddCamera();
    OpenDevice();
    simulator.Unplug("cam0");
    OpenStream();
    Announce(1);
    QueueAll();
    Start();
    EXPECT_EQ(TL().DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
}

// The 20 bytes that consumers compare with those of a file that they have kept.
TEST_F(Ports, TheHashOfADescriptionIsThatOfItsText) {
    AddCamera();
    OpenDevice();
    std::array<std::uint8_t, 20> hash{};
    std::size_t size = hash.size();
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    ASSERT_EQ(TL().GCGetPortURLInfo(remote, 0, URL_INFO_FILE_SHA1_HASH, &type, hash.data(), &size), GC_ERR_SUCCESS);
    EXPECT_EQ(type, INFO_DATATYPE_BUFFER);
    EXPECT_EQ(size, 20U);
    const std::string xml = Description(remote);
    EXPECT_EQ(hash, base::Sha1({reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size()}));
}

TEST_F(Ports, AUrlIsWhatItsPartsSay) {
    AddCamera();
    OpenDevice();
    const auto number = [&](URL_INFO_CMD command) {
        return InfoValue<std::uint64_t>(INFO_DATATYPE_UINT64, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().GCGetPortURLInfo(remote, 0, command, type, value, size);
        });
    };
    const auto text = [&](URL_INFO_CMD command) {
        return InfoText([&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().GCGetPortURLInfo(remote, 0, command, type, value, size);
        });
    };
    std::ostringstream url;
    url << "local:" << text(URL_INFO_FILENAME) << ';' << std::hex << number(URL_INFO_FILE_REGISTER_ADDRESS) << ';'
        << number(URL_INFO_FILE_SIZE);
    EXPECT_EQ(text(URL_INFO_URL), url.str());
    EXPECT_TRUE(text(URL_INFO_FILENAME).ends_with(".xml"));
}

TEST_F(Ports, ADescriptionThatIsZippedInTheCameraIsServedAsText) {
    MarlowSim::CameraOptions camera = integration::Camera("21");
    camera.zip = true;
    Add("cam0", camera);
    OpenDevice();
    const std::string xml = Description(remote);
    EXPECT_EQ(xml.rfind("<?xml", 0), 0U) << xml.substr(0, 20);
    EXPECT_EQ(PortNodes(remote, xml).Value("DeviceModelName"), "H2048");
}

// The camera wants words: the producer reads more than was asked for, and writes back what it does not mean.
TEST_F(Ports, BytesAtAnyAddressAreReadAndWritten) {
    AddCamera();
    OpenDevice();
    const PortNodes nodes(remote, Description(remote));
    const auto address = static_cast<std::uint64_t>(dynamic_cast<GenApi::IRegister&>(*nodes["WidthReg"]).GetAddress());
    std::uint8_t whole[4]{};
    std::size_t size = sizeof whole;
    ASSERT_EQ(TL().GCReadPort(remote, address, whole, &size), GC_ERR_SUCCESS);
    std::uint8_t middle[2]{};
    size = sizeof middle;
    ASSERT_EQ(TL().GCReadPort(remote, address + 1, middle, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(middle[0], whole[1]);
    EXPECT_EQ(middle[1], whole[2]);
    const std::uint8_t four = 4;  // the third byte of a big-endian 0x0800 becomes 0x0400
    size = 1;
    ASSERT_EQ(TL().GCWritePort(remote, address + 2, &four, &size), GC_ERR_SUCCESS);
    EXPECT_EQ(PortNodes(remote, Description(remote)).Value("Width"), "1024");
}

TEST_F(Ports, StackedWritesSayHowManyWentWell) {
    AddCamera();
    OpenDevice();
    const PortNodes nodes(device, Description(device));
    const auto address =
        static_cast<std::uint64_t>(dynamic_cast<GenApi::IRegister&>(*nodes["AutoCloseTimeout_Register"]).GetAddress());
    std::int64_t good = 500;
    std::int64_t bad = -1;
    PORT_REGISTER_STACK_ENTRY entries[] = {{address, &good, sizeof good}, {address, &bad, sizeof bad}};
    std::size_t count = 2;
    EXPECT_EQ(TL().GCWritePortStacked(device, entries, &count), GC_ERR_INVALID_VALUE);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(nodes.Value("AutoCloseTimeout"), "500");
}

TEST_F(Ports, TheBaudRateIsAFeatureOfTheCamera) {
    AddCamera();
    OpenDevice();
    const PortNodes nodes(remote, Description(remote));
    nodes.Set("ClSerialPortBaudRate", "Baud19200");
    EXPECT_EQ(nodes.Value("ClSerialPortBaudRate"), "Baud19200");
    EXPECT_EQ(nodes.Value("DeviceModelName"), "H2048") << "both sides of the line have changed";
}

}  // namespace

}  // namespace gentl_test
