/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The cameras that a list shows: those that answered and those that somebody uses
 */
#include "cameras/CameraList.h"

#include <algorithm>
#include <limits>

#include "cameras/BaudRates.h"
#include "cameras/Records.h"

namespace tools {

namespace {

std::optional<KnownCamera> CopyOf(const KnownCamera* camera) {
    return camera != nullptr ? std::optional(*camera) : std::nullopt;
}

}  // namespace

std::string ListedCamera::Name() const {
    return known ? NameOf(RecordOf(known->address)) : std::string();
}

std::uint32_t ListedCamera::RestBaudRate() const noexcept {
    return known && known->restBaudRate != 0 ? known->restBaudRate : kFirstBaudRate;
}

std::vector<ListedCamera> ListCameras(const TransportLayer& layer, const Enumeration& enumeration,
                                      const KnownCameras& known) {
    std::vector<ListedCamera> list;
    for (const Vanto::CDeviceInfo& record : enumeration.cameras) {
        const CameraAddress address = AddressOf(record);
        const auto news = layer.Ports().Of(address.portId);
        list.push_back({CopyOf(known.At(address)), record, address.portId, std::nullopt, news ? news->baudRate : 0});
    }
    for (const std::string& portId : enumeration.PortsInUse())
        list.push_back({CopyOf(known.LastAt(portId)), std::nullopt, portId,
                        UserOf(layer.Ports().Of(portId).value_or(PortNews())), 0});
    std::ranges::stable_sort(list, {}, [](const ListedCamera& camera) {
        return camera.known ? camera.known->number : std::numeric_limits<std::size_t>::max();
    });
    return list;
}

}  // namespace tools
