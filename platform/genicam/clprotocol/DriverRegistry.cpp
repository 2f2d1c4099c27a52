/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The CLProtocol drivers of the machine
 */

#include "DriverRegistry.h"

#include "ErrorReporter.h"
#include "ModuleLog.h"
#include "base/Immortal.h"
#include "clser/ClSerial.h"
#include "os/Path.h"

namespace CLProtocol {

/// What one driver offers.
struct DriverRegistry::Scan {
    std::shared_ptr<const DriverLibrary> library;  // null when it can't be used
    std::vector<std::string> templates;            // short
    std::string refusal;
};

/**
 * \class DriverRegistry
 * \brief Finds and keeps the drivers of all locations
 *
 * Each search looks into the locations again; drivers stay loaded. A driver that is refused, fails or hangs does not
 * keep the others from being found.
 *
 * \context Any thread.
 */
DriverRegistry& DriverRegistry::GetInstance() {
    static base::Immortal<DriverRegistry> instance;
    return instance.Get();
}

DriverRegistry::Scan DriverRegistry::ScanDriver(const std::string& path) {
    // Owned by the job, too, which may outlive this call.
    const auto scan = std::make_shared<Scan>();
    std::string refusal = m_libraries.With(path, [scan](const std::shared_ptr<const DriverLibrary>& library) {
        scan->templates = library->ShortTemplates();
        scan->library = library;
    });
    return refusal.empty() ? *scan : Scan{nullptr, {}, std::move(refusal)};
}

/// The DeviceID templates of all drivers, in their full form; what is no template is left out.
std::vector<std::string> DriverRegistry::Templates() {
    std::vector<std::string> templates;
    for (const DriverFile& file : FindDriverFiles()) {
        for (const std::string& text : ScanDriver(DriverPathIn(file.location, file.name)).templates) {
            std::string full = file.location + "#" + file.name + "#" + text;
            if (CDeviceID().FromString(full))
                templates.push_back(std::move(full));
            else
                Log(CLP_LOG_WARN, "'%s' is no DeviceID template", full);
        }
    }
    return templates;
}

/**
 * \brief The driver that a DeviceID or template names
 * \throw CLErrException It can't be used; the text says why
 */
std::shared_ptr<const DriverLibrary> DriverRegistry::Get(const CDeviceID& deviceId) {
    // A name with a folder in it would lead out of the location.
    const std::string file = deviceId.GetDriverFileName().str();
    if (file.empty() || !os::FolderOf(file).empty())
        throw CL_ERR_EXCEPTION(CLP_INVALID_DEVICEID)("DeviceID '%s' names no driver file", deviceId.ToString());
    const auto result = std::make_shared<std::shared_ptr<const DriverLibrary>>();
    const std::string path = deviceId.GetDriverPath().str();
    const std::string refusal = m_libraries.With(path, [result](const auto& library) { *result = library; });
    if (!refusal.empty())
        throw CL_ERR_EXCEPTION(CL_ERR_UNABLE_TO_LOAD_DLL)("Driver '%s' can't be used: %s", path, refusal);
    return *result;
}

/// Every driver file that was found, with what it offers or why it is refused.
std::vector<LibraryReport> DriverRegistry::Report() {
    std::vector<LibraryReport> reports;
    for (const DriverFile& file : FindDriverFiles()) {
        LibraryReport report;
        const std::string path = DriverPathIn(file.location, file.name);
        const Scan scan = ScanDriver(path);
        report.path = path;
        report.refusal = scan.refusal;
        if (scan.library)
            report.version = scan.library->Version();
        for (const std::string& text : scan.templates)
            report.offers.push_back(text);
        reports.push_back(std::move(report));
    }
    return reports;
}

/// Unloads the drivers that no connection uses.
void DriverRegistry::Release() {
    m_libraries.Release();
}

}  // namespace CLProtocol
