/* SPDX-License-Identifier: Apache-2.0 */
/*
 * By what a process knows a text again
 *
 * A keyed hash as VMAC has it (T. Krovetz and W. Dai, draft-krovetz-vmac-01): blocks of 1024 bytes are hashed with NH,
 * the hashes are the coefficients of a polynomial, which is evaluated at two points, modulo 2^61 - 1.
 */

#include "schema/TextFingerprint.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "schema/NameIndex.h"

namespace GenApi {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::size_t kWords = 128;
using Block = std::array<std::uint64_t, kWords>;
constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61) - 1;

struct Keys {
    Block words{};
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

// SplitMix64 (G. Steele, D. Lea, C. Flood: Fast splittable pseudorandom number generators).
std::uint64_t Draw(std::uint64_t& state) noexcept {
    std::uint64_t drawn = state += 0x9E3779B97F4A7C15U;
    drawn = (drawn ^ (drawn >> 30)) * 0xBF58476D1CE4E5B9U;
    drawn = (drawn ^ (drawn >> 27)) * 0x94D049BB133111EBU;
    return drawn ^ (drawn >> 31);
}

const Keys& ProcessKeys() noexcept {
    static const Keys keys = [] {
        Keys drawn;
        std::uint64_t state = HashSeed();
        for (std::uint64_t& word : drawn.words)
            word = Draw(state);
        drawn.first = Draw(state) % kPrime;
        drawn.second = Draw(state) % kPrime;
        return drawn;
    }();
    return keys;
}

Wide HashOf(const char* block, const Keys& keys) noexcept {
    Wide sum = 0;
    for (std::size_t i = 0; i < kWords; i += 2) {
        std::array<std::uint64_t, 2> words{};
        std::memcpy(words.data(), block + i * sizeof(std::uint64_t), sizeof(words));
        sum += static_cast<Wide>(words[0] + keys.words[i]) * (words[1] + keys.words[i + 1]);
    }
    return sum;
}

std::uint64_t Step(std::uint64_t hash, std::uint64_t key, std::uint64_t coefficient) noexcept {
    const Wide product = static_cast<Wide>(hash) * key + coefficient;
    // 2^61 is 1: the upper bits count like the lower ones.
    const std::uint64_t sum =
        (static_cast<std::uint64_t>(product) & kPrime) + static_cast<std::uint64_t>(product >> 61);
    return sum >= kPrime ? sum - kPrime : sum;
}

}  // namespace

TextFingerprint FingerprintOf(std::string_view text) noexcept {
    const Keys& keys = ProcessKeys();
    TextFingerprint print{0, 0, text.size()};
    while (!text.empty()) {
        std::array<char, sizeof(Block)> last{};
        const char* block = text.data();
        if (text.size() < last.size()) {
            std::memcpy(last.data(), text.data(), text.size());
            block = last.data();
        }
        text.remove_prefix(std::min(text.size(), last.size()));
        // Three coefficients of at most 61 bits.
        Wide sum = HashOf(block, keys);
        for (int part = 0; part < 3; ++part, sum >>= 43) {
            const auto coefficient = static_cast<std::uint64_t>(sum & ((std::uint64_t{1} << 43) - 1));
            print.first = Step(print.first, keys.first, coefficient);
            print.second = Step(print.second, keys.second, coefficient);
        }
    }
    return print;
}

}  // namespace GenApi
