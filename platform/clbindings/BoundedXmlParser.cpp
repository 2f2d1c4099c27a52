/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */

#include "clbindings/BoundedXmlParser.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include "clbindings/BoundedXmlFile.h"
#include "clbindings/XercesGuard.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

// Characters around names, values and texts.
constexpr std::uint64_t kElementMarks = 3;      // </>
constexpr std::uint64_t kAttributeMarks = 4;    // a blank, =""
constexpr std::uint64_t kCommentMarks = 7;      // <!---->
constexpr std::uint64_t kInstructionMarks = 4;  // <??>

std::uint64_t Length(const XMLCh* text) {
    return xercesc::XMLString::stringLen(text);
}

}  // namespace

BoundedXmlParser::BoundedXmlParser() {
    m_limits.setEntityExpansionLimit(kMaxEntityExpansions);
    setSecurityManager(&m_limits);
    setLoadExternalDTD(false);
    setDisableDefaultEntityResolution(true);
    setErrorHandler(&m_thrower);
}

/**
 * \brief Parse a file
 * \param[in] path In the local code page
 * \throw RuntimeException The file is malformed, longer than BoundedXmlFile::kMaxSize, or no plain file
 */
void BoundedXmlParser::ParseFile(const std::string& path) {
    Guarded("Failed to parse CL binding file", [&] { parse(BoundedXmlFile(path)); });
}

/// Where the parser is.
base::Place BoundedXmlParser::Here() const {
    const xercesc::Locator& locator = *getScanner()->getLocator();
    return {locator.getLineNumber(), locator.getColumnNumber()};
}

/// Where an element or text of the document begins. What an entity brought begins behind the reference to it.
base::Place BoundedXmlParser::PlaceOf(const xercesc::DOMNode& node) const {
    const auto found = m_places.find(&node);
    return found == m_places.end() ? base::Place() : found->second;
}

// Default values of attributes are repeated with each element, and entities with each reference to them. Whatever
// becomes a node counts as much as its shortest text, so that no file that fits without them is refused.
void BoundedXmlParser::Count(std::uint64_t characters) {
    m_size += characters;
    if (m_size > BoundedXmlFile::kMaxSize)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: its entities and default values expand to more than %u characters.",
            BoundedXmlFile::kMaxSize);
}

void BoundedXmlParser::startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount,
                                    bool isEmpty, bool isRoot) {
    std::uint64_t size = kElementMarks + Length(declaration.getFullName());
    for (XMLSize_t index = 0; index < attributeCount; ++index) {
        const xercesc::XMLAttr& attribute = *attributes.elementAt(index);
        size += kAttributeMarks + Length(attribute.getQName()) + Length(attribute.getValue());
    }
    Count(size);
    XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    m_end = Here();
}

// The library tells of an element when it has passed its tag, which begins where that before it ended.
xercesc::DOMElement* BoundedXmlParser::createElement(const XMLCh* name) {
    xercesc::DOMElement* const element = XercesDOMParser::createElement(name);
    m_places.emplace(element, m_end);
    return element;
}

xercesc::DOMText* BoundedXmlParser::createText(const XMLCh* text, XMLSize_t length) {
    xercesc::DOMText* const node = XercesDOMParser::createText(text, length);
    m_places.emplace(node, m_end);
    return node;
}

void BoundedXmlParser::endElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                                  const XMLCh* prefix) {
    XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
    m_end = Here();
}

void BoundedXmlParser::endEntityReference(const xercesc::XMLEntityDecl& declaration) {
    XercesDOMParser::endEntityReference(declaration);
    m_end = Here();
}

void BoundedXmlParser::error(unsigned int code, const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type,
                             const XMLCh* text, const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                             XMLFileLoc column) {
    const bool isOfXml = xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain);
    if (type != xercesc::XMLErrorReporter::ErrType_Warning)
        m_fault = Fault{isOfXml ? code : +xercesc::XMLErrs::XMLException_Fatal, ToLocalText(text), {line, column}};
    XercesDOMParser::error(code, domain, type, text, systemId, publicId, line, column);
}

void BoundedXmlParser::docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) {
    Count(length);
    XercesDOMParser::docCharacters(characters, length, isCData);
    m_end = Here();
}

void BoundedXmlParser::ignorableWhitespace(const XMLCh* characters, XMLSize_t length, bool isCData) {
    Count(length);
    XercesDOMParser::ignorableWhitespace(characters, length, isCData);
    m_end = Here();
}

void BoundedXmlParser::docComment(const XMLCh* text) {
    Count(kCommentMarks + Length(text));
    XercesDOMParser::docComment(text);
    m_end = Here();
}

void BoundedXmlParser::docPI(const XMLCh* target, const XMLCh* data) {
    Count(kInstructionMarks + Length(target) + Length(data));
    XercesDOMParser::docPI(target, data);
    m_end = Here();
}

/**
 * \brief Take note of default values, before the first of them is read
 * \throw RuntimeException They may hold entities. The XML library does not count how often it expands those in default
 *        values, so that a few lines of them keep it busy for years.
 */
void BoundedXmlParser::startAttList(const xercesc::DTDElementDecl& declaration) {
    if (m_hasEntities)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: attributes of '%s' are declared behind entities, which is not allowed.",
            ToLocalText(declaration.getFullName()));
    XercesDOMParser::startAttList(declaration);
}

/**
 * \brief Take note of an entity that the document declares
 * \throw RuntimeException It is a parameter entity. The XML library does not count how often those are expanded, so
 *        that a few lines of them keep it busy for years. Or it is so long that the allowed number of references to it
 *        makes more than the longest file, which an attribute's value could then be.
 */
void BoundedXmlParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                                  const bool isIgnored) {
    if (isParameter)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: the parameter entity '%s' is not allowed.",
            ToLocalText(declaration.getName()));
    if (declaration.getValueLen() > kMaxEntityLength)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: the entity '%s' is longer than %u characters.",
            ToLocalText(declaration.getName()), kMaxEntityLength);
    m_hasEntities = true;
    XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

}  // namespace Vanto
