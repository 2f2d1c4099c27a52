/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera description of few features, which takes few packets to fetch
 */
#pragma once

#include <string>

#include "gencp/BaudRate.h"
#include "gencp/Registers.h"
#include "simulator/CameraRegisters.h"

namespace integration {

inline std::string RegisterNode(const std::string& kind, const std::string& name, const gencp::Register& reg,
                                const std::string& rest = "<Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>") {
    return "<" + kind + " Name=\"" + name + "\"><Address>" + std::to_string(reg.address) + "</Address><Length>" +
           std::to_string(reg.length) + "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" +
           "<Cachable>NoCache</Cachable>" + rest + "</" + kind + ">\n";
}

/// What a stream grabber needs of a camera of 64 x 32 pixels of a byte, beside it.
inline std::string GrabbingNodes() {
    std::string nodes;
    for (const auto& [name, value] : {std::pair("Height", 32), {"OffsetX", 0}, {"OffsetY", 0}, {"TLParamsLocked", 0}})
        nodes += "<Integer Name=\"" + std::string(name) + "\"><Value>" + std::to_string(value) + "</Value></Integer>\n";
    return nodes +
           "<Enumeration Name=\"PixelFormat\"><EnumEntry Name=\"Mono8\"><Value>17301505</Value></EnumEntry>"
           "<Value>17301505</Value></Enumeration>\n"
           "<Enumeration Name=\"PixelSize\"><EnumEntry Name=\"Bpp8\"><Value>8</Value></EnumEntry><Value>8</Value>"
           "</Enumeration>\n";
}

/// Width, BlackLevelRaw, DeviceID and ClSerialPortBaudRate with the rates 9600 and 921600.
inline std::string SmallDescription(const std::string& moreNodes = {}) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"H2048\" "
           "VendorName=\"Marlow\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
           "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"\" "
           "ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
           "VersionGuid=\"22222222-2222-2222-2222-222222222222\">\n"
           "<Category Name=\"Root\"><pFeature>Width</pFeature></Category>\n" +
           RegisterNode("IntReg", "Width", MarlowSim::registers::kWidth) +
           RegisterNode("IntReg", "BlackLevelRaw", MarlowSim::registers::kBlackLevelRaw) +
           RegisterNode("StringReg", "DeviceID", gencp::abrm::kSerialNumber, "") +
           RegisterNode("IntReg", "RateReg", gencp::kBaudRateRegister) +
           "<Enumeration Name=\"ClSerialPortBaudRate\"><EnumEntry Name=\"Baud9600\"><Value>15</Value></EnumEntry>"
           "<EnumEntry Name=\"Baud921600\"><Value>23</Value></EnumEntry><pValue>RateReg</pValue></Enumeration>\n" +
           moreNodes + "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

}  // namespace integration
