/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The slots of operations that separately built libraries and applications call
 */

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>

#include "vanto/internal/TransportLayerPrivateImpl.h"

namespace Vanto {
namespace {

// The first is 1. A pointer to a virtual member holds the offset in the table of its class, and says in the lowest bit
// of a half that it does.
template <class Member>
std::intptr_t SlotOf(Member member) {
    const auto parts = std::bit_cast<std::array<std::intptr_t, 2>>(member);
    return (parts[0] & ~std::intptr_t{1}) / static_cast<std::intptr_t>(sizeof(void*)) + 1;
}

TEST(Slots, OfTransportLayersAreThoseOfTheirOperations) {
    using Tl = ITransportLayer;
    using Info = const CDeviceInfo&;
    using Xml = const gcstring_vector&;
    using Made = IVantoDevice*;
    EXPECT_EQ(SlotOf<int (Tl::*)(DeviceInfoList&, const DeviceInfoList&, bool)>(&Tl::EnumerateDevices), 1);
    EXPECT_EQ(SlotOf<int (Tl::*)(DeviceInfoList&, bool)>(&Tl::EnumerateDevices), 2);
    EXPECT_EQ(SlotOf<Made (Tl::*)(const gcstring&)>(&Tl::CreateDevice), 3);
    EXPECT_EQ((SlotOf<Made (Tl::*)(Info, Xml)>(&Tl::CreateDevice)), 4);
    EXPECT_EQ(SlotOf<Made (Tl::*)(Info)>(&Tl::CreateDevice), 5);
    EXPECT_EQ((SlotOf<Made (Tl::*)(Info, Xml)>(&Tl::CreateFirstDevice)), 6);
    EXPECT_EQ(SlotOf<Made (Tl::*)(Info)>(&Tl::CreateFirstDevice), 7);
    EXPECT_EQ(SlotOf(&Tl::DestroyDevice), 8);
    EXPECT_EQ(SlotOf(&Tl::IsDeviceAccessible), 9);
    EXPECT_EQ(SlotOf(&Tl::GetTlInfo), 10);
    EXPECT_EQ(SlotOf(&Tl::CreateDeviceInfo), 11);
    EXPECT_EQ(SlotOf(&Tl::GetNodeMap), 12);
    EXPECT_EQ(SlotOf(&Tl::ReservedOperation), 13);
    EXPECT_EQ(SlotOf(&Tl::GetXmlFileProvider), 14);
}

/// Makes the hooks known to the test.
struct Frame : CTransportLayerBase<ITransportLayer> {
    using CTransportLayerBase::CreateDeviceFromInfo;
    using CTransportLayerBase::DestroyAllDevices;
    using CTransportLayerBase::FindDeviceSpecific;
    using CTransportLayerBase::GetDeviceClass;
    using CTransportLayerBase::HasDeviceSpecificDiscovery;
    using CTransportLayerBase::InternalCreateDevice;
    using CTransportLayerBase::InternalCreateDeviceInfo;
    using CTransportLayerBase::InternalEnumerateDevices;
    using CTransportLayerBase::InternalGetNodeMap;
    using CTransportLayerBase::InternalIsDeviceAccessible;
    using CTransportLayerBase::InternalReservedOperation;
    using CTransportLayerBase::IsTlAllowed;
    using CTransportLayerBase::MatchesFilter;
};

TEST(Slots, OfTheFrameFollowThoseOfItsInterface) {
    EXPECT_EQ(SlotOf(&Frame::GetXmlFileProvider), 14);
    EXPECT_EQ(SlotOf(&Frame::IsTlAllowed), 15);
    EXPECT_EQ(SlotOf(&Frame::CreateDeviceFromInfo), 16);
    EXPECT_EQ(SlotOf(&Frame::DestroyAllDevices), 17);
    EXPECT_EQ(SlotOf(&Frame::InternalEnumerateDevices), 18);
    EXPECT_EQ(SlotOf(&Frame::InternalCreateDevice), 19);
    EXPECT_EQ(SlotOf(&Frame::InternalCreateDeviceInfo), 20);
    EXPECT_EQ(SlotOf(&Frame::MatchesFilter), 21);
    EXPECT_EQ(SlotOf(&Frame::GetDeviceClass), 22);
    EXPECT_EQ(SlotOf(&Frame::HasDeviceSpecificDiscovery), 23);
    EXPECT_EQ(SlotOf(&Frame::FindDeviceSpecific), 24);
    EXPECT_EQ(SlotOf(&Frame::InternalGetNodeMap), 25);
    EXPECT_EQ(SlotOf(&Frame::InternalReservedOperation), 26);
    EXPECT_EQ(SlotOf(&Frame::InternalIsDeviceAccessible), 27);
}

TEST(Slots, OfWhatTheFactoryUses) {
    EXPECT_EQ(SlotOf(&ITransportLayerPrivate::Release), 1);
    EXPECT_EQ(SlotOf(&ITransportLayerPrivate::SetCreationHook), 2);
}

TEST(Slots, OfProperties) {
    EXPECT_EQ(SlotOf(&IProperties::GetPropertyNames), 1);
    EXPECT_EQ(SlotOf(&IProperties::GetPropertyAvailable), 2);
    EXPECT_EQ(SlotOf(&IProperties::GetPropertyValue), 3);
    EXPECT_EQ(SlotOf(&IProperties::SetPropertyValue), 4);
    EXPECT_EQ(SlotOf(&IProperties::IsSubset), 5);
    EXPECT_EQ(SlotOf(&IProperties::IsUserProvided), 6);
}

TEST(Slots, OfProvidersOfDescriptions) {
    EXPECT_EQ(SlotOf(&IXmlFileProvider::CanProvideXMLFile), 1);
    EXPECT_EQ(SlotOf(&IXmlFileProvider::ProvideXMLFile), 2);
}

TEST(Slots, OfDevices) {
    EXPECT_EQ(SlotOf(&IVantoDevice::Open), 1);
    EXPECT_EQ(SlotOf(&IVantoDevice::Close), 2);
    EXPECT_EQ(SlotOf(&IVantoDevice::IsOpen), 3);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetAccessMode), 4);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetDeviceInfo), 5);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetNumStreamGrabberChannels), 6);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetStreamGrabber), 7);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetReserved), 8);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetNodeMap), 9);
    EXPECT_EQ(SlotOf(&IVantoDevice::GetTLNodeMap), 10);
    EXPECT_EQ(SlotOf(&IVantoDevice::RegisterRemovalCallback), 17);
    EXPECT_EQ(SlotOf(&IVantoDevice::DeregisterRemovalCallback), 18);
}

TEST(Slots, OfDevicesForTheirTransportLayer) {
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::CreateNodeMapFromFile), 1);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::CreateNodeMapFromString), 2);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::CreateChunkNodeMapFromFile), 3);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::CreateChunkNodeMapFromString), 4);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::SupportsChunkParsing), 5);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::IsChunkParsingAvailable), 6);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::DestroySelf), 7);
    EXPECT_EQ(SlotOf(&IVantoDevicePrivate::CreateChunkNodeMapCopy), 8);
}

}  // namespace
}  // namespace Vanto
