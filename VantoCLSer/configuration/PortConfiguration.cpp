/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file: where it lies and what it says
 */

#include "VantoCLSer/configuration/PortConfiguration.h"

#include <cstring>
#include <optional>
#include <string>

#include "VantoCLSer/base/Log.h"
#include "clbindings/BoundedXmlParser.h"
#include "clbindings/PortEntryReader.h"
#include "clbindings/XercesGuard.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerTL";

PortConfiguration ToConfiguration(const PortEntry& entry) {
    return {entry.id.text,    entry.manufacturer.text,         entry.family.text,
            entry.model.text, entry.deviceSpecificString.text, entry.baudRate.text,
            entry.IsEnabled()};
}

}  // namespace

/**
 * \brief Form the path of the port configuration file
 * \param[out] buffer Null, or room for 260 characters; untouched when the path does not fit
 *
 * \return Characters that the path needs, its NUL included; 0 when no path can be formed
 * \context Any thread
 */
std::size_t GetPortConfigurationPath(char* buffer, CommonFolder* commonFolder) {
    const std::optional<ConfigurationLocation> location = FindConfigurationLocation(commonFolder);
    if (!location)
        return 0;
    const std::size_t needed = location->path.size() + 1;
    if (needed <= os::kMaxPath && buffer != nullptr)
        std::memcpy(buffer, location->path.c_str(), needed);
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
    BoundedXmlParser parser;
    parser.ParseFile(path);
    const PortEntries entries = Guarded("Failed to process CL binding file", [&] { return ReadPortEntries(parser); });
    std::size_t count = 0;
    for (const PortEntry& entry : entries) {
        if (entry.id.text.empty())
            continue;
        list.push_back(ToConfiguration(entry));
        ++count;
    }
    LogTrace(TlLog(), tracelog::kDebug, "Successfully parsed %u entries from CLbindings file.", count);
    return count;
}

/// What is told of an XML library that can't be ended.
void LogUnendedXercesSession() {
    LogTrace(TlLog(), tracelog::kError, "Exception while deinitializing xerces");
}

/**
 * \brief Read a port configuration file into an empty list, with the XML library initialised around it
 * \throw RuntimeException As ParseCLBindings, logged as well; or the XML library can't be initialised
 * \context Any thread
 */
void ReadCLBindings(const gcstring& path, PortConfigurationList& list) {
    const XercesSession session(&LogUnendedXercesSession);
    try {
        ParseCLBindings(path, list);
    } catch (const GenericException& error) {
        LogTrace(TlLog(), tracelog::kError, "Could not read CLBindings (%s)", error.GetDescription());
        throw;
    }
}

}  // namespace Vanto
