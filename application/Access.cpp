/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Accesses to a camera, whose refusals become sentences for people
 */
#include "Access.h"

#include <fmt/format.h>

#include <algorithm>

#include "values/AllowedText.h"

namespace Vanto {

namespace {

/// The node map's text about a feature, which begins with "Float 'Gain' (line 12): ", as "Gain: ".
std::string WithoutLabel(std::string text, const std::string& feature) {
    const std::string quoted = "'" + feature + "'";
    const std::size_t at = text.find(quoted);
    if (at == std::string::npos || text.substr(0, at).find(' ') + 1 != at)
        return text;
    std::size_t end = at + quoted.size();
    if (text.compare(end, 7, " (line ") == 0)
        end = std::min(text.find(')', end), text.size() - 1) + 1;
    return text.replace(0, end, feature);
}

/// "Marlow H2048 (21): ExposureTime: ...": most texts of a node map begin with the feature's name, others get it.
std::string Sentence(const CameraState& camera, GenApi::INode* node, const GenICam::GenericException& error) {
    const std::string feature = node != nullptr ? node->GetName().str() : std::string();
    const std::string text = feature.empty() ? error.GetDescription() : WithoutLabel(error.GetDescription(), feature);
    if (feature.empty() || text.find(feature) != std::string::npos)
        return fmt::format("{}: {}", camera.Name(), text);
    return fmt::format("{}: {}: {}", camera.Name(), feature, text);
}

template <class Error>
[[noreturn]] void ThrowAbout(const CameraState& camera, GenApi::INode* node, const std::string& text,
                             const std::string& allowed = std::string()) {
    if (node == nullptr)
        throw CameraError(text, camera.Name());
    throw Error(allowed.empty() ? text : fmt::format("{}. It takes {}.", text, allowed), camera.Name(),
                node->GetName().str(), allowed);
}

}  // namespace

/**
 * \brief Throw the exception being handled, a GenICam one, as one of ours
 * \param[in] node The feature that was used, null for none
 */
void RethrowForPeople(const CameraState& camera, GenApi::INode* node) {
    camera.RequireThere();
    try {
        throw;
    } catch (const GenICam::TimeoutException& error) {
        throw CameraTimeout(Sentence(camera, node, error), camera.Name());
    } catch (const GenICam::AccessException& error) {
        ThrowAbout<FeatureNotAccessible>(camera, node, Sentence(camera, node, error));
    } catch (const GenICam::OutOfRangeException& error) {
        ThrowAbout<FeatureOutOfRange>(camera, node, Sentence(camera, node, error), AllowedText(node));
    } catch (const GenICam::InvalidArgumentException& error) {
        ThrowAbout<FeatureTypeError>(camera, node, Sentence(camera, node, error), AllowedText(node));
    } catch (const GenICam::GenericException& error) {
        ThrowAbout<FeatureError>(camera, node, Sentence(camera, node, error));
    }
}

}  // namespace Vanto
