/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera description as its file says it, with the place of everything
 */
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "findings/Findings.h"

namespace tools {

/// One element inside a node: "pValue" with the name of another node, "Unit" with a text.
struct NodeElement {
    static constexpr std::size_t kByName = static_cast<std::size_t>(-1);

    std::string name;
    std::string text;
    std::string label{};  ///< its attribute Name: of a variable, constant or expression
    Place place;
    std::size_t nested = kByName;  ///< of a node that lies within this one: its index
    bool isInherited = false;      ///< of an entry: it stands in the structure around it
};

/// One node of the description.
struct DescribedNode {
    std::string kind;  ///< "Integer", "Category" ...
    std::string name;
    Place place;
    std::vector<NodeElement> elements;
    std::vector<std::size_t> entries;  ///< of an enumeration: indices of its entries
    std::string nameSpace{};           ///< "Standard", "Custom", or empty

    const NodeElement* Find(std::string_view element) const;
    std::string Text(std::string_view element) const;
};

/// The whole description. Nodes keep the order of the file; of two with one name the first is found by it.
class DescriptionModel {
public:
    explicit DescriptionModel(const std::string& text);

    const std::vector<DescribedNode>& Nodes() const noexcept { return m_nodes; }
    const std::map<std::string, std::string>& Attributes() const noexcept { return m_attributes; }
    const DescribedNode* Find(std::string_view name) const;
    /// The node that an element refers to or stands for; null when it is no reference or there is none.
    const DescribedNode* TargetOf(const NodeElement& element) const;
    std::size_t IndexOf(const DescribedNode& node) const;

private:
    friend class DescriptionReader;

    std::vector<DescribedNode> m_nodes;
    std::map<std::string, std::size_t, std::less<>> m_byName;
    std::map<std::string, std::string> m_attributes;
};

/// Whether an element's text names another node: "pValue", "pIsAvailable" ...
bool IsReference(std::string_view element);

/// A name for messages; a node within another one may have none of its own.
std::string ShownName(const DescribedNode& node);

std::string ReadDescriptionText(const std::filesystem::path& path);

}  // namespace tools
