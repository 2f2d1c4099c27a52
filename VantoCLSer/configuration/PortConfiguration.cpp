/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file: where it lies and what it says
 */

#include "VantoCLSer/configuration/PortConfiguration.h"

#include <cstring>
#include <optional>
#include <string>
#include <xercesc/dom/DOM.hpp>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/configuration/BoundedXmlFile.h"
#include "VantoCLSer/configuration/BoundedXmlParser.h"
#include "VantoCLSer/configuration/XercesGuard.h"
#include "os/Environment.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

using GenICam::GenericException;

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

bool EqualsIgnoringCase(const char* left, const char* right) {
    return xercesc::XMLString::compareIString(left, right) == 0;
}

using SetField = void (*)(PortConfiguration& entry, gcstring&& value);

// Null for a name that means nothing.
SetField FieldOf(const std::string& name) {
    if (EqualsIgnoringCase(name.c_str(), "ID"))
        return [](PortConfiguration& entry, gcstring&& value) { entry.id = std::move(value); };
    if (name == "Manufacturer")
        return [](PortConfiguration& entry, gcstring&& value) { entry.manufacturer = std::move(value); };
    if (name == "Family")
        return [](PortConfiguration& entry, gcstring&& value) { entry.family = std::move(value); };
    if (name == "Model")
        return [](PortConfiguration& entry, gcstring&& value) { entry.model = std::move(value); };
    if (name == "DeviceSpecificString")
        return [](PortConfiguration& entry, gcstring&& value) { entry.deviceSpecificString = std::move(value); };
    if (name == "BaudRate")
        return [](PortConfiguration& entry, gcstring&& value) { entry.baudRate = std::move(value); };
    if (name == "Enabled")
        return [](PortConfiguration& entry, gcstring&& value) {
            entry.enabled = EqualsIgnoringCase(value, "yes") || EqualsIgnoringCase(value, "true") || value == "1";
        };
    return nullptr;
}

// Reads the elements of one document.
class EntryReader {
public:
    PortConfiguration Read(const xercesc::DOMElement& port) {
        PortConfiguration entry;
        for (const auto* child = port.getFirstElementChild(); child != nullptr; child = child->getNextElementSibling())
            if (const SetField set = FieldOf(ToLocalText(child->getNodeName())))
                set(entry, TrimmedContent(*child));
        return entry;
    }

private:
    // More than any document of the greatest length has; only ports within ports are read more than once.
    static constexpr std::size_t kMaxNodes = std::size_t{1} << 21;

    // The text of all descendants, trimmed. The XML library's own operation for it calls itself for each level of
    // elements, of which a file may have more than the stack has room for.
    gcstring TrimmedContent(const xercesc::DOMElement& element) {
        std::string text;
        for (const xercesc::DOMNode* node = &element; node != nullptr; node = NextBelow(element, node)) {
            if (++m_nodes > kMaxNodes)
                throw VANTO_EXCEPTION(RuntimeException, kSource)(
                    "Failed to process CL binding file: too many ports are nested within each other.");
            if (node->getNodeType() == xercesc::DOMNode::TEXT_NODE ||
                node->getNodeType() == xercesc::DOMNode::CDATA_SECTION_NODE)
                text += ToLocalText(node->getNodeValue());
        }
        constexpr char kWhiteSpace[] = " \t\r\n\v\f";
        const std::size_t first = text.find_first_not_of(kWhiteSpace);
        if (first == std::string::npos)
            return {};
        return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
    }

    std::size_t m_nodes = 0;
};

std::size_t ReadDocument(BoundedXmlParser& parser, PortConfigurationList& list) {
    const xercesc::DOMDocument* document = CheckedDocument(parser.getDocument());
    const xercesc::DOMNodeList* ports = document->getElementsByTagName(FromLocalText("Port").c_str());
    // Each question for the length goes through the whole document.
    const XMLSize_t length = ports->getLength();
    EntryReader reader;
    std::size_t count = 0;
    for (XMLSize_t index = 0; index < length; ++index) {
        PortConfiguration entry = reader.Read(*static_cast<const xercesc::DOMElement*>(ports->item(index)));
        if (entry.id.empty())
            continue;
        list.push_back(std::move(entry));
        ++count;
    }
    return count;
}

}  // namespace

