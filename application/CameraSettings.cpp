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

std::vector<Setting> Parsed(const std::string& text, const std::string& origin) {
    try {
        return base::ParseSettings(origin, text);
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
 * \brief The settings: all streamable features that can be set, for each value of their selectors
 * \param[out] faults Gets the features that could not be read; the others are in the text
 * \return As Save writes it, a line or more for each
 */
std::string Camera::SettingsText(std::vector<SettingFault>& faults) const {
    const auto settings = CollectSettings(
        Features(), [this] { m_state->ThrowIfStopped(); }, faults);
    return base::SettingsText("Settings of " + Name() + ", for 'vanto-cl load'", settings);
}

/**
 * \brief Write the settings into a file, as SettingsText gives them
 * \return Features that could not be read; the others are in the file
 * \throw CameraError The file can't be written
 */
std::vector<SettingFault> Camera::Save(const std::string& path) const {
    std::vector<SettingFault> faults;
    const std::string text = SettingsText(faults);
    WriteText(path, text, Name());
    return faults;
}

/**
 * \brief Set what a text says, in whatever order the camera takes it
 * \param[in] text As SettingsText gives it, or nothing but lines NAME=VALUE
 * \param[in] origin What errors call the text: a path
 * \throw CameraError A line is no setting: nothing is set then
 * \throw SettingsRefused The camera did not take some; the others are set
 */
void Camera::LoadText(const std::string& text, const std::string& origin) const {
    const auto settings = Parsed(text, origin);
    auto faults = ApplySettings(
        Features(), [this] { m_state->ThrowIfStopped(); }, settings);
    if (!faults.empty()) {
        const std::string sentence = Sentence(Name(), origin, faults, settings.size());
        throw SettingsRefused(sentence, Name(), std::move(faults));
    }
}

/// Sets what a file says, as LoadText; throws CameraError also when the file can't be read.
void Camera::Load(const std::string& path) const {
    LoadText(ReadText(path), path);
}

}  // namespace Vanto
