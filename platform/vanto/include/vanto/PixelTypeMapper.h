/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CPixelTypeMapper: from the values of a camera's PixelFormat node to pixel types
 */
#pragma once

#include <cstdint>
#include <vector>

#include "vanto/PixelType.h"

namespace GenApi {
struct IEnumeration;
}

namespace Vanto {

/// Maps by the entries' symbolic names, as a camera's own entry values mean what it likes. Built once; a look-up does
/// not use the node, does not allocate and is thread-safe.
class VANTOBASE_API CPixelTypeMapper {
public:
    CPixelTypeMapper() = default;
    explicit CPixelTypeMapper(GenApi::IEnumeration* pixelFormat);

    /// Whether it knows any value.
    bool IsValid() const noexcept { return !m_entries.empty(); }
    EPixelType GetVantoPixelTypeFromNodeValue(std::int64_t nodeValue) const noexcept;
    static EPixelType GetVantoPixelTypeByName(const char* name) noexcept;
    static const char* GetNameByPixelType(EPixelType pixelType) noexcept;

private:
    struct Entry {
        std::int64_t nodeValue;
        EPixelType pixelType;
    };
    std::vector<Entry> m_entries;  // sorted by value
};

}  // namespace Vanto
