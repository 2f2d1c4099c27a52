/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Shared libraries: loading, looking up functions, and where a piece of code lies
 */
#pragma once

#include <stdexcept>
#include <string>

namespace os {

/// A library could not be loaded or lacks a function; what() holds the path and the system's reason.
class LibraryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The system has no memory or no descriptors for a library at the moment: the library is not to blame.
class ShortageError : public LibraryError {
public:
    using LibraryError::LibraryError;
};

/// One loaded shared library, unloaded by the destructor.
class Library {
public:
    Library() noexcept = default;
    explicit Library(const std::string& path);
    ~Library();
    Library(Library&& other) noexcept;
    Library& operator=(Library&& other) noexcept;
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool IsLoaded() const noexcept { return m_handle != nullptr; }
    const std::string& Path() const noexcept { return m_path; }
    void Unload() noexcept;
    void Keep() noexcept;

    void* FindSymbol(const char* name) const noexcept;
    void* Symbol(const char* name) const;

    template <class Function>
    Function* Find(const char* name) const noexcept {
        return reinterpret_cast<Function*>(FindSymbol(name));
    }
    template <class Function>
    Function* Get(const char* name) const {
        return reinterpret_cast<Function*>(Symbol(name));
    }

private:
    void* m_handle = nullptr;
    std::string m_path;
};

std::string PathOfCode(const void* address);
std::string FolderOfLibraries(const void* address);

}  // namespace os
