/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the manifest of a GenCP camera gives it for a file
 */
#include "base/Sha1.h"

#include <gcrypt.h>

namespace base {

namespace {

// The library wants to be set up before its first use. Where the application has done it, that stays as it is.
void SetUp() {
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) != 0)
        return;
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
}

Sha1Sum SumOf(const void* bytes, std::size_t size) {
    static const bool isSetUp = (SetUp(), true);
    static_cast<void>(isSetUp);
    Sha1Sum sum{};
    gcry_md_hash_buffer(GCRY_MD_SHA1, sum.data(), bytes, size);
    return sum;
}

}  // namespace

/**
 * \brief The SHA-1 of some bytes (FIPS 180-4)
 *
 * Any thread may call it at any time.
 */
Sha1Sum Sha1(std::span<const std::uint8_t> bytes) {
    return SumOf(bytes.data(), bytes.size());
}

Sha1Sum Sha1(std::string_view bytes) {
    return SumOf(bytes.data(), bytes.size());
}

std::string ToText(const Sha1Sum& sum) {
    std::string text;
    for (const std::uint8_t byte : sum)
        for (const int digit : {byte >> 4, byte & 15})
            text += "0123456789abcdef"[digit];
    return text;
}

}  // namespace base
