/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Shared libraries on POSIX systems
 */

#include "os/Library.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

namespace os {

namespace {

std::string LastReason() {
    const char* reason = ::dlerror();
    return reason != nullptr ? reason : "unknown reason";
}

// The system gives a text only, which ends in that of the error.
[[noreturn]] void ThrowNotLoaded(const std::string& text) {
    for (const int shortage : {ENOMEM, EMFILE, ENFILE}) {
        if (text.ends_with(std::generic_category().message(shortage)))
            throw ShortageError(text);
    }
    throw LibraryError(text);
}

}  // namespace

/**
 * \brief Load a shared library
 * \param[in] path Path of the library
 *
 * All its symbols are resolved at once and stay its own.
 *
 * \context Any thread.
 * \throw LibraryError It can't be loaded; the text holds the path and the system's reason
 * \throw ShortageError The system has no memory or no descriptors for it
 */
Library::Library(const std::string& path) : m_path(path) {
    // An empty name would be the program itself.
    if (path.empty())
        throw LibraryError("Could not load library '': no path");
    m_handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_handle == nullptr)
        ThrowNotLoaded("Could not load library '" + path + "': " + LastReason());
}

/// Releases the library; its path is forgotten.
void Library::Unload() noexcept {
    if (m_handle != nullptr)
        ::dlclose(std::exchange(m_handle, nullptr));
    m_path.clear();
}

/// A symbol's address, or null when the library has none of that name or is not loaded.
void* Library::FindSymbol(const char* name) const noexcept {
    return m_handle != nullptr ? ::dlsym(m_handle, name) : nullptr;
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
 * \return Absolute path with links resolved; empty when the address belongs to none
 */
std::string PathOfCode(const void* address) {
    Dl_info info{};
    if (::dladdr(address, &info) == 0)
        return {};
    struct Freer {
        void operator()(char* text) const noexcept { std::free(text); }
    };
    const std::unique_ptr<char, Freer> absolute(::realpath(info.dli_fname, nullptr));
    return absolute ? absolute.get() : info.dli_fname;
}

}  // namespace os
