/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file: where it lies and what it says
 */

#include "VantoCLSer/PortConfiguration.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <mutex>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

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

// A machine has some dozens of ports. What is longer than this is no configuration, and reading it whole into memory
// would take the process down with it.
constexpr std::uint64_t kMaxFileSize = 16u << 20;
constexpr XMLSize_t kMaxEntityExpansions = 1000;

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

// Text for the XML library, released with the object.
class XmlText {
public:
    explicit XmlText(const char* text) : m_text(xercesc::XMLString::transcode(text)) {}
    ~XmlText() { xercesc::XMLString::release(&m_text); }
    XmlText(const XmlText&) = delete;
    XmlText& operator=(const XmlText&) = delete;
    const XMLCh* Get() const noexcept { return m_text; }

private:
    XMLCh* m_text;
};

gcstring TrimmedContent(const xercesc::DOMElement& element) {
    constexpr char kWhiteSpace[] = " \t\r\n\v\f";
    const std::string text = ToLocalText(element.getTextContent());
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

void CheckSize(const char* path) {
    const std::uint64_t size = os::GetFileStatus(path).size;
    if (size > kMaxFileSize)
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Failed to parse CL binding file: '%s' holds %u bytes, more than the %u that a port configuration may "
            "have.",
            path, size, kMaxFileSize);
}

void ParseDocument(const char* path, xercesc::XercesDOMParser& parser) {
    CheckSize(path);
    Guarded("Failed to parse CL binding file", [&] {
        const XmlText systemId(path);
        const xercesc::LocalFileInputSource source(systemId.Get());
        parser.parse(source);
    });
}

std::size_t ReadDocument(xercesc::XercesDOMParser& parser, PortConfigurationList& list) {
    const xercesc::DOMDocument* document = parser.getDocument();
    if (document == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get document of CL binding file.");
    const xercesc::DOMElement* root = document->getDocumentElement();
    if (root == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Failed to get root node of CL binding doc.");
    const XmlText name("Port");
    const xercesc::DOMNodeList* ports = document->getElementsByTagName(name.Get());
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
 * \throw RuntimeException The file is malformed, or longer than 16 MiB
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
    // Files that hold entities are data, too: bounded expansion, and nothing is fetched from elsewhere.
    xercesc::SecurityManager limits;
    limits.setEntityExpansionLimit(kMaxEntityExpansions);
    DefaultRuntimeExceptionErrorHandler handler;
    xercesc::XercesDOMParser parser;
    parser.setErrorHandler(&handler);
    parser.setSecurityManager(&limits);
    parser.setLoadExternalDTD(false);
    parser.setDisableDefaultEntityResolution(true);
    ParseDocument(path, parser);
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
