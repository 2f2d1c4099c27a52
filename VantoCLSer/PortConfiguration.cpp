/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file: where it lies and what it says
 */

#include "VantoCLSer/PortConfiguration.h"

#include <cstring>
#include <mutex>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "VantoCLSer/BoundedXmlFile.h"
#include "VantoCLSer/BoundedXmlParser.h"
#include "VantoCLSer/Log.h"
#include "os/Environment.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/internal/VantoException.h"
#include "vanto/internal/VantoXercesHelper.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

// Runs an action of the XML library; its exceptions become a RuntimeException that begins with a text.
template <class Action>
auto Guarded(const char* text, Action action) {
    const auto fail = [text](const XMLCh* message) {
        return VANTO_EXCEPTION(RuntimeException, kSource)("%s: %s", text, ToLocalText(message));
    };
    try {
        return action();
    } catch (const xercesc::XMLException& error) {
        throw fail(error.getMessage());
    } catch (const xercesc::DOMException& error) {
        throw fail(error.getMessage());
    } catch (const xercesc::SAXException& error) {
        throw fail(error.getMessage());
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        throw VANTO_EXCEPTION(RuntimeException, kSource)("%s: Unspecified exception occurred", text);
    }
}

// The XML library counts its users without a lock of its own.
std::mutex g_xercesLock;

// The XML library, initialised for the lifetime of the object.
class XercesSession {
public:
    XercesSession() {
        const std::lock_guard lock(g_xercesLock);
        Guarded("Failed to initialize Xerces", [] { xercesc::XMLPlatformUtils::Initialize(); });
    }
    ~XercesSession() {
        try {
            const std::lock_guard lock(g_xercesLock);
            xercesc::XMLPlatformUtils::Terminate();
        } catch (...) {
            LogTrace(TlLog(), tracelog::kError, "Exception while deinitializing xerces");
        }
    }
    XercesSession(const XercesSession&) = delete;
    XercesSession& operator=(const XercesSession&) = delete;
};

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

// The text of all descendants, trimmed. The XML library's own operation for it calls itself for each level of
// elements, of which a file may have more than the stack has room for.
gcstring TrimmedContent(const xercesc::DOMElement& element) {
    std::string text;
    for (const xercesc::DOMNode* node = &element; node != nullptr; node = NextBelow(element, node)) {
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

bool EqualsIgnoringCase(const char* left, const char* right) {
    return xercesc::XMLString::compareIString(left, right) == 0;
}

void SetField(PortConfiguration& entry, const std::string& name, const gcstring& value) {
    if (EqualsIgnoringCase(name.c_str(), "ID"))
        entry.id = value;
    else if (name == "Manufacturer")
        entry.manufacturer = value;
    else if (name == "Family")
        entry.family = value;
    else if (name == "Model")
        entry.model = value;
    else if (name == "DeviceSpecificString")
        entry.deviceSpecificString = value;
    else if (name == "BaudRate")
        entry.baudRate = value;
    else if (name == "Enabled")
        entry.enabled = EqualsIgnoringCase(value, "yes") || EqualsIgnoringCase(value, "true") || value == "1";
}

PortConfiguration ReadEntry(const xercesc::DOMElement& port) {
    PortConfiguration entry;
    for (const auto* child = port.getFirstElementChild(); child != nullptr; child = child->getNextElementSibling())
        SetField(entry, ToLocalText(child->getNodeName()), TrimmedContent(*child));
    return entry;
}

std::size_t ReadDocument(BoundedXmlParser& parser, PortConfigurationList& list) {
    const xercesc::DOMDocument* document = parser.getDocument();
    if (document == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get document of CL binding file.");
    const xercesc::DOMElement* root = document->getDocumentElement();
    if (root == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get root node of CL binding doc.");
    const xercesc::DOMNodeList* ports = document->getElementsByTagName(FromLocalText("Port").c_str());
    std::size_t count = 0;
    for (XMLSize_t index = 0; index < ports->getLength(); ++index) {
        PortConfiguration entry = ReadEntry(*static_cast<const xercesc::DOMElement*>(ports->item(index)));
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
std::size_t GetPortConfigurationPath(char* buffer) {
    const os::EnvironmentValue folder = os::GetEnvironment("VANTO_CL_BINDINGS", os::kMaxPath);
    std::string path = folder.text;
    if (folder.status == os::EnvironmentStatus::kAbsent) {
        const std::optional<std::string> common = os::CommonApplicationDataFolder();
        if (!common)
            return 0;
        path = *common;
        os::AppendToPath(path, os::ToSystemSeparators("Marlow\\CLBindings"));
    }
    // A folder that leaves no room for the name still has a length to report.
    if (!os::AppendToPath(path, "PortConfiguration_x64.xml"))
        path += os::kPathSeparator + std::string("PortConfiguration_x64.xml");
    const std::size_t needed = path.size() + 1;
    if (needed <= os::kMaxPath && buffer != nullptr)
        std::memcpy(buffer, path.c_str(), needed);
    return needed;
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
    BoundedXmlParser parser;
    parser.setErrorHandler(&handler);
    Guarded("Failed to parse CL binding file", [&] { parser.parse(BoundedXmlFile(path)); });
    const std::size_t count = Guarded("Failed to process CL binding file", [&] { return ReadDocument(parser, list); });
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
