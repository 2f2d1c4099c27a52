/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera description as its file says it, with the place of everything
 */
#include "description/DescriptionModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <pugixml.hpp>

#include "Base/GCException.h"
#include "GenApi/NodeMapRef.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

/// Finds line and column of an offset; offsets come in ascending order nearly always, so it goes on where it was.
class Places {
public:
    explicit Places(std::string_view text) : m_text(text) {}

    Place At(std::ptrdiff_t offset) {
        if (offset < 0)
            return {};
        const std::size_t wanted = std::min(static_cast<std::size_t>(offset), m_text.size());
        if (wanted < m_position) {
            m_position = 0;
            m_line = m_column = 1;
        }
        // The column goes along: a file may be one line of megabytes.
        for (; m_position < wanted; ++m_position) {
            const auto byte = static_cast<unsigned char>(m_text[m_position]);
            if (byte == '\n') {
                ++m_line;
                m_column = 1;
            } else if ((byte & 0xC0) != 0x80) {  // not the rest of a UTF-8 character
                ++m_column;
            }
        }
        return {m_line, m_column};
    }

private:
    std::string_view m_text;
    std::size_t m_position = 0;
    std::uint64_t m_line = 1;
    std::uint64_t m_column = 1;
};

/// The name of an element without the prefix of a name space ("g:Category").
std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// Kinds that a formula of an address may lie in.
bool IsRegisterKind(std::string_view kind) {
    constexpr std::array<std::string_view, 10> kKinds{"IntReg",         "MaskedIntReg", "FloatReg", "StringReg",
                                                      "Register",       "StructReg",    "ConfRom",  "StructEntry",
                                                      "AdvFeatureLock", "SmartFeature"};
    return std::find(kKinds.begin(), kKinds.end(), kind) != kKinds.end();
}

bool IsGroup(std::string_view element) {
    const std::string_view kind = LocalName(element);
    return kind == "Group" || kind == "RegisterDescription";
}

/// The name without the prefix of a name space ("Std::Width").
std::string_view PlainName(std::string_view name) {
    const std::size_t colons = name.find("::");
    return colons == std::string_view::npos ? name : name.substr(colons + 2);
}

/**
 * \brief Let the node-map engine decide whether a text is a description
 * \throw ToolError It is none; says line and column
 *
 * What no camera could be opened with is no description here either, however much of it could be read.
 */
void RequireLoadable(const std::string& text) {
    try {
        GenApi::CNodeMapRef("")._LoadXMLFromString(GenICam::gcstring(text));
    } catch (const GenICam::GenericException& failure) {
        unsigned line = 0;
        unsigned column = 0;
        int place = 0;
        const std::string reason = failure.GetDescription();
        std::sscanf(reason.c_str(), "(%u,%u): %n", &line, &column, &place);
        if (place == 0)
            throw ToolError(reason);
        throw ToolError(
            fmt::format("line {}, column {}: {}", line, column, reason.substr(static_cast<std::size_t>(place))));
    }
}

}  // namespace

/// Walks the parsed file.
class DescriptionReader {
public:
    DescriptionReader(DescriptionModel& model, std::string_view text) : m_model(model), m_places(text) {}

    void Read(const pugi::xml_document& document) {
        const pugi::xml_node root = document.document_element();
        for (const pugi::xml_attribute& attribute : root.attributes())
            m_model.m_attributes[attribute.name()] = attribute.value();
        ReadNodesOf(root);
    }

private:
    Place PlaceOf(const pugi::xml_node& node) { return m_places.At(node.offset_debug() - 1); }

    /// Groups may be nested; a hostile file nests them deeply, so no recursion.
    void ReadNodesOf(const pugi::xml_node& root) {
        pugi::xml_node node = root.first_child();
        while (node) {
            if (node.type() == pugi::node_element && IsGroup(node.name()) && node.first_child()) {
                node = node.first_child();
                continue;
            }
            if (node.type() == pugi::node_element && !IsGroup(node.name()))
                ReadNode(node);
            while (!node.next_sibling() && node.parent() != root)
                node = node.parent();
            node = node.next_sibling();
        }
    }

    std::size_t ReadNode(const pugi::xml_node& xml) {
        const std::size_t index = m_model.m_nodes.size();
        m_model.m_nodes.push_back({std::string(LocalName(xml.name())),
                                   std::string(Trimmed(xml.attribute("Name").value())),
                                   PlaceOf(xml),
                                   {},
                                   {},
                                   xml.attribute("NameSpace").value()});
        const bool isEntry = m_model.m_nodes[index].kind == "EnumEntry";
        const std::string& name = m_model.m_nodes[index].name;
        // Entries of several enumerations may have one name, so they are not found by it.
        if (!name.empty() && !isEntry)
            m_model.m_byName.try_emplace(name, index);
        for (const pugi::xml_node& child : xml.children())
            if (child.type() == pugi::node_element)
                ReadChild(index, child);
        InheritElements(index);
        return index;
    }

