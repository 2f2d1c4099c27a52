/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The number and the checksum that a simulated frame carries in its first bytes
 */

#include "FrameMark.h"

#include <bit>
#include <cstring>

namespace grabber {

namespace {

static_assert(std::endian::native == std::endian::little, "Words are read as they lie in memory");

constexpr std::size_t kWord = sizeof(std::uint64_t);

}  // namespace

/**
 * \brief Sum of all 64-bit words and sum of these sums, folded into one number
 * \param[in] bytes Any number; the last word is filled with zeros
 * \param[in] number Start of the sums
 *
 * The second sum weighs each word by its place: words that changed places change the result.
 */
std::uint64_t FrameChecksum(std::span<const std::uint8_t> bytes, std::uint64_t number) noexcept {
    std::uint64_t sum = number + bytes.size();
    std::uint64_t sums = sum;
    std::size_t at = 0;
    for (; at + kWord <= bytes.size(); at += kWord) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, kWord);
        sum += word;
        sums += sum;
    }
    std::uint64_t rest = 0;
    if (at != bytes.size())
        std::memcpy(&rest, bytes.data() + at, bytes.size() - at);
    sum += rest;
    sums += sum;
    return sums ^ std::rotl(sum, 32);
}

/**
 * \brief Write the mark into the first bytes of an image; one that is smaller than the mark gets none
 */
void WriteFrameMark(std::span<std::uint8_t> image, std::uint64_t number) noexcept {
    if (image.size() < kFrameMarkSize)
        return;
    const std::uint64_t checksum = FrameChecksum(image.subspan(kFrameMarkSize), number);
    std::memcpy(image.data(), &number, kWord);
    std::memcpy(image.data() + kWord, &checksum, kWord);
}

/**
 * \brief The frame's number; nothing when the image is damaged or too small for a mark
 */
std::optional<std::uint64_t> ReadFrameMark(std::span<const std::uint8_t> image) noexcept {
    if (image.size() < kFrameMarkSize)
        return std::nullopt;
    std::uint64_t number = 0;
    std::uint64_t checksum = 0;
    std::memcpy(&number, image.data(), kWord);
    std::memcpy(&checksum, image.data() + kWord, kWord);
    if (checksum != FrameChecksum(image.subspan(kFrameMarkSize), number))
        return std::nullopt;
    return number;
}

}  // namespace grabber
