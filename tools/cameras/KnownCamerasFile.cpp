/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file in which the known cameras lie from one run to the next
 */
#include "cameras/KnownCamerasFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>

#include "base/Stream.h"
#include "error/ExitCode.h"
#include "output/Output.h"
#include "output/Text.h"
#include "system/FileLock.h"
#include "system/Files.h"
#include "system/Folders.h"

namespace tools {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uintmax_t kLargestFile = 1 << 20;
constexpr std::size_t kHighestNumber = 9999;
constexpr const char* kAbout =
    "The cameras that 'vanto-cl list' has shown, with their numbers. Delete this file to number them anew.";

std::optional<std::filesystem::path> FilePath() {
    const std::optional<std::filesystem::path> folder = StateFolder();
    return folder ? std::optional(*folder / "cameras.json") : std::nullopt;
}

template <class Value>
std::optional<Value> Member(const Json& object, const char* name) {
    const auto member = object.find(name);
    if (member == object.end())
        return std::nullopt;
    if constexpr (std::is_same_v<Value, std::string>)
        return member->is_string() ? std::optional(member->get<std::string>()) : std::nullopt;
    else
        return member->is_number_unsigned() ? std::optional(member->get<Value>()) : std::nullopt;
}

/// A camera of the file; nothing when something is missing or of the wrong kind.
std::optional<KnownCamera> CameraFrom(const Json& json) {
    if (!json.is_object())
        return std::nullopt;
    const auto number = Member<std::size_t>(json, "Number");
    const auto portId = Member<std::string>(json, "PortID");
    const auto deviceId = Member<std::string>(json, "DeviceID");
    if (!number || *number > kHighestNumber || !portId || portId->empty() || !deviceId || deviceId->empty())
        return std::nullopt;
    return KnownCamera{*number,
                       {*portId, *deviceId},
                       Member<std::string>(json, "Seen").value_or(""),
                       Member<std::uint32_t>(json, "RestBaudRate").value_or(0)};
}

std::optional<KnownCameras> CamerasFrom(const std::string& text) {
    const Json json = Json::parse(text, nullptr, false);
    const auto list = json.is_object() ? json.find("Cameras") : json.end();
    if (!json.is_object() || list == json.end() || !list->is_array())
        return std::nullopt;
    KnownCameras cameras;
    for (const Json& one : *list) {
        std::optional<KnownCamera> camera = CameraFrom(one);
        if (!camera || !cameras.Add(std::move(*camera)))
            return std::nullopt;
    }
    return cameras;
}

std::string TextOf(const KnownCameras& cameras) {
    Json list = Json::array();
    for (const KnownCamera& camera : cameras.All()) {
        Json one{{"Number", camera.number},
                 {"PortID", camera.address.portId},
                 {"DeviceID", camera.address.deviceId},
                 {"Seen", camera.seen}};
        if (camera.restBaudRate != 0)
            one["RestBaudRate"] = camera.restBaudRate;
        list.push_back(std::move(one));
    }
    const Json file{{"About", kAbout}, {"Cameras", std::move(list)}};
    return file.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

/// The file's text; nothing when there is no such file. Throws ToolError when it can't be read.
std::optional<std::string> TextOf(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return std::nullopt;
    if (!std::filesystem::is_regular_file(status) || std::filesystem::file_size(path, error) > kLargestFile)
        throw ToolError("it is no file of ours");
    std::ifstream stream(path, std::ios::binary);
    std::optional<std::string> text = base::ReadAll(stream);
    if (!stream.eof())
        throw ToolError("it can't be read");
    return text;
}

KnownCameras Load(const std::filesystem::path& path, Output& output) {
    std::string why;
    try {
        const std::optional<std::string> text = TextOf(path);
        if (!text)
            return {};
        if (std::optional<KnownCameras> cameras = CamerasFrom(*text))
            return *std::move(cameras);
        why = "it is damaged";
    } catch (const ToolError& failure) {
        why = failure.what();
    }
    output.Warn(fmt::format("the list of known cameras '{}' is ignored: {}", Printable(path.string()), why));
    return {};
}

}  // namespace

KnownCameras LoadKnownCameras(Output& output) {
    const std::optional<std::filesystem::path> path = FilePath();
    return path ? Load(*path, output) : KnownCameras();
}

KnownCameras ChangeKnownCameras(Output& output, const std::function<void(KnownCameras&)>& change) {
    KnownCameras cameras;
    const std::optional<std::filesystem::path> path = FilePath();
    if (!path) {
        change(cameras);
        return cameras;
    }
    std::error_code error;
    std::filesystem::create_directories(path->parent_path(), error);
    const FileLock lock(path->parent_path() / "cameras.lock");
    cameras = Load(*path, output);
    const std::string before = TextOf(cameras);
    change(cameras);
    const std::string after = TextOf(cameras);
    try {
        if (after != before)
            WriteFile(*path, after);
    } catch (const ToolError& failure) {
        output.Warn(fmt::format("numbers of cameras are not kept: {}", Printable(failure.what())));
    }
    return cameras;
}

}  // namespace tools