    void ReadChild(std::size_t index, const pugi::xml_node& child) {
        const std::string_view name = LocalName(child.name());
        const std::string kind = m_model.m_nodes[index].kind;
        if (name == "StructEntry" && kind == "StructReg") {
            m_entries.push_back({index, ReadNode(child)});
        } else if (name == "EnumEntry" && kind == "Enumeration") {
            const std::size_t entry = ReadNode(child);
            m_model.m_nodes[index].entries.push_back(entry);
            m_model.m_byName.try_emplace("EnumEntry_" + m_model.m_nodes[index].name + "_" + m_model.m_nodes[entry].name,
                                         entry);
        } else if ((name == "IntKey" || name == "TextDesc") && kind == "ConfRom") {
            AddNested(ReadNode(child), "p1212Parser", index);
        } else if ((name == "IntSwissKnife" || name == "IntConverter") && IsRegisterKind(kind)) {
            AddNested(index, "pAddress", ReadNode(child));
        } else {
            AddElement(index, child);
        }
    }

    /// What lies within a node refers to it, or it to that, without a name.
    void AddNested(std::size_t from, const char* element, std::size_t to) {
        const std::size_t inner = std::max(from, to);
        m_model.m_nodes[from].elements.push_back(
            {element, m_model.m_nodes[to].name, {}, m_model.m_nodes[inner].place, to, false});
    }

    /// An entry of a structure takes what it lacks from the structure, wherever that stands.
    void InheritElements(std::size_t structure) {
        while (!m_entries.empty() && m_entries.back().structure == structure) {
            std::vector<NodeElement>& own = m_model.m_nodes[m_entries.back().entry].elements;
            for (NodeElement element : m_model.m_nodes[structure].elements) {
                element.isInherited = true;
                own.push_back(std::move(element));
            }
            m_entries.pop_back();
        }
    }

    void AddElement(std::size_t index, const pugi::xml_node& element) {
        m_model.m_nodes[index].elements.push_back(
            {std::string(LocalName(element.name())), std::string(Trimmed(element.child_value())),
             std::string(Trimmed(element.attribute("Name").value())), PlaceOf(element)});
        // <pIndex Offset=".." pOffset="Node">: an attribute that refers to a node.
        if (const pugi::xml_attribute offset = element.attribute("pOffset"))
            m_model.m_nodes[index].elements.push_back(
                {"pOffset", std::string(Trimmed(offset.value())), {}, PlaceOf(element)});
    }

    struct Entry {
        std::size_t structure;
        std::size_t entry;
    };

    std::vector<Entry> m_entries;  // of the structure that is being read
    DescriptionModel& m_model;
    Places m_places;
};

const NodeElement* DescribedNode::Find(std::string_view element) const {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&](const NodeElement& candidate) { return candidate.name == element; });
    return found != elements.end() ? &*found : nullptr;
}

std::string DescribedNode::Text(std::string_view element) const {
    const NodeElement* found = Find(element);
    return found != nullptr ? found->text : std::string();
}

/**
 * \brief Read a description
 * \param[in] text The XML text, UTF-8; faults that cameras are known for are tolerated
 * \throw ToolError The text is no XML or no camera description; says line and column
 */
DescriptionModel::DescriptionModel(const std::string& text) {
    RequireLoadable(text);
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_trim_pcdata);
    if (!result) {
        const Place place = Places(text).At(result.offset);
        throw ToolError(fmt::format("line {}, column {}: {}", place.line, place.column, result.description()));
    }
    DescriptionReader(*this, text).Read(document);
}

/// The node of a name, with or without the prefix of its name space; null when there is none.
const DescribedNode* DescriptionModel::Find(std::string_view name) const {
    auto found = m_byName.find(name);
    if (found == m_byName.end())
        found = m_byName.find(PlainName(name));
    return found != m_byName.end() ? &m_nodes[found->second] : nullptr;
}

const DescribedNode* DescriptionModel::TargetOf(const NodeElement& element) const {
    if (element.nested != NodeElement::kByName)
        return &m_nodes[element.nested];
    return IsReference(element.name) ? Find(element.text) : nullptr;
}

std::size_t DescriptionModel::IndexOf(const DescribedNode& node) const {
    return static_cast<std::size_t>(&node - m_nodes.data());
}

std::string ShownName(const DescribedNode& node) {
    return node.name.empty() ? fmt::format("{} (line {})", Printable(node.kind), node.place.line)
                             : Printable(node.name);
}

bool IsReference(std::string_view element) {
    return element.size() > 1 && element[0] == 'p' && element[1] >= 'A' && element[1] <= 'Z';
}

}  // namespace tools
