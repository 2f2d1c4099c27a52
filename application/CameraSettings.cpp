/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera: its settings as a file
 */
#include <fmt/format.h>

#include <fstream>

#include "Base/GCException.h"
#include "CameraState.h"
#include "Settings.h"
#include "vanto/Camera.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

void WriteText(const std::string& path, const std::string& text, const std::string& camera) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw CameraError(fmt::format("The settings of {} can't be written to '{}'", camera, path), camera);
}

std::string ReadText(const std::string& path) {
    try {
        return textFileToString(path).str();
    } catch (const GenICam::GenericException& error) {
        throw CameraError(error.GetDescription());
    }
}

std::vector<Setting> Parsed(const std::string& path) {
    const std::string text = ReadText(path);
    try {
        return base::ParseSettings(path, text);
    } catch (const base::SettingsError& error) {
        throw CameraError(error.what());
    }
}

std::string Sentence(const std::string& camera, const std::string& path, const std::vector<SettingFault>& faults,
                     std::size_t settings) {
    std::string text =
        fmt::format("{} did not take {} of the {} settings of '{}'", camera, faults.size(), settings, path);
    for (const SettingFault& fault : faults)
        text += fmt::format("\n{}:{}: {}{}", path, fault.line,
                            fault.selectors.empty() ? "" : "[" + fault.selectors + "] ", fault.reason);
    return text;
}

}  // namespace

/**
 * \brief Write the settings into a file: all streamable features that can be set, for each value of their selectors
 * \return Features that could not be read; the others are in the file
 * \throw CameraError The file can't be written
 */
std::vector<SettingFault> Camera::Save(const std::string& path) const {
    std::vector<SettingFault> faults;
    const auto settings = CollectSettings(
        Features(), [this] { m_state->ThrowIfStopped(); }, faults);
    WriteText(path, base::SettingsText("Settings of " + Name() + ", for 'vanto-cl load'", settings), Name());
    return faults;
}

/**
 * \brief Set what a file says, in whatever order the camera takes it
 * \throw CameraError The file can't be read, or a line is no setting: nothing is set then
 * \throw SettingsRefused The camera did not take some; the others are set
 */
void Camera::Load(const std::string& path) const {
    const auto settings = Parsed(path);
    auto faults = ApplySettings(
        Features(), [this] { m_state->ThrowIfStopped(); }, settings);
    if (!faults.empty()) {
        const std::string text = Sentence(Name(), path, faults, settings.size());
        throw SettingsRefused(text, Name(), std::move(faults));
    }
}

}  // namespace Vanto
