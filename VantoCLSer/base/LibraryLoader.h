/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */
#pragma once

#include <chrono>
#include <future>
#include <thread>

#include "os/Library.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

/// Keeps at most one library loaded; loading another replaces it only when that succeeds. Bound to one thread at a
/// time.
class CLibraryLoader {
public:
    /// Time after which a loading that does not end counts as failed. The libraries of a frame grabber may come from a
    /// slow disk.
    static constexpr std::chrono::milliseconds kPatience{10000};

    explicit CLibraryLoader(std::chrono::milliseconds patience = kPatience) : m_patience(patience) {}
    ~CLibraryLoader();
    CLibraryLoader(const CLibraryLoader&) = delete;
    CLibraryLoader& operator=(const CLibraryLoader&) = delete;

    bool Load(const gcstring& path) noexcept;
    void Unload() noexcept { m_library.Unload(); }
    bool IsLoaded() const noexcept { return m_library.IsLoaded(); }
    const os::Library& GetLibrary() const noexcept { return m_library; }

private:
    bool IsStuck(std::chrono::milliseconds patience);

    const std::chrono::milliseconds m_patience;
    os::Library m_library;
    std::thread m_thread;  // loads, and may hang in doing so
    std::future<os::Library> m_loading;
};

}  // namespace Vanto