/**
 * \brief Form the path of the port configuration file
 * \param[out] buffer Null, or room for 260 characters; untouched when the path does not fit
 *
 * The folder is the value of VANTO_CL_BINDINGS, or, where that variable does not exist, Marlow/CLBindings below the
 * common application data folder. A variable that is set but empty or too long leaves the bare file name, relative
 * to the working folder.
 *
 * \return Characters that the path needs, its NUL included; 0 when no path can be formed
 * \context Any thread
 */
std::size_t GetPortConfigurationPath(char* buffer, CommonFolder* commonFolder) {
    const os::EnvironmentValue folder = os::GetEnvironment("VANTO_CL_BINDINGS", os::kMaxPath);
    std::string path = folder.text;
    if (folder.status == os::EnvironmentStatus::kAbsent) {
        const std::optional<std::string> common = commonFolder();
        if (!common)
            return 0;
        path = *common;
        os::AppendToPath(path, os::ToSystemSeparators("Marlow\\CLBindings"));
    }
    // A folder that leaves no room for the name still has a length to report.
    if (!os::AppendToPath(path, "PortConfiguration_x64.xml")) {
        if (!os::IsPathSeparator(path.back()))
            path += os::kPathSeparator;
        path += "PortConfiguration_x64.xml";
    }
    const std::size_t needed = path.size() + 1;
    if (needed <= os::kMaxPath && buffer != nullptr)
        std::memcpy(buffer, path.c_str(), needed);
    return needed;
}

/**
 * \brief The path of the port configuration file, which need not exist
 * \throw GenericException No path can be formed, or it is longer than 259 characters; logged as well
 * \context Any thread
 */
std::string FindPortConfiguration(CommonFolder* commonFolder) {
    char path[os::kMaxPath] = "";
    const std::size_t length = GetPortConfigurationPath(path, commonFolder);
    if (length == 0 || length > os::kMaxPath) {
        static constexpr char kText[] = "Couldn't get full path to the PortConfiguration.xml file.";
        LogTrace(TlLog(), tracelog::kError, kText);
        throw VANTO_EXCEPTION(GenericException, kSource)(kText);
    }
    return path;
}

/**
 * \brief Append the entries of a port configuration file to a list
 * \param[in] path The file; null reads nothing
 * \param[in,out] list Gets every entry that has an ID, in document order
 * \return The number of entries appended; 0, logged, for a file that can't be accessed
 * \throw RuntimeException The file is malformed, longer than 1 MiB, or no plain file
 * \context Any thread, with the XML library initialised
 */
std::size_t ParseCLBindings(const char* path, PortConfigurationList& list) {
    if (path == nullptr)
        return 0;
    LogTrace(TlLog(), tracelog::kDebug, "Trying to load CLBindings from file '%s'", path);
    if (!os::IsAccessible(path)) {
        LogTrace(TlLog(), tracelog::kError, "CLBindings file '%s' does not exist or could not be read.", path);
        return 0;
    }
    DefaultRuntimeExceptionErrorHandler handler;
    std::optional<BoundedXmlParser> parser;
    Guarded("Failed to parse CL binding file", [&] {
        parser.emplace();
        parser->setErrorHandler(&handler);
        parser->parse(BoundedXmlFile(path));
    });
    const std::size_t count = Guarded("Failed to process CL binding file", [&] { return ReadDocument(*parser, list); });
    LogTrace(TlLog(), tracelog::kDebug, "Successfully parsed %u entries from CLbindings file.", count);
    return count;
}

/**
 * \brief Read a port configuration file into an empty list, with the XML library initialised around it
 * \throw RuntimeException As ParseCLBindings, logged as well; or the XML library can't be initialised
 * \context Any thread
 */
void ReadCLBindings(const gcstring& path, PortConfigurationList& list) {
    const XercesSession session;
    try {
        ParseCLBindings(path, list);
    } catch (const GenericException& error) {
        LogTrace(TlLog(), tracelog::kError, "Could not read CLBindings (%s)", error.GetDescription());
        throw;
    }
}

}  // namespace Vanto
