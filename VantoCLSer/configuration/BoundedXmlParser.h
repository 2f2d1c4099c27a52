/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */
#pragma once

#include <cstdint>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include "VantoCLSer/configuration/BoundedXmlFile.h"

namespace Vanto {

/// Expands few entities, to no more than a file of the greatest length could hold itself, and fetches nothing from
/// elsewhere. For one document. Reentrant.
class BoundedXmlParser : public xercesc::XercesDOMParser {
public:
    static constexpr XMLSize_t kMaxEntityExpansions = 100;
    static constexpr XMLSize_t kMaxEntityLength = BoundedXmlFile::kMaxSize / kMaxEntityExpansions;

    BoundedXmlParser();

    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount, bool isEmpty,
                      bool isRoot) override;
    void docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) override;
    void ignorableWhitespace(const XMLCh* characters, XMLSize_t length, bool isCData) override;
    void docComment(const XMLCh* text) override;
    void docPI(const XMLCh* target, const XMLCh* data) override;
    void startAttList(const xercesc::DTDElementDecl& declaration) override;
    void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter, const bool isIgnored) override;

private:
    void Count(std::uint64_t characters);

    std::uint64_t m_size = 0;  // of what the document holds, in the characters that it takes to write it down
    bool m_hasEntities = false;
    xercesc::SecurityManager m_limits;
};

}  // namespace Vanto
