/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */

#include "VantoCLSer/configuration/BoundedXmlParser.h"

#include <xercesc/framework/XMLAttr.hpp>

#include "VantoCLSer/configuration/BoundedXmlFile.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

}  // namespace

BoundedXmlParser::BoundedXmlParser() {
    m_limits.setEntityExpansionLimit(kMaxEntityExpansions);
    setSecurityManager(&m_limits);
    setLoadExternalDTD(false);
    setDisableDefaultEntityResolution(true);
}

// Default values of attributes are repeated with each element, and entities with each reference to them.
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
    constexpr std::uint64_t kShortestElement = 4;  // <a/>
    std::uint64_t size = kShortestElement;
    for (XMLSize_t index = 0; index < attributeCount; ++index)
        size += xercesc::XMLString::stringLen(attributes.elementAt(index)->getValue());
    Count(size);
    XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void BoundedXmlParser::docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) {
    Count(length);
    XercesDOMParser::docCharacters(characters, length, isCData);
}

/**
 * \brief Take note of an entity that the document declares
 * \throw RuntimeException It is a parameter entity. The XML library does not count how often those are expanded, so
 *        that a few lines of them keep it busy for years.
 */
void BoundedXmlParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                                  const bool isIgnored) {
    if (isParameter)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: the parameter entity '%s' is not allowed.",
            ToLocalText(declaration.getName()));
    XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

}  // namespace Vanto
