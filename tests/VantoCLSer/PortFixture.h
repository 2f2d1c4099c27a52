/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One port with a scripted camera, and a device that owns it
 */
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "GenApi/GenApi.h"
#include "VantoCLSer/VantoCLSerPort.h"
#include "tests/VantoCLSer/Fixture.h"
#include "tests/support/WaitUntil.h"

namespace clser_test {

inline constexpr char kPortId[] = "Scripted#Port0";
inline constexpr char kPortSource[] = "VantoCLSer/VantoCLSerPort";
inline constexpr std::int64_t kSerialNumberAddress = 0x144;

/// Far more than anything takes that is not stuck.
inline constexpr std::chrono::seconds kLong(60);

using test_support::WaitUntil;

/// Stands for the device that uses a port, with a node map whose registers are those of the port.
class Owner : public Vanto::IPortOwner {
public:
    explicit Owner(GenApi::IPort& port, const std::string& deviceIdNode = StringNode()) : m_nodeMap("Device") {
        m_nodeMap._LoadXMLFromString(
            "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"M\" VendorName=\"V\" "
            "StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
            "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"\" "
            "ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
            "VersionGuid=\"22222222-2222-2222-2222-222222222222\"><Category Name=\"Root\"/>" +
            deviceIdNode + "<Port Name=\"Device\"/></RegisterDescription>");
        m_nodeMap._Connect(&port);
    }
    ~Owner() override = default;

    static std::string StringNode() {
        return "<StringReg Name=\"DeviceID\"><Address>" + std::to_string(kSerialNumberAddress) +
               "</Address><Length>64</Length><AccessMode>RO</AccessMode><pPort>Device</pPort></StringReg>";
    }

    bool IsOpen() const override { return isOpen; }
    GenApi::INodeMap* GetNodeMap() override {
        if (onGetNodeMap)
            onGetNodeMap();
        return hasNodeMap ? m_nodeMap._GetNodeMap() : nullptr;
    }
    void OnRemoval(std::uint64_t) noexcept override {
        ++removals;
        if (onRemoval)
            onRemoval();
    }

    std::atomic<bool> isOpen{true};
    std::atomic<bool> hasNodeMap{true};
    std::atomic<int> removals{0};
    std::function<void()> onRemoval;
    std::function<void()> onGetNodeMap;

private:
    GenApi::CNodeMapRef m_nodeMap;
};

class PortTest : public PluginTest {
protected:
    PortTest() {
        scripted::Serial().SetPorts(2, {kCamera, ""});
        scripted::Driver().SetRegister(kSerialNumberAddress, "1234");
    }

    void ConnectPort() { ASSERT_TRUE(m_port.Connect(m_deviceId)); }
    std::shared_ptr<Owner> SetOwner(const std::string& deviceIdNode = Owner::StringNode()) {
        const auto owner = std::make_shared<Owner>(m_port, deviceIdNode);
        m_port.SetOwner(owner);
        return owner;
    }
    std::uint8_t ReadByte(std::int64_t address = 0) {
        std::uint8_t byte = 0;
        m_port.Read(&byte, address, 1);
        return byte;
    }
    void WriteByte(std::uint8_t byte) { m_port.Write(&byte, 0, 1); }
    static void Unplug() { scripted::Serial().SetCamera(0, ""); }
    static void Plug() { scripted::Serial().SetCamera(0, kCamera); }

    /// How often the line was opened, probes included.
    static int Openings() { return scripted::Serial().Port(0).opened; }
    static bool IsLineOpen() { return scripted::Serial().Port(0).isOpen; }

    Logged RemovalMessage() const {
        return {kDebug,
                "Device removal for PortID '%s' DeviceID '%s' detected. Firing removal callbacks.",
                {kPortId, m_deviceId.str()}};
    }

    const gcstring m_deviceId = scripted::FullDeviceId(kCamera);
    Vanto::CVantoCLSerPort m_port{kPortId};
};

}  // namespace clser_test
