/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The raw registers of an open camera
 */
#include "features/RegisterPort.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/ValueText.h"
#include "error/ExitCode.h"
#include "system/Interruptible.h"

namespace tools {

/// An address of 64 bits; throws ToolError (kUsage).
std::int64_t AddressArgument(const std::string& text) {
    if (const auto address = base::IntegerFromText(text); address && text.find('-') == std::string::npos)
        return *address;
    throw ToolError(fmt::format("'{}' is no address", text), "Example: 0x10000", ExitCode::kUsage);
}

/**
 * \brief Read bytes as the camera has them, past all caches
 * \param[in] length Bytes; read in pieces, between which the user can end it
 * \throw CameraError The camera refuses
 */
std::vector<std::uint8_t> ReadRegisters(const OpenDevice& device, std::int64_t address, std::int64_t length) {
    constexpr std::int64_t kPiece = 4096;
    std::vector<std::uint8_t> bytes;
    for (std::int64_t done = 0; done < length; done += kPiece) {
        ThrowIfInterrupted();
        // Addresses are unsigned and may pass the middle of their range.
        const auto at =
            static_cast<std::int64_t>(static_cast<std::uint64_t>(address) + static_cast<std::uint64_t>(done));
        const auto piece = device.Camera().ReadRegisters(at, static_cast<std::size_t>(std::min(kPiece, length - done)));
        bytes.insert(bytes.end(), piece.begin(), piece.end());
    }
    return bytes;
}

}  // namespace tools
