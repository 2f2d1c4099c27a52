/* SPDX-License-Identifier: Apache-2.0 */
/*
 * KnownCameras: the cameras that this user was shown, and their numbers
 */
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace tools {

/// A camera and its place.
struct CameraAddress {
    std::string portId;
    std::string deviceId;  ///< full DeviceID, its driver included

    /// Whether it is the same camera by manufacturer, family, model and serial number, wherever it is plugged in.
    bool IsSameCamera(const CameraAddress& other) const;
    std::string SerialNumber() const;
};

/// A camera that was found once. Its number stays as long as it is known.
struct KnownCamera {
    std::size_t number = 0;
    CameraAddress address;
    std::string seen;                ///< date and time of the last look that found it, UTC
    std::uint32_t restBaudRate = 0;  ///< bit/s to which the user brought it to stay; 0 for the rate after power-on
};

/// The list of them; numbers are unique. Thread-bound.
class KnownCameras {
public:
    const std::vector<KnownCamera>& All() const noexcept { return m_cameras; }
    /// The camera at a port; null when it is not known there.
    const KnownCamera* At(const CameraAddress& address) const;
    /// The camera that was seen last at a port; null when none was.
    const KnownCamera* LastAt(const std::string& portId) const noexcept;

    /// Adds a camera as it was remembered; false when there is one with its number.
    bool Add(KnownCamera camera);
    void Remember(const std::vector<CameraAddress>& found, const std::set<std::string>& portsInUse,
                  const std::string& now);
    void SetRestBaudRate(const CameraAddress& address, std::uint32_t bitsPerSecond);

private:
    std::size_t PlaceOf(const CameraAddress& address) const;
    KnownCamera* Moved(const CameraAddress& address, const std::set<std::size_t>& found,
                       const std::set<std::string>& portsInUse);
    KnownCamera& New();
    void ForgetSome();

    std::vector<KnownCamera> m_cameras;  // by number
};

}  // namespace tools
