/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look at transport layers, serial libraries and drivers
 */
#include <fmt/format.h>

#include <filesystem>

#include "CLProtocol/Diagnostics.h"
#include "cameras/Records.h"
#include "doctor/Examinations.h"
#include "system/Files.h"
#include "vanto/VantoFolders.h"

namespace tools {

namespace {

/// "Marlow COM ports, interface 2.1: ttyUSB0, ttyUSB1".
std::string Description(const CLProtocol::LibraryReport& report) {
    constexpr std::size_t kMostNames = 8;
    std::string text = report.maker.str();
    if (!report.version.empty())
        text += fmt::format("{}interface {}", text.empty() ? "" : ", ", report.version.str());
    for (std::size_t index = 0; index < report.offers.size(); ++index) {
        if (index == kMostNames)
            return text + fmt::format(" and {} more", report.offers.size() - index);
        text += (index == 0 ? ": " : ", ") + report.offers[index].str();
    }
    return text;
}

Section ExamineLibraries(const char* title, const GenICam::gcstring_vector& folders,
                         const std::vector<CLProtocol::LibraryReport>& reports, const char* none, const char* advice) {
    Section section{title, {}};
    std::error_code error;
    for (const GenICam::gcstring& folder : folders)
        section.observations.push_back({Health::kRemark,
                                        "Looked for in",
                                        std::filesystem::is_directory(PathOf(folder.view()), error)
                                            ? folder.str()
                                            : folder.str() + " (no such folder)",
                                        {}});
    bool accepted = false;
    for (const CLProtocol::LibraryReport& report : reports) {
        const bool refused = !report.refusal.empty();
        accepted = accepted || !refused;
        section.observations.push_back({refused ? Health::kWarning : Health::kFine,
                                        report.path.str(),
                                        refused ? "refused: " + report.refusal.str() : Description(report),
                                        {}});
    }
    if (!accepted)
        section.observations.push_back({Health::kBad, "none", none, advice});
    return section;
}

}  // namespace

Section ExamineTransportLayers(const TransportLayer& layer) {
    Section section{"Transport layers", {}};
    Vanto::TlInfoList infos;
    Vanto::CTlFactory& factory = Vanto::CTlFactory::GetInstance();
    factory.EnumerateTls(infos);
    for (const Vanto::CTlInfo& info : infos)
        section.observations.push_back({Health::kFine,
                                        PropertyOf(info, "DeviceClass"),
                                        fmt::format("{} {}", PropertyOf(info, "FileName"), PropertyOf(info, "Version")),
                                        {}});
    for (const Vanto::RejectedTl& rejected : factory.GetRejectedTls())
        section.observations.push_back(
            {Health::kWarning, rejected.path.str(), "refused: " + rejected.reason.str(), {}});
    if (layer.Get() == nullptr)
        section.observations.push_back(
            {Health::kBad, kDeviceClass,
             fmt::format("missing in {}", Vanto::getVantoFolderPath(Vanto::eTransportLayerFolder).str()),
             "Install VantoCLSer.so there, or set VANTO_ROOT to the root of an installation."});
    return section;
}

Section ExamineSerialLibraries() {
    GenICam::gcstring_vector folders;
    CLProtocol::GetSerialLibraryFolders(folders);
    return ExamineLibraries("Camera Link serial libraries", folders, CLProtocol::GetSerialLibraries(),
                            "no serial library can be used",
                            "Install clsertty.so beside the CLProtocol module, or name a folder in CLSERIALPATH.");
}

Section ExamineDrivers() {
    GenICam::gcstring_vector folders;
    CLProtocol::GetDriverLocations(folders);
    return ExamineLibraries("CLProtocol drivers", folders, CLProtocol::GetDrivers(), "no driver can be used",
                            "Install the driver of the camera's maker, or name its folder in GENICAM_CLPROTOCOL.");
}

}  // namespace tools
