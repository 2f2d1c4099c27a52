/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the GenCP manifest names a description file
 */
#include "output/Sha1.h"

#include <fmt/format.h>
#include <gcrypt.h>

#include <array>

namespace tools {

std::string Sha1(std::string_view bytes) {
    // The library wants to be asked for its version before its first use.
    [[maybe_unused]] static const char* const version = gcry_check_version(nullptr);
    constexpr std::size_t kLength = 20;
    std::array<unsigned char, kLength> digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA1, digest.data(), bytes.data(), bytes.size());
    std::string text;
    for (const unsigned char byte : digest)
        text += fmt::format("{:02x}", byte);
    return text;
}

}  // namespace tools
