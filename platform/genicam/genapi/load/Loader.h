/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loads a description into a node map
 */
#pragma once

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/NodeMap.h"
#include "load/SourceText.h"
#include "schema/Text.h"

namespace GenApi {

/// The largest description: positions in it are kept in 32 bits.
constexpr std::size_t kMaxDescription = std::size_t{512} * 1024 * 1024;

/// Builds the nodes of one map from one description and one that is injected into it. Reentrant, used once.
class Loader {
public:
    explicit Loader(CNodeMap& map) : m_map(map) {}

    /// Reads a description. Throws RuntimeException with file, line and column when it is none.
    void Load(std::string xml, const std::string& fileName) { Read(std::move(xml), fileName, false); }
    /// Merges a second description, or bare nodes, into the one that has been loaded.
    void Inject(std::string xml, const std::string& fileName) { Read(std::move(xml), fileName, true); }
    /// Resolves the references between the nodes.
    void Finish();

private:
    struct Nested {
        std::uint32_t node;
        ETag tag;
        pugi::xml_node element;
    };

    void Read(std::string xml, const std::string& fileName, bool isInjected);
    void Parse(pugi::xml_document& document);
    void CheckDocumentType(const pugi::xml_document& document);
    pugi::xml_node RootOf(const pugi::xml_document& document);
    void ReadRoot(pugi::xml_node root);
    bool ReadRootAttribute(std::string_view name, const GenICam::gcstring& value);
    void ReadSchema(pugi::xml_node root);
    void CheckNameSpace(pugi::xml_node root);

    void LoadNodes(pugi::xml_node parent, int depth);
    void LoadNode(pugi::xml_node element, ENodeKind kind);
    CNode& MakeNode(pugi::xml_node element, ENodeKind kind, CNode* enclosing);
    void LoadContent(pugi::xml_node element, CNode& node);
    void LoadNested(const Nested& inner, const CNode& outer);
    void LoadNodeAttributes(pugi::xml_node element, CNode& node);
    void LoadProperty(pugi::xml_node element, ETag tag, CNode& node);
    void CheckProperty(pugi::xml_node element, ETag tag, std::string_view text, const CNode& node);
    void WarnAboutBlanks(std::string_view raw, std::size_t position, const CNode& node, std::string_view what);
    void LoadPropertyAttributes(pugi::xml_node element, ETag tag, const CNode& node);
    bool EnterName(CNode& node, pugi::xml_node element);
    void Replace(CNode& node);

    void Add(ETag tag, std::string_view raw, std::size_t position, std::uint32_t node = kNoNode);
    void Store(std::string_view raw, std::size_t position, std::uint32_t& text, std::uint32_t& length);
    void Decode(std::string_view raw, std::size_t position);
    std::size_t DecodeReference(std::string_view rest, std::size_t position);
    void Repair(std::size_t position);
    std::string_view TextOf(pugi::xml_node element);
    void Resolve(CNode& node, Property& property);
    void MarkFeatures();
    template <class Use>
    void ForEachAttribute(pugi::xml_node element, Use&& use);
    bool IsNewAttribute(pugi::xml_node element, std::string_view name, std::size_t count);
    void Warn(EWarningKind kind, std::size_t position, std::string_view node, const std::string& message);
    [[noreturn]] void Refuse(std::size_t position, const std::string& message);
    std::size_t PositionOf(pugi::xml_node element) const;

    CNodeMap& m_map;
    std::vector<std::unique_ptr<SourceText>> m_sources;  // the description and what is injected
    SourceText* m_source = nullptr;                      // the one that is being read
    std::vector<std::uint32_t> m_positions;              // of each property, in its source
    std::size_t m_injectedFrom = 0;                      // the first property of what is injected
    std::uint32_t m_firstNode = 0;                       // of the description that is being read
    bool m_isInjected = false;
    std::unordered_set<std::string_view> m_attributeNames;  // of the element that is being read
    std::string m_joined;                                   // the text of an element that comes in several pieces
    std::string m_decoded;                                  // a text without character references
    std::unordered_map<std::uint32_t, std::int64_t> m_priorities;
};

// XML allows an attribute once; of several the first counts.
template <class Use>
void Loader::ForEachAttribute(pugi::xml_node element, Use&& use) {
    m_attributeNames.clear();
    std::size_t count = 0;
    for (const pugi::xml_attribute attribute : element.attributes()) {
        const std::string_view name = attribute.name();
        if (IsNewAttribute(element, name, count++))
            use(attribute, name);
        else
            Warn(wkSyntax, m_source->PositionOf(attribute.name()), "",
                 Shortened(element.name()) + " has two attributes " + Shortened(name));
    }
}

}  // namespace GenApi
