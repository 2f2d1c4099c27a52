/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what the transport layer silently passes over in a port configuration
 */
#include "configuration/ConfigurationRemarks.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "clbindings/PortEntry.h"
#include "clbindings/PortEntryReader.h"
#include "output/Text.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace tools {

namespace {

using Vanto::PortEntry;
using Vanto::PortField;
using Vanto::ToLocalText;

const std::vector<std::string>& FieldNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> result;
        for (const PortField& field : Vanto::kPortFields)
            result.emplace_back(field.name);
        return result;
    }();
    return names;
}

// The place of the first character that is no blank in a text that begins at a place.
Place FirstLetter(Place place, std::string_view text) {
    for (const char character : text.substr(0, text.find_first_not_of(" \t\r\n")))
        place = character == '\n' ? Place{place.line + 1, 1} : Place{place.line, place.column + 1};
    return place;
}

/// Goes through a document in its order.
class Reader {
public:
    Reader(const Vanto::BoundedXmlParser& parser, Findings& findings) : m_parser(parser), m_findings(findings) {}

    // Elements may be nested deeper than the stack has room for calls.
    void Read(const xercesc::DOMNode& root) {
        for (const xercesc::DOMNode* node = &root; node != nullptr;) {
            Enter(*node);
            const xercesc::DOMNode* next = node->getFirstChild();
            for (; next == nullptr && node != nullptr; node = node == &root ? nullptr : node->getParentNode()) {
                Leave(*node);
                next = node == &root ? nullptr : node->getNextSibling();
                if (next != nullptr)
                    break;
            }
            node = next;
        }
    }

private:
    /// A Port whose end has not come yet. They may be nested; each is an entry of its own.
    struct OpenPort {
        explicit OpenPort(std::size_t elementDepth) : depth(elementDepth) {}
        std::size_t depth;
        PortEntry entry;
        bool reportedText = false;
        const PortField* child = nullptr;  ///< the field whose text is being passed
    };

    void Enter(const xercesc::DOMNode& node) {
        if (node.getNodeType() == xercesc::DOMNode::ELEMENT_NODE)
            Start(static_cast<const xercesc::DOMElement&>(node));
        else if (Vanto::IsText(node))
            Text(node);
    }

    void Leave(const xercesc::DOMNode& node) {
        if (node.getNodeType() == xercesc::DOMNode::ELEMENT_NODE)
            End();
    }

    void Report(Severity severity, std::string text, std::string hint = {}) {
        m_findings.Add({severity, m_here, std::move(text), std::move(hint)});
    }

    void Start(const xercesc::DOMElement& element) {
        ++m_depth;
        m_here = m_parser.PlaceOf(element);
        const std::string name = ToLocalText(element.getNodeName());
        if (name == "Port")
            StartPort(element);
        else if (!m_ports.empty())
            StartInsidePort(name);
        else if (m_depth > 1)
            StartOutsidePort(name);
    }

    void StartPort(const xercesc::DOMElement& element) {
        if (const xercesc::DOMNode* attribute = element.getAttributes()->item(0))
            Report(Severity::kWarning,
                   fmt::format("attribute '{}' of Port is ignored", Printable(ToLocalText(attribute->getNodeName()))),
                   "Settings are elements inside Port.");
        if (!m_ports.empty())
            Report(Severity::kWarning, "a Port inside another Port is an entry of its own",
                   "Close the Port above first.");
        m_ports.emplace_back(m_depth);
    }

    void StartInsidePort(std::string_view name) {
        OpenPort& port = m_ports.back();
        if (m_depth != port.depth + 1) {
            if (port.child != nullptr)
                Report(Severity::kWarning,
                       fmt::format("element '{}' inside {}: only its text counts", Printable(name), port.child->name));
            return;
        }
        port.child = Vanto::FindPortField(name);
        if (port.child == nullptr)
            return ReportUnknownChild(name);
        Place& place = (port.entry.*port.child->value).place;
        if (place.line != 0)
            Report(Severity::kWarning,
                   fmt::format("second {} in this Port; it replaces the one of line {}", port.child->name, place.line));
        place = m_here;
    }

    void ReportUnknownChild(std::string_view name) {
        const std::string meant = ClosestWord(name, FieldNames());
        if (!meant.empty() && EqualsIgnoringCase(name, meant))
            Report(Severity::kError, fmt::format("element '{}' is ignored: its name is {}", Printable(name), meant),
                   "Upper and lower case count.");
        else
            Report(meant.empty() ? Severity::kWarning : Severity::kError,
                   fmt::format("unknown element '{}' in Port is ignored", Printable(name)),
                   DidYouMean(name, FieldNames()));
    }

    void StartOutsidePort(std::string_view name) {
        static const std::vector<std::string> kPort{"Port"};
        if (EqualsIgnoringCase(name, "Port"))
            Report(Severity::kError, fmt::format("element '{}' is ignored: its name is Port", Printable(name)),
                   "Upper and lower case count.");
        else if (!ClosestWord(name, kPort).empty())
            Report(Severity::kError, fmt::format("unknown element '{}' is ignored", Printable(name)),
                   DidYouMean(name, kPort));
        else if (ClosestWord(name, FieldNames()) == name)
            Report(Severity::kError, fmt::format("{} outside a Port is ignored", Printable(name)));
    }

    void Text(const xercesc::DOMNode& node) {
        if (m_ports.empty() || m_depth != m_ports.back().depth || m_ports.back().reportedText)
            return;
        const std::string text = ToLocalText(node.getNodeValue());
        if (Trimmed(text).empty())
            return;
        m_ports.back().reportedText = true;
        m_here = FirstLetter(m_parser.PlaceOf(node), text);
        Report(Severity::kWarning, "text directly inside Port is ignored");
    }

    void End() {
        if (!m_ports.empty() && m_depth == m_ports.back().depth)
            m_ports.pop_back();
        else if (!m_ports.empty() && m_depth == m_ports.back().depth + 1)
            m_ports.back().child = nullptr;
        --m_depth;
    }

    const Vanto::BoundedXmlParser& m_parser;
    Findings& m_findings;
    std::vector<OpenPort> m_ports;
    std::size_t m_depth = 0;
    Place m_here;
};

}  // namespace

/**
 * \brief Report elements, attributes and texts of a document that have no effect, or another than they seem to have
 * \param[in] parser Has parsed a document, or what stood above a fault
 * \param[in,out] findings Gets what was found
 */
void AddRemarks(const Vanto::BoundedXmlParser& parser, Findings& findings) {
    if (parser.HasRoot())
        Reader(parser, findings).Read(*parser.GetDocument()->getDocumentElement());
}

}  // namespace tools
