/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DOM parser for files that nobody has checked
 */
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

namespace Vanto {

/// Expands few entities and fetches nothing from elsewhere. Reentrant.
class BoundedXmlParser : public xercesc::XercesDOMParser {
public:
    static constexpr XMLSize_t kMaxEntityExpansions = 100;

    BoundedXmlParser();

    void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter, const bool isIgnored) override;

private:
    xercesc::SecurityManager m_limits;
};

}  // namespace Vanto
