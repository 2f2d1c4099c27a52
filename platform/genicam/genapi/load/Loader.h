/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads a description
 */
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "load/SourceText.h"
#include "load/XmlScanner.h"
#include "schema/DescriptionBuilder.h"
#include "schema/Text.h"

namespace GenApi {

/// The largest description: positions in it are kept in 32 bits.
constexpr std::size_t kMaxDescription = std::size_t{512} * 1024 * 1024;

/// A text that is to be read, and where it comes from: a file, or the device for a text. Stays while it is read.
struct SourceFile {
    const std::string& xml;
    std::string_view name;
};

/// Makes one description of one document and one that is injected into it. Reentrant, used once.
class Loader {
public:
    /// Reads a document. Throws RuntimeException with file, line and column when it is none.
    void Load(const SourceFile& file) { Read(file, false); }
    /// Merges a second document, or bare nodes, into the one that has been loaded.
    void Inject(const SourceFile& file) { Read(file, true); }
    /// Resolves the references between the nodes.
    std::shared_ptr<const Description> Finish();
    /// What was found wrong up to now.
    std::span<const LoadWarning> Warnings() const noexcept { return m_builder.Built().Warnings(); }

private:
    struct Nested {
        std::uint32_t node;
        ETag tag;
        std::uint32_t position;
    };

    /// A text of an element, and the kinds of nodes, a bit each, in which it was found right.
    struct Said {
        std::uint32_t value = 0;
        std::uint32_t kinds = 0;
    };

    void Read(const SourceFile& file, bool isInjected);
    void ReadDocument();
    void CheckDocumentType();
    void ReadRoot();
    bool ReadRootAttribute(std::string_view name, const GenICam::gcstring& value);
    void ReadSchema(std::size_t position);
    void CheckNameSpace(std::size_t position);
    std::optional<std::string_view> AttributeOf(std::string_view name) const;

    void LoadNodes(int depth);
    void LoadElement(int depth);
    void LoadNode(ENodeKind kind);
    std::uint32_t MakeNode(ENodeKind kind, std::uint32_t enclosing);
    void LoadContent(std::uint32_t node);
    ETag TagOfChild();
    void LoadInner(std::uint32_t node);
    void AddNested(std::uint32_t node, std::size_t first);
    void LoadNodeAttributes(std::uint32_t node);
    void LoadProperty(ETag tag, std::uint32_t node);
    void CheckProperty(const Property& property, std::string_view text, std::size_t position, std::uint32_t node);
    void CheckWord(const Property& property, std::string_view text, std::size_t position, std::uint32_t node);
    void WarnAboutBlanks(std::string_view raw, std::size_t position, std::uint32_t node, std::string_view what);
    void LoadPropertyAttributes(ETag tag, std::uint32_t node);
    bool EnterName(std::uint32_t node, std::size_t position);
    void Replace(std::uint32_t node);

    void Add(const Property& property, std::size_t position);
    Property MakeProperty(ETag tag, std::string_view raw, bool mayRefer);
    std::string_view Clean(std::string_view raw, bool mayRefer);
    std::string_view Decoded(std::string_view raw);
    void Decode(std::string_view raw);
    std::size_t DecodeReference(std::string_view rest);
    void Repair(std::size_t position);
    std::string_view ReadText();
    std::string_view ReadMixedText();
    std::string_view ReadPieces(std::string_view element, std::string_view first, EXml found);
    void WarnAboutReference(std::uint32_t node, const Property& property, std::size_t position, bool isOfInjected);
    void MarkFeatures();
    template <class Use>
    void ForEachAttribute(Use&& use);
    bool IsNewAttribute(std::string_view name, std::size_t count);
    void Warn(EWarningKind kind, std::size_t position, std::string_view node,
              std::initializer_list<std::string_view> message);
    void Keep(EWarningKind kind, std::size_t position, std::string_view node, const std::string& message);
    [[noreturn]] void Refuse(std::size_t position, const std::string& message);
    std::size_t PositionIn(std::string_view text) const noexcept;
    std::size_t PositionOf(std::string_view piece) const noexcept { return m_source->PositionOf(piece.data()); }
    std::string_view NameOf(std::uint32_t node) const noexcept { return m_builder.Built().NameOf(node); }

    DescriptionBuilder m_builder;
    std::vector<std::unique_ptr<SourceText>> m_sources;  // the description and what is injected
    SourceText* m_source = nullptr;                      // the one that is being read
    XmlScanner* m_scanner = nullptr;
    std::string m_fileName;
    // Of the nodes that are being read, each within the one before: their elements and where those stand.
    std::vector<Property> m_pending;
    std::vector<std::uint32_t> m_pendingPositions;
    std::vector<Nested> m_nested;
    PlainArray<std::uint32_t> m_positions;  // of each property, in its source
    std::size_t m_injectedFrom = SIZE_MAX;  // the first property of what is injected
    std::uint32_t m_firstNode = 0;          // of the document that is being read
    bool m_isInjected = false;
    std::unordered_set<std::string_view> m_attributeNames;  // of the element that is being read
    std::string m_joined;                                   // the text of an element that comes in several pieces
    std::size_t m_textPosition = 0;                         // of that element
    std::string m_decoded;                                  // a text without character references
    std::unordered_map<std::uint32_t, std::int64_t> m_priorities;
    std::array<Said, kTags> m_right{};  // of each kind of element, what was found right last
    // Which element came last behind which, in each kind of node: nodes of one kind are mostly written alike.
    std::array<std::array<ETag, kTags>, kKinds> m_followers{};
};

// XML allows an attribute once; of several the first counts.
template <class Use>
void Loader::ForEachAttribute(Use&& use) {
    std::size_t count = 0;
    for (const XmlAttribute& attribute : m_scanner->Attributes()) {
        const std::size_t before = count++;
        if (before == 0 || IsNewAttribute(attribute.name, before))
            use(attribute);
        else
            Warn(wkSyntax, PositionOf(attribute.name), "", {m_scanner->Name(), " has two attributes ", attribute.name});
    }
}

}  // namespace GenApi
