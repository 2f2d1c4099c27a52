/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The words of a camera's features, kept so that the completion of shells need not ask the camera
 */
#include "features/FeatureWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/Sha1.h"
#include "system/Files.h"
#include "system/Folders.h"

namespace tools {

namespace {

using Json = nlohmann::ordered_json;

std::optional<std::filesystem::path> Folder() {
    const std::optional<std::filesystem::path> state = StateFolder();
    return state ? std::optional(*state / "words") : std::nullopt;
}

std::optional<std::filesystem::path> FileOf(const std::string& deviceId) {
    const std::optional<std::filesystem::path> folder = Folder();
    return folder ? std::optional(*folder / (base::ToText(base::Sha1(deviceId)) + ".json")) : std::nullopt;
}

/// What tells one description of a camera from another.
std::string DescriptionKey(GenApi::INodeMap& nodes) {
    const auto* const info = dynamic_cast<const GenApi::IDeviceInfo*>(&nodes);
    const std::string guid = info != nullptr ? info->GetVersionGuid().str() : std::string();
    return fmt::format("{} {}", guid, nodes.GetNumNodes());
}

std::vector<std::string> EntriesOf(GenApi::INode& node) {
    std::vector<std::string> words;
    if (node.GetPrincipalInterfaceType() == GenApi::intfIBoolean)
        return {"on", "off"};
    if (const GenApi::CEnumerationPtr enumeration(&node); enumeration.IsValid()) {
        GenApi::NodeList_t entries;
        enumeration->GetEntries(entries);
        for (GenApi::INode* entry : entries)
            if (auto* const one = dynamic_cast<GenApi::IEnumEntry*>(entry))
                words.push_back(one->GetSymbolic().str());
    }
    return words;
}

Json WordsOf(GenApi::INodeMap& nodes) {
    Json features = Json::array();
    GenApi::NodeList_t all;
    nodes.GetNodes(all);
    for (GenApi::INode* node : all) {
        if (!node->IsFeature() || node->GetPrincipalInterfaceType() == GenApi::intfICategory)
            continue;
        features.push_back({{"Name", node->GetName().str()},
                            {"Command", node->GetPrincipalInterfaceType() == GenApi::intfICommand},
                            {"Entries", EntriesOf(*node)}});
    }
    return features;
}

Json Read(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    Json json = Json::parse(stream, nullptr, false);
    return json.is_object() && json.value("Features", Json()).is_array() ? json : Json::object();
}

FeatureWords WordsFrom(const Json& json) {
    FeatureWords words;
    if (!json.is_object())
        return words;
    words.name = json.value("Name", Json()).is_string() ? json.at("Name").get<std::string>() : std::string();
    words.isCommand = json.value("Command", Json()) == true;
    for (const Json& entry : json.value("Entries", Json::array()))
        if (entry.is_string())
            words.entries.push_back(entry.get<std::string>());
    return words;
}

void Keep(GenApi::INodeMap& nodes, const std::filesystem::path& path) {
    const std::string key = DescriptionKey(nodes);
    if (Read(path).value("Description", Json()) == key)
        return;
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    WriteFile(path, Json{{"Description", key}, {"Features", WordsOf(nodes)}}.dump(-1, ' ', false,
                                                                                  Json::error_handler_t::replace));
}

}  // namespace

void KeepFeatureWords(GenApi::INodeMap& nodes, const std::string& deviceId) noexcept {
    try {
        if (const std::optional<std::filesystem::path> path = FileOf(deviceId))
            Keep(nodes, *path);
    } catch (const std::exception&) {  // the next command tries again
    }
}

std::vector<FeatureWords> LoadFeatureWords(const std::string& deviceId) {
    std::vector<FeatureWords> words;
    if (const std::optional<std::filesystem::path> path = FileOf(deviceId))
        for (const Json& feature : Read(*path).value("Features", Json::array()))
            words.push_back(WordsFrom(feature));
    return words;
}

void ForgetFeatureWords() noexcept {
    std::error_code error;
    if (const std::optional<std::filesystem::path> folder = Folder())
        std::filesystem::remove_all(*folder, error);
}

}  // namespace tools
