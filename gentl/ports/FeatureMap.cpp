/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureMap: features as registers, and the description that names them
 */
#include "ports/FeatureMap.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/XmlText.h"
#include "support/GenTLError.h"
#include "support/Identity.h"

namespace gentl {

namespace {

constexpr std::size_t kTextBytes = 512;
constexpr std::size_t kNumberBytes = 8;
constexpr std::uint64_t kAlignment = 16;

const char* AccessOf(const Feature& feature) {
    if (feature.kind == Feature::Kind::kCommand)
        return "WO";
    return feature.writeInteger ? "RW" : "RO";
}

std::string RegisterNode(const char* element, const std::string& name, std::uint64_t address, std::size_t length,
                         const Feature& feature, const FeatureMap::Layout& layout) {
    const std::string order =
        element == std::string_view("IntReg")
            ? fmt::format("<Sign>Signed</Sign><Endianess>{}Endian</Endianess>", layout.bigEndian ? "Big" : "Little")
            : std::string();
    return fmt::format(
        "  <{0} Name=\"{1}\" NameSpace=\"Custom\"><Visibility>Invisible</Visibility><Address>0x{2:x}</Address>"
        "<Length>{3}</Length><AccessMode>{4}</AccessMode><pPort>{5}</pPort><Cachable>NoCache</Cachable>{6}</{0}>\n",
        element, name, address, length, AccessOf(feature), layout.portName, order);
}

// What all kinds of features begin with, in the order of the schema.
std::string Head(const char* element, const Feature& feature) {
    return fmt::format(
        "  <{} Name=\"{}\" NameSpace=\"{}\"><ToolTip>{}</ToolTip><Description>{}</Description>"
        "<Visibility>{}</Visibility>",
        element, feature.name, feature.standard ? "Standard" : "Custom", base::XmlText(feature.toolTip),
        base::XmlText(feature.toolTip), feature.visibility);
}

std::string EntriesOf(const Feature& feature) {
    std::string text;
    for (const Feature::Entry& entry : feature.entries)
        text += fmt::format("<EnumEntry Name=\"{}\" NameSpace=\"{}\"><Value>{}</Value></EnumEntry>", entry.name,
                            feature.standard ? "Standard" : "Custom", entry.value);
    return text;
}

std::string IntegerLimits(const Feature& feature) {
    std::string text;
    if (feature.writeInteger)
        text = fmt::format("<Min>{}</Min><Max>{}</Max>", feature.minimum, feature.maximum);
    if (!feature.unit.empty())
        text += fmt::format("<Unit>{}</Unit>", base::XmlText(feature.unit));
    return text;
}

}  // namespace

FeatureMap::FeatureMap(Layout layout, std::vector<Feature> features)
    : m_layout(std::move(layout)), m_features(std::move(features)) {
    std::uint64_t address = m_layout.base;
    for (const Feature& feature : m_features) {
        const std::size_t length = feature.kind == Feature::Kind::kText ? kTextBytes : kNumberBytes;
        m_registers.emplace(address, Register{&feature, length});
        address += (length + kAlignment - 1) / kAlignment * kAlignment;
    }
}

std::map<std::uint64_t, FeatureMap::Register>::const_iterator FeatureMap::Find(std::uint64_t address) const {
    auto next = m_registers.upper_bound(address);
    if (next == m_registers.begin())
        return m_registers.end();
    --next;
    return address - next->first < next->second.length ? next : m_registers.end();
}

bool FeatureMap::Contains(std::uint64_t address) const noexcept {
    return Find(address) != m_registers.end();
}

std::vector<std::uint8_t> FeatureMap::BytesOf(const Register& one) const {
    std::vector<std::uint8_t> bytes(one.length);
    const Feature& feature = *one.feature;
    if (feature.kind == Feature::Kind::kText) {
        const std::string text = feature.readText();
        std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
        return bytes;
    }
    auto number = feature.readInteger ? static_cast<std::uint64_t>(feature.readInteger()) : 0;
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
    if (m_layout.bigEndian)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

void FeatureMap::Store(const Register& one, std::span<const std::uint8_t> bytes) const {
    std::vector<std::uint8_t> ordered(bytes.begin(), bytes.end());
    if (!m_layout.bigEndian)
        std::reverse(ordered.begin(), ordered.end());
    std::uint64_t number = 0;
    for (const std::uint8_t byte : ordered)
        number = number << 8 | byte;
    const auto value = static_cast<std::int64_t>(number);
    const Feature& feature = *one.feature;
    if (feature.kind == Feature::Kind::kInteger && (value < feature.minimum || value > feature.maximum))
        throw GenTLError(GC_ERR_INVALID_VALUE, fmt::format("{} takes {} to {}, not {}", feature.name, feature.minimum,
                                                           feature.maximum, value));
    const auto isValue = [value](const Feature::Entry& entry) { return entry.value == value; };
    if (feature.kind == Feature::Kind::kEnumeration && std::ranges::none_of(feature.entries, isValue))
        throw GenTLError(GC_ERR_INVALID_VALUE, fmt::format("{} has no entry of value {}", feature.name, value));
    feature.writeInteger(value);
}

/**
 * \brief Read bytes of one or several registers
 * \throw GenTLError INVALID_ADDRESS where a byte is in no register; what a feature throws
 */
void FeatureMap::Read(std::uint64_t address, std::span<std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const auto found = Find(address);
        if (found == m_registers.end())
            throw GenTLError(GC_ERR_INVALID_ADDRESS, fmt::format("There is no register at 0x{:x}", address));
        const std::vector<std::uint8_t> all = BytesOf(found->second);
        const std::size_t offset = static_cast<std::size_t>(address - found->first);
        const std::size_t count = std::min(bytes.size(), all.size() - offset);
        std::copy_n(all.begin() + static_cast<std::ptrdiff_t>(offset), count, bytes.begin());
        bytes = bytes.subspan(count);
        address += count;
    }
}

/**
 * \brief Write bytes of one register; the others keep what they are
 * \throw GenTLError INVALID_ADDRESS, ACCESS_DENIED where nothing may be written, INVALID_VALUE
 */
void FeatureMap::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) const {
    const auto found = Find(address);
    const std::uint64_t offset = found != m_registers.end() ? address - found->first : 0;
    if (found == m_registers.end() || bytes.size() > found->second.length - offset)
        throw GenTLError(GC_ERR_INVALID_ADDRESS,
                         fmt::format("There is no register of {} bytes at 0x{:x}", bytes.size(), address));
    if (!found->second.feature->writeInteger)
        throw GenTLError(GC_ERR_ACCESS_DENIED, found->second.feature->name + " can't be written");
    std::vector<std::uint8_t> all(found->second.length);
    if (bytes.size() != all.size())
        all = BytesOf(found->second);
    std::copy(bytes.begin(), bytes.end(), all.begin() + static_cast<std::ptrdiff_t>(offset));
    Store(found->second, all);
}

