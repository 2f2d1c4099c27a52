/* SPDX-License-Identifier: Apache-2.0 */
/*
 * KnownCameras: the cameras that this user was shown, and their numbers
 */
#include "cameras/KnownCameras.h"

#include <algorithm>
#include <utility>

#include "CLProtocol/DeviceID.h"

namespace tools {

namespace {

// Whoever tests cameras by the hundred, one after the other, is not to have numbers by the hundred.
constexpr std::size_t kMostCameras = 128;

}  // namespace

bool CameraAddress::IsSameCamera(const CameraAddress& other) const {
    const CLProtocol::CDeviceID own(deviceId);
    const CLProtocol::CDeviceID others(other.deviceId);
    return own.GetCameraManufacturer() == others.GetCameraManufacturer() &&
           own.GetCameraFamily() == others.GetCameraFamily() && own.GetCameraModel() == others.GetCameraModel() &&
           own.GetCameraSerialNumber() == others.GetCameraSerialNumber();
}

std::string CameraAddress::SerialNumber() const {
    return CLProtocol::CDeviceID(deviceId).GetCameraSerialNumber().str();
}

// In the list; its size where the camera is not known.
std::size_t KnownCameras::PlaceOf(const CameraAddress& address) const {
    const auto known = std::ranges::find_if(m_cameras, [&](const KnownCamera& camera) {
        return camera.address.portId == address.portId && camera.address.IsSameCamera(address);
    });
    return static_cast<std::size_t>(known - m_cameras.begin());
}

const KnownCamera* KnownCameras::At(const CameraAddress& address) const {
    const std::size_t place = PlaceOf(address);
    return place < m_cameras.size() ? &m_cameras[place] : nullptr;
}

const KnownCamera* KnownCameras::LastAt(const std::string& portId) const noexcept {
    const KnownCamera* last = nullptr;
    for (const KnownCamera& camera : m_cameras)
        if (camera.address.portId == portId && (last == nullptr || last->seen < camera.seen))
            last = &camera;
    return last;
}

bool KnownCameras::Add(KnownCamera camera) {
    const auto place = std::ranges::lower_bound(m_cameras, camera.number, {}, &KnownCamera::number);
    if (place != m_cameras.end() && place->number == camera.number)
        return false;
    m_cameras.insert(place, std::move(camera));
    return true;
}

/**
 * \brief Take over what a look for cameras found
 * \param[in] found Where it found which
 * \param[in] portsInUse Ports that could not be asked: the cameras there are still there
 * \param[in] now Date and time of the look; texts in the order of time
 *
 * A camera keeps its number at its port, and takes it along to another one. A new camera gets the lowest number that no
 * known camera has.
 */
void KnownCameras::Remember(const std::vector<CameraAddress>& found, const std::set<std::string>& portsInUse,
                            const std::string& now) {
    std::set<std::size_t> taken;
    const auto update = [&](KnownCamera& camera, const CameraAddress& address) {
        camera.address = address;
        camera.seen = now;
        taken.insert(camera.number);
    };
    std::vector<CameraAddress> elsewhere;
    for (const CameraAddress& address : found) {
        if (const std::size_t place = PlaceOf(address); place < m_cameras.size())
            update(m_cameras[place], address);
        else
            elsewhere.push_back(address);
    }
    for (const CameraAddress& address : elsewhere) {
        KnownCamera* const moved = Moved(address, taken, portsInUse);
        update(moved != nullptr ? *moved : New(), address);
    }
    ForgetSome();
}

void KnownCameras::SetRestBaudRate(const CameraAddress& address, std::uint32_t bitsPerSecond) {
    if (const std::size_t place = PlaceOf(address); place < m_cameras.size())
        m_cameras[place].restBaudRate = bitsPerSecond;
}

// The one camera that this can be: one without a serial number may be any of its model.
KnownCamera* KnownCameras::Moved(const CameraAddress& address, const std::set<std::size_t>& found,
                                 const std::set<std::string>& portsInUse) {
    if (address.SerialNumber().empty())
        return nullptr;
    KnownCamera* moved = nullptr;
    for (KnownCamera& camera : m_cameras) {
        if (found.contains(camera.number) || portsInUse.contains(camera.address.portId) ||
            !camera.address.IsSameCamera(address))
            continue;
        if (moved != nullptr)
            return nullptr;
        moved = &camera;
    }
    return moved;
}

KnownCamera& KnownCameras::New() {
    KnownCamera camera;
    for (const KnownCamera& known : m_cameras) {
        if (known.number != camera.number)
            break;
        ++camera.number;
    }
    const auto place = std::ranges::lower_bound(m_cameras, camera.number, {}, &KnownCamera::number);
    return *m_cameras.insert(place, std::move(camera));
}

// Those that were absent longest go first; of those that are there, none does.
void KnownCameras::ForgetSome() {
    while (m_cameras.size() > kMostCameras) {
        const auto [oldest, newest] = std::ranges::minmax_element(m_cameras, {}, &KnownCamera::seen);
        if (oldest->seen == newest->seen)
            return;
        m_cameras.erase(oldest);
    }
}

}  // namespace tools
