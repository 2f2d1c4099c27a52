/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A DLL as the loader sees it: what it exports, what it imports and its entry function
 */
#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>

namespace Vanto {

/// Loads a DLL and reads the tables of its image.
class LoadedImage {
public:
    explicit LoadedImage(const std::string& path);
    ~LoadedImage();
    LoadedImage(const LoadedImage&) = delete;
    LoadedImage& operator=(const LoadedImage&) = delete;

    HMODULE Module() const { return m_module; }
    /// Names of what the file defines for others.
    std::set<std::string> Exports() const;
    /// Names of the functions that the file wants, by the library it wants them of, in lower case.
    std::map<std::string, std::set<std::string>> Imports() const;
    /// Calls the entry function as the loader does.
    bool Notify(DWORD reason) const;

private:
    template <class T>
    const T* At(std::size_t offset) const {
        return reinterpret_cast<const T*>(reinterpret_cast<const char*>(m_module) + offset);
    }
    const IMAGE_OPTIONAL_HEADER64& Header() const;
    std::size_t Directory(std::size_t number) const;

    HMODULE m_module;
};

}  // namespace Vanto
