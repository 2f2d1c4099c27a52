/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */

#include "VantoCLSer/base/LibraryLoader.h"

#include "Base/GCUtilities.h"
#include "os/Path.h"

namespace Vanto {

/// Waits for a loading that hangs: the plug-in, whose code runs there, may be unloaded next.
CLibraryLoader::~CLibraryLoader() {
    if (m_thread.joinable())
        m_thread.join();
}

/**
 * \brief Load a library in place of the one held before
 *
 * The system loads one library at a time, in the whole process: where it hangs in another one, this gives up.
 *
 * \param[in] path At most 258 characters once environment variables are replaced; either separator will do
 * \return false when the path is too long, or the system can't load the library or does not do so in time; the one
 *         held before stays
 */
bool CLibraryLoader::Load(const gcstring& path) noexcept {
    try {
        gcstring expanded = path;
        GenICam::ReplaceEnvironmentVariables(expanded);
        if (expanded.size() + 1 >= os::kMaxPath)
            return false;
        if (IsStuck(std::chrono::milliseconds(0)))
            return false;
        std::packaged_task<os::Library()> load(
            [file = os::ToSystemSeparators(expanded.view())] { return os::Library(file); });
        m_loading = load.get_future();
        m_thread = std::thread(std::move(load));
        if (IsStuck(m_patience))
            return false;
        m_library = m_loading.get();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

// Whether the last loading, which may be an earlier one, does not end in time.
bool CLibraryLoader::IsStuck(std::chrono::milliseconds patience) {
    if (m_thread.joinable()) {
        if (m_loading.wait_for(patience) != std::future_status::ready)
            return true;
        m_thread.join();
    }
    return false;
}

}  // namespace Vanto
