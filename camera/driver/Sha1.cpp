/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the manifest of a GenCP camera gives it for a file
 */

#include "Sha1.h"

#include <gcrypt.h>

#include <mutex>

namespace marlow {

namespace {

// The host may use the same library: what it has set up stays as it is.
void Initialise() {
    static std::once_flag once;
    std::call_once(once, [] {
        gcry_check_version(nullptr);
        if (!gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P)) {
            gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
            gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        }
    });
}

}  // namespace

/// The digest of some bytes. Thread-safe.
Sha1Digest Sha1(gencp::ByteView bytes) {
    Initialise();
    Sha1Digest digest{};
    gcry_md_hash_buffer(GCRY_MD_SHA1, digest.data(), bytes.data(), bytes.size());
    return digest;
}

}  // namespace marlow