std::string FeatureMap::SelectedBy(const std::string& name) const {
    std::string text;
    for (const Feature& feature : m_features)
        if (feature.selector == name)
            text += fmt::format("<pSelected>{}</pSelected>", feature.name);
    return text;
}

std::string FeatureMap::NodeOf(std::uint64_t address, const Register& one) const {
    const Feature& feature = *one.feature;
    const std::string reg = feature.name + "_Register";
    const auto integerRegister = [&] { return RegisterNode("IntReg", reg, address, one.length, feature, m_layout); };
    switch (feature.kind) {
        case Feature::Kind::kText:
            return Head("StringReg", feature) +
                   fmt::format(
                       "<Address>0x{:x}</Address><Length>{}</Length><AccessMode>RO</AccessMode><pPort>{}</pPort>"
                       "<Cachable>NoCache</Cachable></StringReg>\n",
                       address, one.length, m_layout.portName);
        case Feature::Kind::kInteger:
            return Head("Integer", feature) + fmt::format("<pValue>{}</pValue>", reg) + IntegerLimits(feature) +
                   SelectedBy(feature.name) + "</Integer>\n" + integerRegister();
        case Feature::Kind::kBoolean:
            return Head("Boolean", feature) + fmt::format("<pValue>{}</pValue></Boolean>\n", reg) + integerRegister();
        case Feature::Kind::kEnumeration:
            return Head("Enumeration", feature) + EntriesOf(feature) +
                   fmt::format("<pValue>{}</pValue>{}</Enumeration>\n", reg, SelectedBy(feature.name)) +
                   integerRegister();
        case Feature::Kind::kCommand:
            return Head("Command", feature) +
                   fmt::format("<pValue>{}</pValue><CommandValue>1</CommandValue></Command>\n", reg) +
                   integerRegister();
    }
    return {};
}

std::string FeatureMap::Nodes() const {
    std::string text;
    for (const auto& [address, one] : m_registers)
        text += NodeOf(address, one);
    return text;
}

std::string FeatureMap::Categories(std::vector<std::string>& names) const {
    std::string text;
    for (const Feature& feature : m_features)
        if (std::ranges::find(names, feature.category) == names.end())
            names.push_back(feature.category);
    for (const std::string& name : names) {
        text += fmt::format("  <Category Name=\"{}\" NameSpace=\"Standard\">", name);
        for (const Feature& feature : m_features)
            if (feature.category == name)
                text += fmt::format("<pFeature>{}</pFeature>", feature.name);
        text += "</Category>\n";
    }
    return text;
}

std::string DescriptionOf(const FeatureMap& map, const std::string& modelName, const std::string& portName) {
    std::vector<std::string> names;
    const std::string categories = map.Categories(names);
    std::string root;
    for (const std::string& name : names)
        root += fmt::format("<pFeature>{}</pFeature>", name);
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<RegisterDescription ModelName=\"{0}\" VendorName=\"{1}\" ToolTip=\"{0} of a GenTL producer\" "
        "StandardNameSpace=\"GEV\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
        "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" "
        "ProductGuid=\"6E3B4C1A-52D7-4F0E-9A38-1D7C05B2E846\" VersionGuid=\"A94D2E70-8B16-4C5F-B3E1-70F6D8C29A15\" "
        "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" "
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
        "xsi:schemaLocation=\"http://www.genicam.org/GenApi/Version_1_1 "
        "http://www.genicam.org/GenApi/GenApiSchema_Version_1_1.xsd\">\n"
        "  <Category Name=\"Root\" NameSpace=\"Standard\">{2}</Category>\n{3}{4}"
        "  <Port Name=\"{5}\" NameSpace=\"Standard\"></Port>\n"
        "</RegisterDescription>\n",
        modelName, kVendor, root, categories, map.Nodes(), portName);
}

}  // namespace gentl
