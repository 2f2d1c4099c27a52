/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the device-specific string asks of the simulated grabber
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace grabber {

enum class Pattern { kDiagonal, kColumns, kNoise, kBlack };

/// docs/simulated-frame-grabber.md tells what each means.
struct Settings {
    double frameRate = 100;   ///< frames a second; 0: as fast as possible
    std::uint32_t pitch = 1;  ///< lines begin at multiples of this many bytes
    Pattern pattern = Pattern::kDiagonal;
    std::uint64_t dropEvery = 0;  ///< 0: none is dropped
    std::uint64_t frames = 0;     ///< of one grab; 0: no end
    bool triggered = false;       ///< DebugData1 says how many frames there are
    std::uint32_t firstTag = 0;
    std::uint64_t pixelClock = 85000000;  ///< Hz
    bool poCL = true;
    std::optional<std::string> failInit;
    std::optional<std::string> failStart;
    std::optional<std::string> failStop;
};

/// Reads "SaperaSimulated;Key=Value;..."; throws std::invalid_argument naming what it does not understand.
Settings ParseSettings(std::string_view parameters);

}  // namespace grabber
