/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description of a small camera
 */

#include "CameraXml.h"

#include <cstdint>

namespace stream_test {

namespace {

std::string Enumeration(const std::string& name, const std::map<std::string, std::int64_t>& entries,
                        std::int64_t value) {
    std::string xml = "<Enumeration Name=\"" + name + "\">";
    for (const auto& [symbol, number] : entries)
        xml += "<EnumEntry Name=\"" + symbol + "\"><Value>" + std::to_string(number) + "</Value></EnumEntry>";
    return xml + "<Value>" + std::to_string(value) + "</Value></Enumeration>";
}

}  // namespace

CameraXml::CameraXml() {
    for (const char* name : {"Width", "Height"})
        With(name, Integer(name, name[0] == 'W' ? 8 : 4));
    for (const char* name : {"OffsetX", "OffsetY", "TLParamsLocked"})
        With(name, Integer(name, 0));
    for (const char* name : {"BinningHorizontal", "BinningVertical"})
        With(name, Integer(name, 1));
    With("ClTapGeometry", Enumeration("ClTapGeometry", {{"Geometry_1X", 1}, {"Geometry_1X2", 2}}, 1));
    With("PixelFormat",
         Enumeration("PixelFormat", {{"Mono8", 0x01080001}, {"Mono12", 0x01100005}, {"RGB8", 0x02180014}, {"Odd", 99}},
                     0x01080001));
    With("PixelSize",
         Enumeration("PixelSize", {{"Bpp8", 8}, {"Bpp9", 9}, {"Bpp16", 16}, {"Bpp17", 17}, {"Bpp24", 24}}, 8));
}

CameraXml& CameraXml::Without(const std::string& name) {
    m_nodes.erase(name);
    return *this;
}

CameraXml& CameraXml::With(const std::string& name, const std::string& xml) {
    m_nodes[name] = xml;
    return *this;
}

std::string CameraXml::Integer(const std::string& name, std::int64_t value) {
    return "<Integer Name=\"" + name + "\"><Value>" + std::to_string(value) + "</Value></Integer>";
}

std::string CameraXml::Register(const std::string& name, std::int64_t address) {
    return "<IntReg Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
           "<Sign>Signed</Sign><Endianess>BigEndian</Endianess></IntReg>";
}

std::string CameraXml::Text() const {
    std::string features;
    std::string nodes;
    for (const auto& [name, xml] : m_nodes) {
        features += "<pFeature>" + name + "</pFeature>";
        nodes += xml;
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"H2048\" "
           "VendorName=\"Marlow\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
           "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" "
           "ProductGuid=\"0B6E91F4-7C2A-4D38-A5E7-93F1C6B2D841\" VersionGuid=\"4D7A2C19-5E83-4B06-9F1D-2A6C8E0B7D54\">"
           "<Category Name=\"Root\">" +
           features + "</Category>" + nodes + "<Port Name=\"Device\"/></RegisterDescription>";
}

}  // namespace stream_test
