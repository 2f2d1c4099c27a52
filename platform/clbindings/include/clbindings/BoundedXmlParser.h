/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include "base/Place.h"
#include "clbindings/BoundedXmlFile.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

/// Expands few entities, to no more than a file of the greatest length could hold itself, and fetches nothing from
/// elsewhere. Knows where each element and text begins. For one document. Reentrant.
class BoundedXmlParser : public xercesc::XercesDOMParser {
public:
    static constexpr XMLSize_t kMaxEntityExpansions = 100;
    static constexpr XMLSize_t kMaxEntityLength = BoundedXmlFile::kMaxSize / kMaxEntityExpansions;

    /// Why a document is malformed.
    struct Fault {
        unsigned int code = 0;  ///< of xercesc::XMLErrs; XMLException_Fatal: it could not be decoded
        std::string text;
        base::Place place;
    };

    BoundedXmlParser();

    void ParseFile(const std::string& path);
    /// Null before a document is parsed. After a failure it holds what stood above the fault.
    const xercesc::DOMDocument* GetDocument() const {
        return const_cast<BoundedXmlParser*>(this)->getDocument();  // asks for it without a change
    }
    bool HasRoot() const { return GetDocument() != nullptr && GetDocument()->getDocumentElement() != nullptr; }
    /// Nothing while the document is well-formed.
    const std::optional<Fault>& GetFault() const noexcept { return m_fault; }
    base::Place PlaceOf(const xercesc::DOMNode& node) const;
    base::Place Here() const;

    void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount, bool isEmpty,
                      bool isRoot) override;
    void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                    const XMLCh* prefix) override;
    void docCharacters(const XMLCh* characters, XMLSize_t length, bool isCData) override;
    void ignorableWhitespace(const XMLCh* characters, XMLSize_t length, bool isCData) override;
    void docComment(const XMLCh* text) override;
    void docPI(const XMLCh* target, const XMLCh* data) override;
    void startAttList(const xercesc::DTDElementDecl& declaration) override;
    void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter, const bool isIgnored) override;

    void endEntityReference(const xercesc::XMLEntityDecl& declaration) override;
    void error(unsigned int code, const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* text,
               const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line, XMLFileLoc column) override;

protected:
    xercesc::DOMElement* createElement(const XMLCh* name) override;
    xercesc::DOMText* createText(const XMLCh* text, XMLSize_t length) override;

private:
    void Count(std::uint64_t characters);

    std::uint64_t m_size = 0;  // of what the document holds, in the characters that it takes to write it down
    bool m_hasEntities = false;
    xercesc::SecurityManager m_limits;
    DefaultRuntimeExceptionErrorHandler m_thrower;
    base::Place m_end;  // of what was parsed last
    std::unordered_map<const xercesc::DOMNode*, base::Place> m_places;
    std::optional<Fault> m_fault;
};

}  // namespace Vanto
