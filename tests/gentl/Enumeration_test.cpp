/* SPDX-License-Identifier: Apache-2.0 */
/*
 * System, interfaces and devices in lists and open
 */
#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

class Lists : public Consumer {
protected:
    std::string InterfaceText(INTERFACE_INFO_CMD command, const std::string& id = kPort) const {
        return InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* size) {
            return TL().TLGetInterfaceInfo(system, id.c_str(), command, type, text, size);
        });
    }
    std::string DeviceText(DEVICE_INFO_CMD command, const std::string& id = kCamera) const {
        return InfoText([&](INFO_DATATYPE* type, void* text, std::size_t* size) {
            return TL().IFGetDeviceInfo(interface, id.c_str(), command, type, text, size);
        });
    }
    std::int32_t Status(const std::string& id = kCamera) const {
        return InfoValue<std::int32_t>(INFO_DATATYPE_INT32, [&](INFO_DATATYPE* type, void* value, std::size_t* size) {
            return TL().IFGetDeviceInfo(interface, id.c_str(), DEVICE_INFO_ACCESS_STATUS, type, value, size);
        });
    }
    std::uint32_t Devices() const {
        std::uint32_t count = 99;
        EXPECT_EQ(TL().IFGetNumDevices(interface, &count), GC_ERR_SUCCESS);
        return count;
    }
    void UpdateDevices() { ASSERT_EQ(TL().IFUpdateDeviceList(interface, nullptr, kPatience), GC_ERR_SUCCESS); }
};

