/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The registers of a stream grabber's own node map, served by the plug-in
 */

#include "VantoCLSer/stream/GrabberRegisters.h"

#include <algorithm>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/FrameGrabberPlugin.h"

namespace Vanto {

namespace {

constexpr std::int64_t kPixelClockAddress = 0xC05EC0C10C;
constexpr std::int64_t kPoCLStateAddress = 0x90C157A7E;

void ReadPixelClock(CFrameGrabberPlugin& plugin, std::uint8_t* bytes, std::int64_t length) noexcept {
    std::uint64_t value = 0;
    if (bytes == nullptr || !plugin.GetValue(kFgPixelClockDetected, value))
        return;
    for (std::int64_t index = 0; index < std::min<std::int64_t>(length, sizeof(value)); ++index)
        bytes[index] = static_cast<std::uint8_t>(value >> (8 * index));
}

}  // namespace

void ReadGrabberRegister(CFrameGrabberPlugin& plugin, void* buffer, std::int64_t address,
                         std::int64_t length) noexcept {
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    if (address == kPixelClockAddress) {
        ReadPixelClock(plugin, bytes, length);
    } else if (address == kPoCLStateAddress) {
        std::int32_t state = 0;
        if (bytes != nullptr && length == 1 && plugin.PoCLControl(kFgPoCLQuery, state))
            *bytes = state == 1 ? 1 : 0;
    } else {
        LogTrace(StreamLog(), tracelog::kWarning, "Unknown read port address Address=%I64 (%I64#x)", address, address);
    }
}

void WriteGrabberRegister(CFrameGrabberPlugin& plugin, const void* buffer, std::int64_t address,
                          std::int64_t length) noexcept {
    if (address != kPoCLStateAddress) {
        LogTrace(StreamLog(), tracelog::kWarning, "Unknown write port address Address=%I64 (%I64#x)", address, address);
        return;
    }
    std::int32_t ignored = 0;
    if (buffer != nullptr && length == 1)
        plugin.PoCLControl(*static_cast<const std::uint8_t*>(buffer) == 1 ? kFgPoCLOn : kFgPoCLOff, ignored);
}

}  // namespace Vanto
