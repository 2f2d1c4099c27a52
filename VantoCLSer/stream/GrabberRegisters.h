/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The registers of a stream grabber's own node map, served by the plug-in
 */
#pragma once

#include <cstdint>

namespace Vanto {

class CFrameGrabberPlugin;

/// A read that can't be served leaves the buffer as it is; nothing is thrown. Wants the stream grabber's lock.
void ReadGrabberRegister(CFrameGrabberPlugin& plugin, void* buffer, std::int64_t address, std::int64_t length) noexcept;
void WriteGrabberRegister(CFrameGrabberPlugin& plugin, const void* buffer, std::int64_t address,
                          std::int64_t length) noexcept;

}  // namespace Vanto
