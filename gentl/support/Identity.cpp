/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who the producer is
 */
#include "support/Identity.h"

#include <gcrypt.h>

#include "os/Library.h"

namespace gentl {

std::string ProducerVersion() {
    return VANTO_VERSION;
}

/// Path of the producer's own file, as the system has loaded it.
std::string ProducerPath() {
    return os::PathOfCode(reinterpret_cast<const void*>(&ProducerPath));
}

/// The 20 bytes of a SHA-1.
std::vector<std::uint8_t> Sha1Of(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kSha1Bytes = 20;
    std::vector<std::uint8_t> hash(kSha1Bytes);
    gcry_md_hash_buffer(GCRY_MD_SHA1, hash.data(), bytes.data(), bytes.size());
    return hash;
}

}  // namespace gentl
