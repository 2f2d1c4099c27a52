/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial ports of the machine
 */

#include "SerialPorts.h"

#include <algorithm>
#include <set>

#include "Base/GCUtilities.h"
#include "ErrorReporter.h"
#include "ModuleLog.h"
#include "Texts.h"
#include "base/Immortal.h"
#include "base/Text.h"
#include "os/Path.h"
#include "os/System.h"

namespace CLProtocol {

namespace {

constexpr char kFolders[] = "CLSERIALPATH";
constexpr char kRegistryKey[] = "software\\cameralink";
#ifdef _WIN32
constexpr std::string_view kSuffix = ".dll";
#else
constexpr std::string_view kSuffix = ".so";
#endif

// clser???.so or libclser???.so, three characters standing for the maker; in whatever case, for makers write clSerXyz
// as well.
bool IsSerialLibraryName(const std::string& fileName) {
    constexpr std::string_view kPrefix = "clser";
    constexpr std::size_t kMakerSize = 3;
    const std::string name = base::LowerCase(fileName);
    const std::size_t from = name.starts_with("lib") ? 3 : 0;
    return name.size() == from + kPrefix.size() + kMakerSize + kSuffix.size() &&
           std::string_view(name).substr(from).starts_with(kPrefix) && name.ends_with(kSuffix) &&
           name.find('.') == name.size() - kSuffix.size();
}

std::vector<std::string> FindLibraryFiles() {
    std::vector<std::string> paths;
    std::set<std::string> seen;
    for (const std::string& folder : SerialPorts::Folders())
        for (const std::string& name : FilesIn(folder)) {
            std::string path = folder;
            path.append(1, os::kPathSeparator).append(name);
            if (IsSerialLibraryName(name) && seen.insert(CanonicalPath(path)).second)
                paths.push_back(std::move(path));
        }
    return paths;
}

std::string UniqueId(const std::string& wanted, std::set<std::string>& taken) {
    std::string id = wanted;
    for (int number = 2; !taken.insert(id).second; ++number)
        id = wanted + " (" + std::to_string(number) + ")";
    return id;
}

}  // namespace

/// What one library offers at the moment.
struct SerialPorts::Scan {
    std::shared_ptr<const SerialLibrary> library;  // null when it can't be used
    std::string maker;
    std::vector<std::string> names;
    std::string refusal;
};

/**
 * \class SerialPorts
 * \brief Finds the ports of all Camera Link serial libraries of the machine
 *
 * Each enumeration looks into the folders and asks the libraries again; libraries stay loaded. A library that is
 * refused, fails or hangs does not keep the others from being found.
 *
 * \context Any thread.
 */
SerialPorts& SerialPorts::GetInstance() {
    static base::Immortal<SerialPorts> instance;
    return instance.Get();
}

/// The folders in which libraries are looked for: beside the module, and what CLSERIALPATH names.
std::vector<std::string> SerialPorts::Folders() {
    std::vector<std::string> folders = FoldersOfVariable(kFolders);
    folders.insert(folders.begin(), ModuleFolder());
    for (std::string& folder : FoldersOfList(os::MachineSetting(kRegistryKey, kFolders).value_or(std::string())))
        folders.push_back(std::move(folder));
    for (std::string& folder : folders) {
        GenICam::gcstring text = folder;
        GenICam::ReplaceEnvironmentVariables(text);
        folder = text.str();
    }
    return folders;
}

SerialPorts::Scan SerialPorts::ScanLibrary(const std::string& path) {
    // Owned by the job, too, which may outlive this call.
    const auto scan = std::make_shared<Scan>();
    std::string refusal = m_libraries.With(path, [scan](const std::shared_ptr<const SerialLibrary>& library) {
        scan->maker = library->Maker();
        scan->names = library->PortNames();
        scan->library = library;
    });
    return refusal.empty() ? *scan : Scan{nullptr, {}, {}, std::move(refusal)};
}

/// All ports, in the order of folders, libraries and the libraries' own numbers.
std::vector<SerialPort> SerialPorts::Enumerate() {
    std::vector<SerialPort> ports;
    std::set<std::string> taken;
    for (const std::string& path : FindLibraryFiles()) {
        const Scan scan = ScanLibrary(path);
        for (std::size_t index = 0; index < scan.names.size(); ++index) {
            const std::string& name = scan.names[index];
            if (!name.empty())
                ports.push_back(
                    {UniqueId(scan.maker + "#" + name, taken), scan.library, static_cast<std::uint32_t>(index), name});
        }
    }
    const std::lock_guard lock(m_mutex);
    m_ports = ports;
    return ports;
}

/**
 * \brief Look a port up
 * \return The port as the last enumeration found it, or else as a new one does
 * \throw CLErrException There is no such port
 */
SerialPort SerialPorts::Find(const std::string& portId) {
    const auto find = [&](const std::vector<SerialPort>& ports) {
        const auto found =
            std::find_if(ports.begin(), ports.end(), [&](const SerialPort& port) { return port.id == portId; });
        return found != ports.end() ? *found : SerialPort();
    };
    std::unique_lock lock(m_mutex);
    SerialPort port = find(m_ports);
    lock.unlock();
    // Ports come and go, and with them the numbers of the others.
    const auto isThere = std::make_shared<bool>(false);
    if (port.library)
        m_libraries.With(port.library->Path(), [port, isThere](const auto& library) {
            *isThere = library->PortName(port.index) == port.name;
        });
    if (!*isThere)
        port = find(Enumerate());
    if (!port.library)
        throw CL_ERR_EXCEPTION(CL_ERR_MANU_DOES_NOT_EXIST)("There is no port '%s'", portId);
    return port;
}

/// Every library file that was found, with what it offers or why it is refused.
std::vector<LibraryReport> SerialPorts::Report() {
    std::vector<LibraryReport> reports;
    for (const std::string& path : FindLibraryFiles()) {
        const Scan scan = ScanLibrary(path);
        LibraryReport report;
        report.path = path;
        report.refusal = scan.refusal;
        if (scan.library)
            report.version = scan.library->Version();
        report.maker = scan.maker;
        for (const std::string& name : scan.names)
            report.offers.push_back(name);
        reports.push_back(std::move(report));
    }
    return reports;
}

/// Unloads the libraries of which no port is open.
void SerialPorts::Release() {
    {
        const std::lock_guard lock(m_mutex);
        m_ports.clear();
    }
    m_libraries.Release();
}

}  // namespace CLProtocol
