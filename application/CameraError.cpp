/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What Vanto::Camera and its parts throw
 */
#include "vanto/CameraError.h"

#include <utility>

namespace Vanto {

/**
 * \brief Make an error
 * \param[in] text The whole sentence, camera included
 * \param[in] camera Friendly name of the camera, empty where none was chosen yet
 */
CameraError::CameraError(const std::string& text, const std::string& camera)
    : std::runtime_error(text), m_camera(std::make_shared<const std::string>(camera)) {}

const std::string& CameraError::CameraName() const noexcept {
    return *m_camera;
}

/**
 * \brief Make an error about a feature
 * \param[in] text The whole sentence, camera and feature included
 * \param[in] camera Friendly name of the camera
 * \param[in] feature Name of the feature
 * \param[in] allowed What it takes at present, empty where that is not the question
 */
FeatureError::FeatureError(const std::string& text, const std::string& camera, const std::string& feature,
                           const std::string& allowed)
    : CameraError(text, camera), m_details(std::make_shared<const Details>(Details{feature, allowed})) {}

const std::string& FeatureError::FeatureName() const noexcept {
    return m_details->feature;
}
const std::string& FeatureError::Allowed() const noexcept {
    return m_details->allowed;
}

/// Makes an error of settings that were not taken; \a text is the whole sentence.
SettingsRefused::SettingsRefused(const std::string& text, const std::string& camera, std::vector<SettingFault> faults)
    : CameraError(text, camera), m_faults(std::make_shared<const std::vector<SettingFault>>(std::move(faults))) {}

const std::vector<SettingFault>& SettingsRefused::Faults() const noexcept {
    return *m_faults;
}

// Out of line, so that the type information of each lies in this library alone.
CameraError::~CameraError() = default;
NoCamera::~NoCamera() = default;
CameraGone::~CameraGone() = default;
CameraClosed::~CameraClosed() = default;
CameraTimeout::~CameraTimeout() = default;
Interrupted::~Interrupted() = default;
GrabError::~GrabError() = default;
FeatureError::~FeatureError() = default;
UnknownFeature::~UnknownFeature() = default;
FeatureNotAccessible::~FeatureNotAccessible() = default;
FeatureOutOfRange::~FeatureOutOfRange() = default;
FeatureTypeError::~FeatureTypeError() = default;
SettingsRefused::~SettingsRefused() = default;

}  // namespace Vanto
