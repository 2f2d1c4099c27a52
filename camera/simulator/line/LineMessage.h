/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a line and the program that lends it say to each other
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "gencp/ByteOrder.h"

namespace MarlowSim {

/// Each connection is one line, which ends with it. The borrower begins with kOpen; whatever it asks has one answer, of
/// the same type, and bytes of the host come between answers.
enum class LineMessageType : std::uint8_t {
    kOpen = 1,  ///< the line's name; answered by nothing, or by the reason why there is none
    kBytes,     ///< from or to the host; without an answer
    kHostRate,  ///< answered by 4 bytes, bit/s
    kIsRead,    ///< whether the host has read all that was sent; answered by 4 bytes, 0 or 1
    kClose      ///< hangs the line up; answered when its link has gone
};

struct LineMessage {
    LineMessageType type{};
    gencp::Bytes content;

    std::uint32_t Number() const;  ///< 0 when it has none
    std::string Text() const { return {content.begin(), content.end()}; }
};

gencp::Bytes Encode(LineMessageType type, gencp::ByteView content = {});
gencp::Bytes EncodeNumber(LineMessageType type, std::uint32_t number);
gencp::Bytes EncodeText(LineMessageType type, std::string_view text);
std::optional<LineMessage> TakeLineMessage(gencp::Bytes& received);

}  // namespace MarlowSim
