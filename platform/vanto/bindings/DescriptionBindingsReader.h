/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DescriptionBindingsReader: from the text of a registry file to its entries
 */
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

#include "bindings/DescriptionBindings.h"

namespace pugi {
class xml_document;
class xml_node;
}  // namespace pugi

namespace Vanto {

/// Reads strictly: what it does not know is an error, as a misspelt name would bind the wrong cameras.
class DescriptionBindingsReader {
public:
    explicit DescriptionBindingsReader(const std::string& path);

    std::vector<DescriptionBindings::Entry> Read() const;

private:
    DescriptionBindings::Entry ReadEntry(const pugi::xml_node& node) const;
    std::string ReadFile(const pugi::xml_node& node) const;
    bool ReadUseDeviceDescription(const pugi::xml_node& node, bool otherwise) const;
    void CheckAttributes(const pugi::xml_node& node, std::initializer_list<const char*> known) const;
    pugi::xml_node FindRoot(const pugi::xml_document& document) const;
    [[noreturn]] void Fail(std::size_t offset, const std::string& fault) const;
    [[noreturn]] void Fail(const pugi::xml_node& node, const std::string& fault) const;
    std::size_t LineOf(std::size_t offset) const;

    const std::string m_path;
    std::string m_text;
};

}  // namespace Vanto
