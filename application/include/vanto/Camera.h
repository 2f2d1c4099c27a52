/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera: a camera that is open as long as this object lives
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vanto/CameraError.h"
#include "vanto/Feature.h"
#include "vanto/FeatureMap.h"
#include "vanto/Frame.h"
#include "vanto/FrameStream.h"
#include "vanto/Subscription.h"

namespace Vanto {

class CDeviceInfo;
class IVantoDevice;

/// A camera as it was found. Texts that it does not tell are empty.
struct CameraRecord {
    std::string name;                                             ///< for people: "Marlow H2048 (24000001)"
    std::string serialNumber;                                     ///<  the camera's own
    std::string port;                                             ///< as CLProtocol names it: "COM_Port#ttyS0"
    std::string fullName;                                         ///< names this camera on this port and no other
    std::string vendor;                                           ///<  the camera's maker
    std::string model;                                            ///<  the camera's model
    std::vector<std::pair<std::string, std::string>> properties;  ///< all of them, sorted by name
};

/// A camera that is open as long as this object lives. All operations may be called from any thread; an error names the
/// camera, and the feature where it is about one.
class VANTOAPPLICATION_API Camera {
public:
    static std::vector<CameraRecord> List();

    /// Opens the only camera that is there.
    Camera();
    /// Opens the camera with this serial number, name, full name or port ("ttyS0" or "COM_Port#ttyS0").
    explicit Camera(const std::string& name);
    /// Opens the camera that has all properties of a record, which may be partial.
    explicit Camera(const CDeviceInfo& wanted);
    /// Takes the camera over; the other may only be destroyed or assigned to.
    Camera(Camera&&) noexcept;
    /// Closes its camera and takes another over.
    Camera& operator=(Camera&&) noexcept;
    ~Camera();

    const std::string& Name() const noexcept;
    /// What was found of it.
    CameraRecord Record() const;
    bool IsOpen() const noexcept;
    bool IsGone() const noexcept;
    void Close();

    // --- Features ---
    FeatureMap Features() const;
    FeatureMap StreamFeatures() const;
    FeatureMap TransportFeatures() const;
    /// The feature of a name; throws UnknownFeature.
    Feature operator[](const std::string& name) const { return Features()[name]; }
    /// The value of a feature, as Feature::Get.
    template <class T>
    T Get(const std::string& name) const {
        return (*this)[name].template Get<T>();
    }
    /// Sets a feature, as Feature::Set.
    template <class T>
    void Set(const std::string& name, const T& value) const {
        (*this)[name].Set(value);
    }
    /// Executes a command and waits until it is done, as Feature::Execute.
    void Execute(const std::string& name, std::chrono::milliseconds timeout = std::chrono::seconds(10)) const {
        (*this)[name].Execute(timeout);
    }
    Subscription Select(const std::string& selector, const FeatureValue& value) const;

    // --- Settings as a file, the same as of "vanto-cl save" and "vanto-cl load" ---
    std::vector<SettingFault> Save(const std::string& path) const;
    void Load(const std::string& path) const;
    std::string SettingsText(std::vector<SettingFault>& faults) const;
    void LoadText(const std::string& text, const std::string& origin) const;

    // --- Frames ---
    FrameStream Stream(const StreamOptions& options = StreamOptions()) const;
    FrameStream Grab(std::uint64_t count) const;
    Frame GrabOne() const;
    /// Takes one image and writes it into a file, whose name chooses the format; throws as GrabOne and Frame::Save do.
    void SaveImage(const std::string& path) const { GrabOne().Save(path); }
    Subscription OnFrame(std::function<void(Frame&)> callback, std::function<void(std::exception_ptr)> failed = nullptr,
                         const StreamOptions& options = StreamOptions()) const;

    // --- Registers, past the description ---
    FeatureBytes ReadRegisters(std::int64_t address, std::size_t length) const;
    void WriteRegisters(std::int64_t address, const FeatureBytes& bytes) const;

    // --- Events ---
    Subscription OnRemoval(std::function<void()> callback) const;
    void SetStopCheck(std::function<bool()> check) const;

    /// The device behind it, for what is not here. It lives as long as this object, its features and streams do.
    IVantoDevice& Device() const;

private:
    std::shared_ptr<CameraState> m_state;
};

}  // namespace Vanto
