/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "os/Library.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

/// Keeps at most one library loaded; loading another replaces it only when that succeeds. Bound to one thread at a
/// time.
class CLibraryLoader {
public:
    /// How long a loading is waited for, and how often somebody is reminded of it meanwhile.
    struct Patience {
        std::chrono::milliseconds total{10000};
        std::chrono::milliseconds reminder{10000};
        std::function<void()> remind;
    };

    CLibraryLoader() = default;
    explicit CLibraryLoader(Patience patience) : m_patience(std::move(patience)) {}
    ~CLibraryLoader();
    CLibraryLoader(const CLibraryLoader&) = delete;
    CLibraryLoader& operator=(const CLibraryLoader&) = delete;

    bool Load(const gcstring& path) noexcept;
    void Unload() noexcept { m_library.Unload(); }
    bool IsLoaded() const noexcept { return m_library.IsLoaded(); }
    /// Whether a loading that was given up has not ended yet.
    bool IsStuck() const noexcept;
    std::string Reason() const;
    const os::Library& GetLibrary() const noexcept { return m_library; }

    /// Loadings that nobody waits for any more, in the whole process.
    static std::size_t CountLeft() noexcept;

private:
    struct Loading;

    static void Run(const std::shared_ptr<Loading>& loading, const std::string& file) noexcept;
    bool TakeResult();
    bool IsDone(std::chrono::milliseconds patience) const;
    bool WaitUntilDone() const;

    const Patience m_patience;
    os::Library m_library;
    std::thread m_thread;                // loads, and may hang in doing so
    std::shared_ptr<Loading> m_loading;  // the last one, until its result is taken
    std::exception_ptr m_failure;
};

}  // namespace Vanto
