/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What an error code means: a refusal, or a line on which nobody answers
 */
#pragma once

#include <cstdint>
#include <string>

namespace CLProtocol {

/// What the serial line has shown since a call began.
enum class LineEvidence {
    kUnused,    ///< nothing was sent, nor read
    kSilent,    ///< nothing was received since something was sent
    kAnswered,  ///< something was received since then
    kFailed     ///< the serial library failed last
};

[[noreturn]] void ThrowFailure(const std::string& text, std::int32_t code, LineEvidence evidence);

}  // namespace CLProtocol