TEST_F(Lists, ThereIsOneSystem) {
    AddCamera();
    OpenSystem();
    TL_HANDLE second = nullptr;
    EXPECT_EQ(TL().TLOpen(&second), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().TLOpen(nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().TLClose(system), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().TLClose(system), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().TLOpen(&system), GC_ERR_SUCCESS);
}

TEST_F(Lists, EachEnabledPortIsAnInterface) {
    AddCamera("", "cam0", "21");
    AddCamera("", "cam1", "22");
    OpenSystem();
    std::uint32_t count = 0;
    EXPECT_EQ(TL().TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(Text([&](char* text, std::size_t* size) { return TL().TLGetInterfaceID(system, 0, text, size); }), kPort);
    EXPECT_EQ(InterfaceText(INTERFACE_INFO_ID), kPort);
    EXPECT_EQ(InterfaceText(INTERFACE_INFO_TLTYPE), "CL");
    std::size_t size = 0;
    EXPECT_EQ(TL().TLGetInterfaceID(system, 2, nullptr, &size), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(TL().TLGetInterfaceInfo(system, "nobody", INTERFACE_INFO_ID, nullptr, nullptr, &size), GC_ERR_INVALID_ID);
}

TEST_F(Lists, TheListChangesOnlyByAnUpdate) {
    AddCamera();
    ASSERT_EQ(TL().TLOpen(&system), GC_ERR_SUCCESS);
    std::uint32_t count = 99;
    EXPECT_EQ(TL().TLGetNumInterfaces(system, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 0u);
    bool8_t changed = 0;
    EXPECT_EQ(TL().TLUpdateInterfaceList(system, &changed, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(TL().TLUpdateInterfaceList(system, &changed, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 0);
}

TEST_F(Lists, ACameraIsADevice) {
    AddCamera();
    OpenInterface();
    UpdateDevices();
    EXPECT_EQ(Devices(), 1u);
    EXPECT_EQ(Text([&](char* text, std::size_t* size) { return TL().IFGetDeviceID(interface, 0, text, size); }),
              kCamera);
    EXPECT_EQ(DeviceText(DEVICE_INFO_ID), kCamera);
    EXPECT_EQ(DeviceText(DEVICE_INFO_VENDOR), "Marlow");
    EXPECT_EQ(DeviceText(DEVICE_INFO_MODEL), "H2048");
    EXPECT_EQ(DeviceText(DEVICE_INFO_SERIAL_NUMBER), "21");
    EXPECT_EQ(DeviceText(DEVICE_INFO_DISPLAYNAME), "Marlow H2048 (Marlow-H2048-21)");
    EXPECT_EQ(DeviceText(DEVICE_INFO_ID, "nobody"), "error -1007");
    EXPECT_EQ(DeviceText(99), "error -1003");
}

TEST_F(Lists, AnEmptyPortHasNone) {
    AddCamera();
    simulator.SetFault("cam0", "silent", "on");
    OpenInterface();
    UpdateDevices();
    EXPECT_EQ(Devices(), 0u);
    std::size_t size = 0;
    EXPECT_EQ(TL().IFGetDeviceID(interface, 0, nullptr, &size), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_INVALID_ID);
}

// The look that an update without time began may still wait for the answer that did not come: the next one finds it.
TEST_F(Lists, AnswerWithWhatIsKnownAndALaterUpdateTellsWhatChanged) {
    AddCamera();
    simulator.SetFault("cam0", "silent", "on");
    OpenInterface();
    bool8_t changed = 1;
    ASSERT_EQ(TL().IFUpdateDeviceList(interface, &changed, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 0);
    EXPECT_EQ(Devices(), 0U);
    simulator.SetFault("cam0", "silent", "off");
    for (int looks = 0; looks < 10 && changed == 0; ++looks)
        ASSERT_EQ(TL().IFUpdateDeviceList(interface, &changed, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(Devices(), 1U);
    ASSERT_EQ(TL().IFUpdateDeviceList(interface, &changed, kPatience), GC_ERR_SUCCESS);
    EXPECT_EQ(changed, 0);
}

TEST_F(Lists, ADeviceOpensWithoutAnUpdate) {
    AddCamera();
    ASSERT_EQ(TL().TLOpen(&system), GC_ERR_SUCCESS);
    ASSERT_EQ(TL().TLOpenInterface(system, kPort.c_str(), &interface), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_SUCCESS);
    EXPECT_EQ(Status(), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
}

TEST_F(Lists, ADeviceOpensAgainAfterTheSystemWasClosed) {
    AddCamera();
    OpenDevice();
    EXPECT_EQ(TL().TLClose(system), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DevClose(device), GC_ERR_INVALID_HANDLE);
    ASSERT_EQ(TL().TLOpen(&system), GC_ERR_SUCCESS);
    ASSERT_EQ(TL().TLOpenInterface(system, kPort.c_str(), &interface), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_EXCLUSIVE, &device), GC_ERR_SUCCESS);
}

TEST_F(Lists, WhatIsOpenCannotBeOpenedAgain) {
    AddCamera();
    OpenDevice();
    IF_HANDLE secondInterface = nullptr;
    DEV_HANDLE secondDevice = nullptr;
    EXPECT_EQ(TL().TLOpenInterface(system, kPort.c_str(), &secondInterface), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &secondDevice),
              GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().DevClose(device), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &secondDevice), GC_ERR_SUCCESS);
    EXPECT_NE(secondDevice, device);
}

TEST_F(Lists, AccessFlagsThatAreNoneAreRefused) {
    AddCamera();
    OpenInterface();
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_NONE, &device), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), 5, &device), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().IFOpenDevice(interface, nullptr, DEVICE_ACCESS_CONTROL, &device), GC_ERR_INVALID_PARAMETER);
}

TEST_F(Lists, ACameraThatAnotherProgramUsesIsBusy) {
    AddCamera();
    OpenInterface();
    UpdateDevices();
    Vanto::IVantoDevice* const foreign = integration::CTlFactory::GetInstance().CreateDevice(Partial("21"));
    UpdateDevices();
    EXPECT_EQ(Devices(), 1u);
    EXPECT_EQ(Status(), DEVICE_ACCESS_STATUS_BUSY);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_ACCESS_DENIED);
    integration::CTlFactory::GetInstance().DestroyDevice(foreign);
    UpdateDevices();
    EXPECT_EQ(Status(), DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(Lists, ACameraThatWasInUseBeforeItWasEverSeenIsBusyUnderItsPortsId) {
    AddCamera();
    Vanto::IVantoDevice* const foreign = integration::CTlFactory::GetInstance().CreateDevice(Partial("21"));
    OpenInterface();
    UpdateDevices();
    ASSERT_EQ(Devices(), 1u);
    EXPECT_EQ(Text([&](char* text, std::size_t* size) { return TL().IFGetDeviceID(interface, 0, text, size); }), kPort);
    EXPECT_EQ(Status(kPort), DEVICE_ACCESS_STATUS_BUSY);
    EXPECT_EQ(DeviceText(DEVICE_INFO_DISPLAYNAME, kPort), "Unknown camera (COM_Port#cam0)");
    EXPECT_EQ(DeviceText(DEVICE_INFO_SERIAL_NUMBER, kPort), "");
    EXPECT_EQ(TL().IFOpenDevice(interface, kPort.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_ACCESS_DENIED);
    integration::CTlFactory::GetInstance().DestroyDevice(foreign);
    UpdateDevices();
    EXPECT_EQ(DeviceText(DEVICE_INFO_ID, kPort), kCamera);
    EXPECT_EQ(TL().IFOpenDevice(interface, kPort.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_SUCCESS);
}

// As a process does that was just started.
TEST_F(Lists, ACameraThatIsInUseIsKnownFromWhatAnotherProcessSaw) {
    AddCamera();
    OpenInterface();
    UpdateDevices();
    CloseLibrary();
    Vanto::IVantoDevice* const foreign = integration::CTlFactory::GetInstance().CreateDevice(Partial("21"));
    BeginAgain();
    OpenInterface();
    UpdateDevices();
    EXPECT_EQ(Status(), DEVICE_ACCESS_STATUS_BUSY);
    EXPECT_EQ(DeviceText(DEVICE_INFO_MODEL), "H2048");
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_ACCESS_DENIED);
    integration::CTlFactory::GetInstance().DestroyDevice(foreign);
    EXPECT_EQ(TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device), GC_ERR_SUCCESS);
}

// Lists are asked for with 10 ms; the port is asked for longer.
TEST_F(Lists, ABusyCameraStaysListedWhileItsPortIsAskedAgain) {
    AddCamera();
    Vanto::IVantoDevice* const foreign = integration::CTlFactory::GetInstance().CreateDevice(Partial("21"));
    OpenInterface();
    UpdateDevices();
    ASSERT_EQ(TL().IFUpdateDeviceList(interface, nullptr, 0), GC_ERR_SUCCESS);
    EXPECT_EQ(Devices(), 1u);
    integration::CTlFactory::GetInstance().DestroyDevice(foreign);
}

TEST_F(Lists, ParentsAreFound) {
    AddCamera();
    OpenStream();
    TL_HANDLE parentSystem = nullptr;
    IF_HANDLE parentInterface = nullptr;
    DEV_HANDLE parentDevice = nullptr;
    EXPECT_EQ(TL().IFGetParentTL(interface, &parentSystem), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DevGetParentIF(device, &parentInterface), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DSGetParentDev(stream, &parentDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(parentSystem, system);
    EXPECT_EQ(parentInterface, interface);
    EXPECT_EQ(parentDevice, device);
}

TEST_F(Lists, HandlesOfAnotherKindAreRefused) {
    AddCamera();
    OpenStream();
    EXPECT_EQ(TL().DevClose(remote), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().TLClose(interface), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().IFClose(nullptr), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().DSClose(&stream), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().EventKill(device), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(TL().GCRegisterEvent(remote, EVENT_ERROR, &event), GC_ERR_INVALID_HANDLE);
}

TEST_F(Lists, WithoutAFrameGrabberThereIsNoStream) {
    AddCamera("");
    OpenDevice();
    std::uint32_t count = 9;
    EXPECT_EQ(TL().DevGetNumDataStreams(device, &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 0u);
    std::size_t size = 0;
    EXPECT_EQ(TL().DevGetDataStreamID(device, 0, nullptr, &size), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().DevOpenDataStream(device, "any", &stream), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Lists, ClosingTheLibraryWithEverythingOpenClosesAll) {
    AddCamera();
    OpenStream();
    Announce();
    QueueAll();
    Start();
    CloseLibrary();
    EXPECT_EQ(SerialNumbers(), std::vector<std::string>{"21"});
}

}  // namespace

}  // namespace gentl_test
