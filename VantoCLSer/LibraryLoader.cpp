/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */

#include "VantoCLSer/LibraryLoader.h"

#include "Base/GCUtilities.h"
#include "os/Path.h"

namespace Vanto {

/**
 * \brief Load a library in place of the one held before
 * \param[in] path At most 258 characters once environment variables are replaced; either separator will do
 * \return false when the path is too long or the system can't load the library; the one held before stays
 */
bool CLibraryLoader::Load(const gcstring& path) noexcept {
    try {
        gcstring expanded = path;
        GenICam::ReplaceEnvironmentVariables(expanded);
        if (expanded.size() + 1 >= os::kMaxPath)
            return false;
        m_library = os::Library(os::ToSystemSeparators(expanded.view()));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace Vanto
