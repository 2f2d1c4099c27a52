/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DescriptionBindingsReader: from the text of a registry file to its entries
 */

#include "bindings/DescriptionBindingsReader.h"

#include <algorithm>
#include <filesystem>
#include <pugixml.hpp>
#include <set>

#include "Base/GCException.h"
#include "Base/GCUtilities.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

constexpr std::uint64_t kMaxFileSize = std::uint64_t{16} * 1024 * 1024;  // far more than anybody writes
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string Quoted(const char* text) {
    return "'" + std::string(text) + "'";
}

std::size_t OffsetOf(const pugi::xml_node& node) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, node.offset_debug()));
}

std::string PatternOf(const pugi::xml_node& node, const char* name) {
    return node.attribute(name).as_string("*");
}

}  // namespace

DescriptionBindingsReader::DescriptionBindingsReader(const std::string& path) : m_path(path) {
    const os::FileStatus status = os::GetFileStatus(path);
    if (status.state == os::FileState::kFound && status.size > kMaxFileSize)
        throw RUNTIME_EXCEPTION("The registry file '%s' is refused: it is larger than 16 MiB.", path);
    m_text = textFileToString(path).str();
    if (m_text.starts_with(kUtf8Mark))
        m_text.replace(0, kUtf8Mark.size(), kUtf8Mark.size(), ' ');
}

/**
 * \brief The entries, in the order of the file
 * \throw RuntimeException The file is malformed
 */
std::vector<DescriptionBindings::Entry> DescriptionBindingsReader::Read() const {
    if (m_text.starts_with("\xFF\xFE") || m_text.starts_with("\xFE\xFF"))
        Fail(0, "the file is in UTF-16; save it as UTF-8");
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(m_text.data(), m_text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result)
        Fail(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, result.offset)), result.description());
    const pugi::xml_node root = FindRoot(document);
    CheckAttributes(root, {});
    std::vector<DescriptionBindings::Entry> entries;
    for (const pugi::xml_node& node : root.children()) {
        if (std::string_view(node.name()) != "Binding")
            Fail(node, "unknown element " + Quoted(node.name()) + " where 'Binding' is expected");
        entries.push_back(ReadEntry(node));
    }
    return entries;
}

pugi::xml_node DescriptionBindingsReader::FindRoot(const pugi::xml_document& document) const {
    const pugi::xml_node root = document.document_element();
    if (std::string_view(root.name()) != "DescriptionBindings")
        Fail(root, "the root element is " + Quoted(root.name()) + " where 'DescriptionBindings' is expected");
    for (const pugi::xml_node& node : document.children()) {
        if (node.type() == pugi::node_element && node != root)
            Fail(node, "there is a second root element " + Quoted(node.name()));
    }
    return root;
}

DescriptionBindings::Entry DescriptionBindingsReader::ReadEntry(const pugi::xml_node& node) const {
    CheckAttributes(node, {"SerialNumber", "ModelName", "VendorName", "DeviceClass", "UseDeviceDescription"});
    DescriptionBindings::Entry entry;
    entry.line = LineOf(OffsetOf(node));
    entry.patterns = {PatternOf(node, "SerialNumber"), PatternOf(node, "ModelName"), PatternOf(node, "VendorName"),
                      PatternOf(node, "DeviceClass")};
    CConfigFileRegistry::CBinding& binding = entry.binding;
    for (const pugi::xml_node& child : node.children()) {
        const std::string_view name = child.name();
        const bool isDescription = name == "Description";
        if (!isDescription && name != "Merge")
            Fail(child, "unknown element " + Quoted(child.name()) + " where 'Description' or 'Merge' is expected");
        bool& isThere = isDescription ? binding.hasDescriptionFile : binding.hasMergeFile;
        if (isThere)
            Fail(child, "a second element " + Quoted(child.name()) + " in one 'Binding'");
        isThere = true;
        (isDescription ? binding.descriptionFile : binding.mergeFile) = gcstring(ReadFile(child));
    }
    binding.useDeviceDescription = ReadUseDeviceDescription(node, !binding.hasDescriptionFile);
    if (!binding.useDeviceDescription && !binding.hasDescriptionFile)
        Fail(node, "'UseDeviceDescription' is false, and no 'Description' takes its place");
    return entry;
}

// A relative path is relative to the registry file.
std::string DescriptionBindingsReader::ReadFile(const pugi::xml_node& node) const {
    CheckAttributes(node, {"File"});
    if (node.first_child())
        Fail(node, Quoted(node.name()) + " must be empty");
    gcstring file(node.attribute("File").as_string());
    GenICam::ReplaceEnvironmentVariables(file);
    if (file.empty())
        Fail(node, Quoted(node.name()) + " names no file in its attribute 'File'");
    return os::ToText(os::ToFilePath(m_path).parent_path() / os::ToFilePath(file.str()));
}

bool DescriptionBindingsReader::ReadUseDeviceDescription(const pugi::xml_node& node, bool otherwise) const {
    const pugi::xml_attribute attribute = node.attribute("UseDeviceDescription");
    if (!attribute)
        return otherwise;
    const std::string_view value = attribute.value();
    if (value != "true" && value != "false")
        Fail(node, "'UseDeviceDescription' is " + Quoted(attribute.value()) + " where true or false is expected");
    return value == "true";
}

void DescriptionBindingsReader::CheckAttributes(const pugi::xml_node& node,
                                                std::initializer_list<const char*> known) const {
    std::set<std::string_view> seen;
    for (const pugi::xml_attribute& attribute : node.attributes()) {
        const std::string_view name = attribute.name();
        if (std::none_of(known.begin(), known.end(), [&](const char* one) { return name == one; }))
            Fail(node, "unknown attribute " + Quoted(attribute.name()) + " of " + Quoted(node.name()));
        if (!seen.insert(name).second)
            Fail(node, "attribute " + Quoted(attribute.name()) + " is there twice");
    }
}

void DescriptionBindingsReader::Fail(const pugi::xml_node& node, const std::string& fault) const {
    Fail(OffsetOf(node), fault);
}

void DescriptionBindingsReader::Fail(std::size_t offset, const std::string& fault) const {
    const std::string_view before = std::string_view(m_text).substr(0, offset);
    const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
    // Columns count characters: the following bytes of one in UTF-8 are not counted.
    const auto column = std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart), before.end(),
                                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    throw RUNTIME_EXCEPTION("The registry file '%s' is malformed in line %u, column %u: %s.", m_path, LineOf(offset),
                            static_cast<std::uint64_t>(column) + 1, fault);
}

std::size_t DescriptionBindingsReader::LineOf(std::size_t offset) const {
    const std::string_view before = std::string_view(m_text).substr(0, offset);
    return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

}  // namespace Vanto
