/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Libraries that are owned, and where those of a tree lie
 */
#include "os/Library.h"

#include <string_view>
#include <utility>

#include "os/Path.h"

namespace os {

Library::~Library() {
    Unload();
}

Library::Library(Library&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)), m_path(std::exchange(other.m_path, {})) {}

Library& Library::operator=(Library&& other) noexcept {
    if (this != &other) {
        Unload();
        m_handle = std::exchange(other.m_handle, nullptr);
        m_path = std::exchange(other.m_path, {});
    }
    return *this;
}

/// Forgets the library without releasing it: it stays loaded as long as the process lives.
void Library::Keep() noexcept {
    m_handle = nullptr;
    m_path.clear();
}

/**
 * \brief Folder of a tree's libraries
 * \param[in] address Address of a function or of static data
 * \return Absolute path of the folder that the library with this code lies in; where that is a library with everything
 *         linked in, which lies in the folder of GenTL producers, the folder of the libraries above it
 */
std::string FolderOfLibraries(const void* address) {
    std::string folder = FolderOf(PathOfCode(address));
    const std::string producers = ToSystemSeparators("/vanto/gentl");
    if (folder.ends_with(producers))
        folder.resize(folder.size() - producers.size());
    return folder;
}

}  // namespace os
