/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads the port configuration file with the place of everything in it
 */
#include "configuration/ConfigurationReader.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>

#include "Base/GCException.h"
#include "base/Utf8.h"
#include "clbindings/BoundedXmlFile.h"
#include "clbindings/BoundedXmlParser.h"
#include "clbindings/PortEntryReader.h"
#include "clbindings/XercesGuard.h"
#include "configuration/ConfigurationRemarks.h"
#include "error/ExitCode.h"
#include "os/File.h"
#include "output/Text.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

void CheckReadable(const std::filesystem::path& path) {
    const std::string refused = WhyNotReadable(path);
    const os::OpenFile file(refused.empty() ? std::fopen(path.string().c_str(), "rb") : nullptr);
    if (file == nullptr)
        throw ToolError(fmt::format("can't read '{}': {}", path.string(),
                                    refused.empty() ? std::generic_category().message(errno) : refused));
}

std::string HintFor(unsigned int fault) {
    using xercesc::XMLErrs;
    switch (fault) {
        case XMLErrs::ExpectedEntityRefName:
        case XMLErrs::UnterminatedEntityRef:
        case XMLErrs::InvalidCharacter:
        case XMLErrs::InvalidCharacterInAttrValue:
        case XMLErrs::BracketInAttrValue:
        case XMLErrs::ExpectedElementName:
            return "Look for '&' or '<' in a text (write &amp; and &lt;), and for letters that are not in the file's "
                   "encoding.";
        case XMLErrs::BadXMLEncoding:
        case XMLErrs::XMLException_Fatal:
            return "Save the file as UTF-8.";
        case XMLErrs::XMLDeclMustBeFirst:
        case XMLErrs::NoPIStartsWithXML:
        case XMLErrs::TextDeclNotLegalHere:
            return "Nothing, not even a blank or an empty line, may stand before '<?xml'.";
        case XMLErrs::ExpectedEndOfTagX:
        case XMLErrs::MoreEndThanStartTags:
        case XMLErrs::EndedWithTagsOnStack:
            return "Each element ends with its own name: <Port> ... </Port>.";
        default:
            return {};
    }
}

// Where a file that is taken for UTF-8 is none. The XML library decodes ahead of what it has read.
Place FirstInvalid(const std::filesystem::path& path) {
    const std::string content = os::ReadWholeFile(path.string(), Vanto::BoundedXmlFile::kMaxSize).value_or("");
    std::string_view rest = content;
    Place place{1, 1};
    while (const std::size_t length = base::Utf8Length(rest)) {
        place = rest.front() == '\n' ? Place{place.line + 1, 1} : Place{place.line, place.column + 1};
        rest.remove_prefix(length);
    }
    return rest.empty() ? Place() : place;
}

Finding ToFinding(const std::filesystem::path& path, const Vanto::BoundedXmlParser& parser,
                  const GenICam::GenericException& error) {
    const auto& fault = parser.GetFault();
    if (!fault)
        return {Severity::kError, {}, Printable(error.GetDescription()), {}};
    const bool isUndecoded = fault->code == xercesc::XMLErrs::XMLException_Fatal;
    const Place invalid = isUndecoded ? FirstInvalid(path) : Place();
    return {Severity::kError, invalid.line != 0 ? invalid : fault->place, "malformed XML: " + Printable(fault->text),
            HintFor(invalid.line != 0 ? +xercesc::XMLErrs::InvalidCharacter : fault->code)};
}

}  // namespace

/**
 * \brief Read a port configuration file
 * \param[in] path The file
 *
 * Entries are those that the transport layer finds, read by its own reader. What it silently passes over is reported as
 * a finding, and so is what makes it refuse the file; the entries above a fault are kept.
 *
 * \throw ToolError The file can't be opened
 */
PortConfiguration ReadPortConfiguration(const std::filesystem::path& path) {
    CheckReadable(path);
    const Vanto::XercesSession session([] {});
    PortConfiguration configuration;
    Vanto::BoundedXmlParser parser;
    try {
        parser.ParseFile(path.string());
        configuration.wellFormed = true;
    } catch (const GenICam::GenericException& error) {
        configuration.findings.Add(ToFinding(path, parser, error));
    }
    if (configuration.wellFormed || parser.HasRoot()) {
        AddRemarks(parser, configuration.findings);
        configuration.entries = Vanto::ReadPortEntries(parser);
    }
    return configuration;
}

/// The same; a file that does not exist is an error that says how to make one.
PortConfiguration ReadExistingConfiguration(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        throw ToolError(fmt::format("there is no port configuration file '{}'", path.string()),
                        "'vanto-cl config init' writes one for the ports of this machine.");
    return ReadPortConfiguration(path);
}

}  // namespace tools
