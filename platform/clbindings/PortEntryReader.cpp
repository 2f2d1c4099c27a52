/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds the ports of a port configuration that was parsed
 */

#include "clbindings/PortEntryReader.h"

#include <string>
#include <string_view>
#include <utility>
#include <xercesc/dom/DOM.hpp>

#include "clbindings/XercesGuard.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

// The node after another in document order, below a root; null at the end.
const xercesc::DOMNode* NextBelow(const xercesc::DOMNode& root, const xercesc::DOMNode* node) {
    if (const xercesc::DOMNode* child = node->getFirstChild())
        return child;
    for (; node != &root; node = node->getParentNode()) {
        if (const xercesc::DOMNode* sibling = node->getNextSibling())
            return sibling;
    }
    return nullptr;
}

// Reads the elements of one document.
class EntryReader {
public:
    explicit EntryReader(const BoundedXmlParser& parser) : m_parser(parser) {}

    PortEntry Read(const xercesc::DOMElement& port) {
        PortEntry entry;
        entry.place = m_parser.PlaceOf(port);
        for (const auto* child = port.getFirstElementChild(); child != nullptr; child = child->getNextElementSibling())
            if (const PortField* field = FindPortField(ToLocalText(child->getNodeName())))
                entry.*field->value = {TrimmedContent(*child), m_parser.PlaceOf(*child)};
        return entry;
    }

private:
    // More than any document of the greatest length has; only ports within ports are read more than once.
    static constexpr std::size_t kMaxNodes = std::size_t{1} << 21;

    // The text of all descendants, trimmed. The XML library's own operation for it calls itself for each level of
    // elements, of which a file may have more than the stack has room for.
    std::string TrimmedContent(const xercesc::DOMElement& element) {
        std::string text;
        for (const xercesc::DOMNode* node = &element; node != nullptr; node = NextBelow(element, node)) {
            if (++m_nodes > kMaxNodes)
                throw VANTO_EXCEPTION(RuntimeException, kSource)(
                    "Failed to process CL binding file: too many ports are nested within each other.");
            if (IsText(*node))
                text += ToLocalText(node->getNodeValue());
        }
        constexpr char kWhiteSpace[] = " \t\r\n\v\f";
        const std::size_t first = text.find_first_not_of(kWhiteSpace);
        if (first == std::string::npos)
            return {};
        return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
    }

    const BoundedXmlParser& m_parser;
    std::size_t m_nodes = 0;
};

}  // namespace

/// Whether a node is a text, entities expanded, and not one of elements.
bool IsText(const xercesc::DOMNode& node) {
    return node.getNodeType() == xercesc::DOMNode::TEXT_NODE ||
           node.getNodeType() == xercesc::DOMNode::CDATA_SECTION_NODE;
}

/**
 * \brief Find the ports of a document, at any depth
 * \return An entry for each Port element, in document order, those without an ID included
 * \throw RuntimeException There is no document, it has no root, or its ports are nested without reason
 * \context Any thread, with the XML library initialised
 */
PortEntries ReadPortEntries(const BoundedXmlParser& parser) {
    const xercesc::DOMDocument* document = CheckedDocument(parser.GetDocument());
    const xercesc::DOMNodeList* ports = document->getElementsByTagName(FromLocalText("Port").c_str());
    // Each question for the length goes through the whole document.
    const XMLSize_t length = ports->getLength();
    EntryReader reader(parser);
    PortEntries entries;
    for (XMLSize_t index = 0; index < length; ++index)
        entries.push_back(reader.Read(*static_cast<const xercesc::DOMElement*>(ports->item(index))));
    return entries;
}

}  // namespace Vanto
