/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1 of texts
 */

#include "Sha1.h"

#include <gcrypt.h>

#include <array>

namespace CLProtocol {

namespace {

void InitializeLibrary() {
    // The application may have done it.
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) != 0)
        return;
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
}

}  // namespace

std::string Sha1Of(std::string_view bytes) {
    static const bool isInitialized = (InitializeLibrary(), true);
    static_cast<void>(isInitialized);
    std::array<unsigned char, 20> digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA1, digest.data(), bytes.data(), bytes.size());
    std::string text;
    for (const unsigned char byte : digest)
        for (const int digit : {byte >> 4, byte & 15})
            text += "0123456789abcdef"[digit];
    return text;
}

}  // namespace CLProtocol
