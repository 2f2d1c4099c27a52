/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a line and the program that lends it say to each other
 */

#include "line/LineMessage.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace MarlowSim {

namespace {

constexpr std::size_t kHeaderSize = 5;  // type, and size of the content
constexpr std::uint32_t kMaxContent = 1U << 20U;

}  // namespace

std::uint32_t LineMessage::Number() const {
    return content.size() == 4 ? gencp::Load32(content, 0) : 0;
}

/// The bytes of a message, ready to be sent.
gencp::Bytes Encode(LineMessageType type, gencp::ByteView content) {
    gencp::Bytes bytes(kHeaderSize + content.size());
    bytes[0] = static_cast<std::uint8_t>(type);
    gencp::Store32(bytes, 1, static_cast<std::uint32_t>(content.size()));
    std::copy(content.begin(), content.end(), bytes.begin() + kHeaderSize);
    return bytes;
}

gencp::Bytes EncodeNumber(LineMessageType type, std::uint32_t number) {
    gencp::Bytes content(4);
    gencp::Store32(content, 0, number);
    return Encode(type, content);
}

gencp::Bytes EncodeText(LineMessageType type, std::string_view text) {
    return Encode(type, gencp::Bytes(text.begin(), text.end()));
}

/**
 * \brief Take the first message from what was received
 * \return Nothing while it is not whole
 * \throw std::runtime_error It is longer than any message
 */
std::optional<LineMessage> TakeLineMessage(gencp::Bytes& received) {
    if (received.size() < kHeaderSize)
        return std::nullopt;
    const std::uint32_t size = gencp::Load32(received, 1);
    if (size > kMaxContent)
        throw std::runtime_error("a message about a line is too long");
    if (received.size() - kHeaderSize < size)
        return std::nullopt;
    const auto begin = received.begin() + kHeaderSize;
    LineMessage message{static_cast<LineMessageType>(received[0]), {begin, begin + size}};
    received.erase(received.begin(), begin + size);
    return message;
}

}  // namespace MarlowSim
