/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Register space in memory, and node maps over it
 */

#include "Support.h"

#include <algorithm>
#include <cstring>

namespace genapitest {

using namespace GenApi;

void MemoryPort::Check(std::int64_t address, std::int64_t length) {
    if (failsNext) {
        failsNext = false;
        throw TIMEOUT_EXCEPTION("The device does not answer");
    }
    if (address < 0 || length < 1 || address + length > static_cast<std::int64_t>(m_memory.size()))
        throw OUT_OF_RANGE_EXCEPTION("No memory at 0x%I64x", address);
}

void MemoryPort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    accesses.push_back({false, address, length});
    Check(address, length);
    std::memcpy(buffer, m_memory.data() + address, static_cast<std::size_t>(length));
}

void MemoryPort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    accesses.push_back({true, address, length});
    Check(address, length);
    std::memcpy(m_memory.data() + address, buffer, static_cast<std::size_t>(length));
}

void MemoryPort::Put(std::int64_t address, std::initializer_list<unsigned> bytes) {
    std::transform(bytes.begin(), bytes.end(), m_memory.begin() + address,
                   [](unsigned byte) { return static_cast<std::uint8_t>(byte); });
}

void MemoryPort::PutLittle(std::int64_t address, std::uint64_t value, int length) {
    for (int i = 0; i < length; ++i)
        m_memory[static_cast<std::size_t>(address + i)] = static_cast<std::uint8_t>(value >> (8 * i));
}

void MemoryPort::PutBig(std::int64_t address, std::uint64_t value, int length) {
    for (int i = 0; i < length; ++i)
        m_memory[static_cast<std::size_t>(address + i)] = static_cast<std::uint8_t>(value >> (8 * (length - 1 - i)));
}

void MemoryPort::PutText(std::int64_t address, const std::string& text) {
    std::copy(text.begin(), text.end(), m_memory.begin() + address);
}

std::uint64_t MemoryPort::Little(std::int64_t address, int length) const {
    std::uint64_t value = 0;
    for (int i = length - 1; i >= 0; --i)
        value = (value << 8) | m_memory[static_cast<std::size_t>(address + i)];
    return value;
}

std::uint64_t MemoryPort::Big(std::int64_t address, int length) const {
    std::uint64_t value = 0;
    for (int i = 0; i < length; ++i)
        value = (value << 8) | m_memory[static_cast<std::size_t>(address + i)];
    return value;
}

int MemoryPort::Reads() const {
    return static_cast<int>(
        std::count_if(accesses.begin(), accesses.end(), [](const Access& access) { return !access.isWrite; }));
}

int MemoryPort::Writes() const {
    return static_cast<int>(accesses.size()) - Reads();
}

std::string Describe(const std::string& nodes, bool hasPort) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<RegisterDescription ModelName=\"Model\" VendorName=\"Vendor\" ToolTip=\"Tip\" StandardNameSpace=\"None\" "
           "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" "
           "MinorVersion=\"2\" SubMinorVersion=\"3\" ProductGuid=\"P\" VersionGuid=\"V\" "
           "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n" +
           nodes + (hasPort ? "<Port Name=\"Device\"/>" : "") + "</RegisterDescription>\n";
}

void NodeMapTest::Load(const std::string& nodes) {
    map._LoadXMLFromString(Describe(nodes));
    ASSERT_TRUE(map._Connect(&port, "Device"));
    port.accesses.clear();
}

INode* NodeMapTest::Node(const std::string& name) {
    INode* node = map._GetNode(name);
    if (node == nullptr)
        throw std::runtime_error("The test has no node " + name);
    return node;
}

std::int64_t NodeMapTest::Evaluate(const std::string& formula) {
    Load("<IntSwissKnife Name=\"F\"><Formula>" + Escaped(formula) + "</Formula></IntSwissKnife>");
    return Integer("F")->GetValue();
}

double NodeMapTest::EvaluateFloat(const std::string& formula) {
    Load("<SwissKnife Name=\"F\"><Formula>" + Escaped(formula) + "</Formula></SwissKnife>");
    return Float("F")->GetValue();
}

int NodeMapTest::Warnings(EWarningKind kind) const {
    const WarningList_t warnings = map._GetWarnings();
    return static_cast<int>(std::count_if(warnings.begin(), warnings.end(),
                                          [kind](const Warning& warning) { return warning.Kind == kind; }));
}

std::string Escaped(const std::string& text) {
    std::string result;
    for (const char character : text)
        result += character == '&' ? "&amp;" : character == '<' ? "&lt;" : std::string(1, character);
    return result;
}

}  // namespace genapitest
