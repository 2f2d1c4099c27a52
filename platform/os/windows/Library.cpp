/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Shared libraries on Windows
 */

#include "os/Library.h"

#include <windows.h>

#include <array>
#include <mutex>
#include <utility>

#include "os/LockName.h"

namespace os {

namespace {

std::mutex g_quietMutex;
[[maybe_unused]] const os::LockName g_quietMutexName(&g_quietMutex, "quiet loading");
unsigned g_quiet = 0;  // how many ask for it
UINT g_modeBefore = 0;

// Keeps the system from showing a message box about a missing library or drive. The mode is that of the process: of
// several that overlap, the first changes it and the last restores it.
class QuietErrors {
public:
    QuietErrors() {
        const std::lock_guard lock(g_quietMutex);
        if (g_quiet++ == 0)
            g_modeBefore = ::SetErrorMode(SEM_FAILCRITICALERRORS);
    }
    ~QuietErrors() {
        const std::lock_guard lock(g_quietMutex);
        if (--g_quiet == 0)
            ::SetErrorMode(g_modeBefore);
    }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
};

}  // namespace

/**
 * \brief Load a shared library
 * \param[in] path Path of the library
 * \context Any thread.
 * \throw LibraryError It can't be loaded; the text holds the path and the system's error number
 */
Library::Library(const std::string& path) : m_path(path) {
    DWORD error = ERROR_SUCCESS;
    {
        const QuietErrors quiet;
        m_handle = ::LoadLibraryA(path.c_str());
        error = ::GetLastError();
    }
    if (m_handle == nullptr)
        throw LibraryError("Could not load library '" + path + "': error " + std::to_string(error));
}

/// Releases the library; its path is forgotten.
void Library::Unload() noexcept {
    if (m_handle != nullptr)
        ::FreeLibrary(static_cast<HMODULE>(std::exchange(m_handle, nullptr)));
    m_path.clear();
}

/// A symbol's address, or null when the library has none of that name or is not loaded.
void* Library::FindSymbol(const char* name) const noexcept {
    if (m_handle == nullptr)
        return nullptr;
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

/**
 * \brief A symbol's address
 * \throw LibraryError There is none of that name; the text names library and symbol
 */
void* Library::Symbol(const char* name) const {
    if (void* symbol = FindSymbol(name))
        return symbol;
    throw LibraryError("Library '" + m_path + "' has no function '" + name + "'");
}

/**
 * \brief Path of the library or program that a piece of code belongs to
 * \param[in] address Address of a function or of static data
 * \return Absolute path; empty when the address belongs to none
 */
std::string PathOfCode(const void* address) {
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (::GetModuleHandleExA(kFlags, static_cast<LPCSTR>(address), &module) == 0)
        return {};
    std::array<char, 4096> path{};
    const DWORD length = ::GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
    return length < path.size() ? std::string(path.data(), length) : std::string();
}

}  // namespace os
