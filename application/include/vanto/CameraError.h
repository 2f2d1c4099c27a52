/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What Vanto::Camera and its parts throw
 */
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef _WIN32
#define VANTOAPPLICATION_EXPORT __declspec(dllexport)
#define VANTOAPPLICATION_IMPORT __declspec(dllimport)
#else
#define VANTOAPPLICATION_EXPORT __attribute__((visibility("default")))
#define VANTOAPPLICATION_IMPORT VANTOAPPLICATION_EXPORT
#endif

#ifdef VantoApplication_EXPORTS
#define VANTOAPPLICATION_API VANTOAPPLICATION_EXPORT
#else
#define VANTOAPPLICATION_API VANTOAPPLICATION_IMPORT
#endif

namespace Vanto {

/// Root of what the classes for applications throw. The text is a sentence for people that names camera and feature.
class VANTOAPPLICATION_API CameraError : public std::runtime_error {
public:
    explicit CameraError(const std::string& text, const std::string& camera = std::string());
    ~CameraError() override;
    CameraError(const CameraError&) = default;
    CameraError& operator=(const CameraError&) = default;

    /// The camera's friendly name; empty where none was chosen yet.
    const std::string& CameraName() const noexcept;

private:
    std::shared_ptr<const std::string> m_camera;  // shared, so that copies can't fail
};

/// No camera fits, or several do; the text lists those that are there.
class VANTOAPPLICATION_API NoCamera : public CameraError {
public:
    using CameraError::CameraError;
    ~NoCamera() override;
};

/// The camera does not answer any more. It stays gone; open it anew when it is back.
class VANTOAPPLICATION_API CameraGone : public CameraError {
public:
    using CameraError::CameraError;
    ~CameraGone() override;
};

/// The camera was closed by this program.
class VANTOAPPLICATION_API CameraClosed : public CameraError {
public:
    using CameraError::CameraError;
    ~CameraClosed() override;
};

/// No frame came, or a command was not done, in time.
class VANTOAPPLICATION_API CameraTimeout : public CameraError {
public:
    using CameraError::CameraError;
    ~CameraTimeout() override;
};

/// A wait was ended by the program's own stop check.
class VANTOAPPLICATION_API Interrupted : public CameraError {
public:
    using CameraError::CameraError;
    ~Interrupted() override;
};

/// Frames can't be taken: no frame grabber, or one that refuses.
class VANTOAPPLICATION_API GrabError : public CameraError {
public:
    using CameraError::CameraError;
    ~GrabError() override;
};

/// Something is wrong with the use of one feature.
class VANTOAPPLICATION_API FeatureError : public CameraError {
public:
    FeatureError(const std::string& text, const std::string& camera, const std::string& feature,
                 const std::string& allowed = std::string());
    ~FeatureError() override;
    FeatureError(const FeatureError&) = default;
    FeatureError& operator=(const FeatureError&) = default;

    /// The name of the feature.
    const std::string& FeatureName() const noexcept;
    /// What the feature takes at present ("16 .. 2048 step 16", or entries); empty where that is not the question.
    const std::string& Allowed() const noexcept;

private:
    struct Details {
        std::string feature;
        std::string allowed;
    };
    std::shared_ptr<const Details> m_details;
};

/// The camera has no feature of this name.
class VANTOAPPLICATION_API UnknownFeature : public FeatureError {
public:
    using FeatureError::FeatureError;
    ~UnknownFeature() override;
};

/// The feature can't be read, written or executed at present.
class VANTOAPPLICATION_API FeatureNotAccessible : public FeatureError {
public:
    using FeatureError::FeatureError;
    ~FeatureNotAccessible() override;
};

/// The value is outside of what the feature takes at present.
class VANTOAPPLICATION_API FeatureOutOfRange : public FeatureError {
public:
    using FeatureError::FeatureError;
    ~FeatureOutOfRange() override;
};

/// The value is of a kind that the feature does not have: a word for a number, no entry of an enumeration, another
/// unit.
class VANTOAPPLICATION_API FeatureTypeError : public FeatureError {
public:
    using FeatureError::FeatureError;
    ~FeatureTypeError() override;
};

/// A feature that was not saved or not loaded, and why.
struct SettingFault {
    std::string feature;     ///< its name
    std::string selectors;   ///< "TriggerSelector=FrameStart", empty without selectors
    std::string reason;      ///<  a sentence
    std::uint64_t line = 0;  ///< of the file, from 1; 0 when saving
};

/// The camera did not take all settings of a file; the others are set.
class VANTOAPPLICATION_API SettingsRefused : public CameraError {
public:
    SettingsRefused(const std::string& text, const std::string& camera, std::vector<SettingFault> faults);
    ~SettingsRefused() override;
    SettingsRefused(const SettingsRefused&) = default;
    SettingsRefused& operator=(const SettingsRefused&) = default;

    /// Each of them, in the order of the file.
    const std::vector<SettingFault>& Faults() const noexcept;

private:
    std::shared_ptr<const std::vector<SettingFault>> m_faults;
};

}  // namespace Vanto
