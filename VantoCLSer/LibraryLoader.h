/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */
#pragma once

#include "os/Library.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

/// Keeps at most one library loaded; loading another replaces it only when that succeeds.
class CLibraryLoader {
public:
    bool Load(const gcstring& path) noexcept;
    void Unload() noexcept { m_library.Unload(); }
    bool IsLoaded() const noexcept { return m_library.IsLoaded(); }
    const os::Library& GetLibrary() const noexcept { return m_library; }

private:
    os::Library m_library;
};

}  // namespace Vanto
