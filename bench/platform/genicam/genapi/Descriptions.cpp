/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions and registers that both engines are measured with
 */

#include "Descriptions.h"

#include <malloc.h>

#include <array>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string_view>

namespace genapibench {

namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<RegisterDescription ModelName=\"M\" VendorName=\"V\" "
    "StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
    "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"T\" ProductGuid=\"P\" VersionGuid=\"V\" "
    "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xsi:schemaLocation=\"http://www.genicam.org/GenApi/Version_1_1 GenApiSchema.xsd\">\n";

std::string Register(const std::string& name, int address, const std::string& more, const char* kind = "IntReg") {
    return std::string("  <") + kind + " Name=\"" + name +
           "\">\n    <Visibility>Invisible</Visibility>\n    <Address>" + std::to_string(address) +
           "</Address>\n    <Length>4</Length>\n    <AccessMode>RW</AccessMode>\n" + "    <pPort>Device</pPort>\n" +
           more + "    <Sign>Unsigned</Sign>\n    <Endianess>LittleEndian</Endianess>\n  </" + kind + ">\n";
}

// One feature and what lies behind it: about five nodes.
std::string Feature(int index) {
    const std::string n = std::to_string(index);
    const int address = (index * 8) % 60000;
    return "  <Integer Name=\"Feature" + n + "\" NameSpace=\"Custom\">\n    <ToolTip>Feature number " + n +
           " of this camera</ToolTip>\n    <Description>Sets what feature number " + n +
           " is about, in steps of one.</Description>\n    <DisplayName>Feature " + n +
           "</DisplayName>\n    <Visibility>Expert</Visibility>\n    <pValue>Feature" + n +
           "Reg</pValue>\n    <Min>0</Min>\n    <pMax>Feature" + n + "Max</pMax>\n    <Inc>1</Inc>\n  </Integer>\n" +
           Register("Feature" + n + "Reg", address, "") + "  <IntSwissKnife Name=\"Feature" + n +
           "Max\">\n    <pVariable Name=\"F\">Feature" + n +
           "Flag</pVariable>\n    <Formula>(F = 1) ? 0xFFFF : 0x7FFF</Formula>\n" + "  </IntSwissKnife>\n" +
           Register("Feature" + n + "Flag", address + 4, "    <Bit>3</Bit>\n", "MaskedIntReg") +
           "  <Boolean Name=\"Feature" + n + "On\">\n    <pValue>Feature" + n +
           "Flag</pValue>\n    <OnValue>1</OnValue>\n    <OffValue>0</OffValue>\n  </Boolean>\n";
}

}  // namespace

std::string Generated(int nodes) {
    std::string xml = kHead;
    const int features = nodes / 5;
    xml += "  <Category Name=\"Root\">\n";
    for (int i = 0; i < features; ++i) {
        xml += "    <pFeature>Feature" + std::to_string(i) + "</pFeature>\n    <pFeature>Feature" + std::to_string(i) +
               "On</pFeature>\n";
    }
    xml += "  </Category>\n";
    for (int i = 0; i < features; ++i)
        xml += Feature(i);
    return xml + "  <Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

std::string RealOrGenerated(const std::string& file) {
    std::ifstream stream(std::string(VANTO_TEST_DESCRIPTIONS) + "/" + file, std::ios::binary);
    if (!stream)
        return Generated(2000);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

int CountNodes(const std::string& xml) {
    int count = 0;
    for (std::size_t at = xml.find(" Name=\""); at != std::string::npos; at = xml.find(" Name=\"", at + 1)) {
        const std::size_t open = xml.rfind('<', at);
        const std::string_view element(xml.data() + open + 1, xml.find_first_of(" \t\r\n", open) - open - 1);
        if (element != "pVariable" && element != "Constant" && element != "Expression")
            ++count;
    }
    return count;
}

std::string Features() {
    std::string entries;
    for (int i = 0; i < 12; ++i)
        entries +=
            "<EnumEntry Name=\"Format" + std::to_string(i) + "\"><Value>" + std::to_string(i) + "</Value></EnumEntry>";
    return kHead + std::string("<Category Name=\"Root\"><pFeature>Cached</pFeature></Category>\n") +
           "<Integer Name=\"Cached\"><pValue>CachedReg</pValue><Min>0</Min><Max>1000</Max></Integer>\n" +
           Register("CachedReg", 0x10, "") + "<Integer Name=\"Uncached\"><pValue>UncachedReg</pValue></Integer>\n" +
           Register("UncachedReg", 0x20, "<Cachable>NoCache</Cachable>") +
           "<Integer "
           "Name=\"Checked\"><pValue>CheckedReg</pValue><Min>0</Min><Max>1000000</Max><Inc>1</Inc></Integer>\n" +
           Register("CheckedReg", 0x30, "") + "<Enumeration Name=\"Format\">" + entries +
           "<pValue>FormatReg</pValue></Enumeration>\n" + Register("FormatReg", 0x40, "") +
           "<Integer Name=\"W\"><Value>640</Value></Integer><Integer Name=\"H\"><Value>480</Value></Integer>" +
           "<Integer Name=\"B\"><Value>12</Value></Integer>\n" +
           "<SwissKnife Name=\"Knife\"><pVariable Name=\"W\">W</pVariable><pVariable Name=\"H\">H</pVariable>" +
           "<pVariable Name=\"B\">B</pVariable><Formula>(W &gt; 100) ? W * H * B / 8.0 : W + "
           "H</Formula></SwissKnife>\n" +
           "<Port Name=\"Device\"/></RegisterDescription>\n";
}

std::string Selection(int dependants) {
    std::string xml = std::string(kHead) + "<Integer Name=\"Selector\"><pValue>SelectorReg</pValue>";
    for (int i = 0; i < dependants; ++i)
        xml += "<pSelected>Feature" + std::to_string(i) + "</pSelected>";
    xml += "</Integer>\n" + Register("SelectorReg", 0, "");
    for (int i = 0; i < dependants; ++i) {
        const std::string n = std::to_string(i);
        xml += "<Integer Name=\"Feature" + n + "\"><pValue>Feature" + n + "Reg</pValue></Integer>\n" +
               Register("Feature" + n + "Reg", 8 + 4 * i, "<pIndex Offset=\"4096\">Selector</pIndex>");
    }
    return xml + "<Port Name=\"Device\"/></RegisterDescription>\n";
}

void TrimHeap() {
    malloc_trim(0);
}

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void Registers::Read(std::uint64_t address, void* buffer, std::size_t size) const {
    std::memcpy(buffer, m_bytes.data() + address % kSize, size < 4096 ? size : 4096);
}

void Registers::Write(std::uint64_t address, const void* buffer, std::size_t size) {
    std::memcpy(m_bytes.data() + address % kSize, buffer, size < 4096 ? size : 4096);
}

}  // namespace genapibench
