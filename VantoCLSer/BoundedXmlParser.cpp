/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */

#include "VantoCLSer/BoundedXmlParser.h"

#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

BoundedXmlParser::BoundedXmlParser() {
    m_limits.setEntityExpansionLimit(kMaxEntityExpansions);
    setSecurityManager(&m_limits);
    setLoadExternalDTD(false);
    setDisableDefaultEntityResolution(true);
}

/**
 * \brief Take note of an entity that the document declares
 * \throw RuntimeException It is a parameter entity. The XML library does not count how often those are expanded, so
 *        that a few lines of them keep it busy for years.
 */
void BoundedXmlParser::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                                  const bool isIgnored) {
    static constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";
    if (isParameter)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: the parameter entity '%s' is not allowed.",
            ToLocalText(declaration.getName()));
    XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
}

}  // namespace Vanto
