/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One foreign library, loaded by a path that may hold environment variables
 */

#include "VantoCLSer/base/LibraryLoader.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "Base/GCUtilities.h"
#include "VantoCLSer/base/ModuleHold.h"
#include "os/LockName.h"
#include "os/Path.h"

namespace Vanto {

namespace {

std::atomic<std::size_t> g_left{0};

}  // namespace

/// What a loading and who waits for it share: the one may outlive the other.
struct CLibraryLoader::Loading {
    std::mutex mutex;
    [[no_unique_address]] const os::LockName mutexName{&mutex, "library loading"};
    std::condition_variable ended;
    bool isDone = false;
    bool isLeft = false;  // nobody waits for it any more
    os::Library library;  // not loaded where that failed
    std::exception_ptr failure;
};

/// A loading that hangs is left alone; nothing can interrupt it. What it loads in the end is unloaded again.
CLibraryLoader::~CLibraryLoader() {
    if (!m_loading)
        return;
    {
        const std::lock_guard lock(m_loading->mutex);
        if (!m_loading->isDone) {
            m_loading->isLeft = true;
            ++g_left;
            KeepModule();
            m_thread.detach();
        }
    }
    if (m_thread.joinable())
        m_thread.join();
}

// Runs on a thread of its own.
void CLibraryLoader::Run(const std::shared_ptr<Loading>& loading, const std::string& file) noexcept {
    os::Library library;
    std::exception_ptr failure;
    try {
        library = os::Library(file);
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(loading->mutex);
    g_left -= loading->isLeft ? 1 : 0;
    loading->library = std::move(library);
    loading->failure = std::move(failure);
    loading->isDone = true;
    loading->ended.notify_all();
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
    m_failure = nullptr;
    try {
        gcstring expanded = path;
        GenICam::ReplaceEnvironmentVariables(expanded);
        if (expanded.size() + 1 >= os::kMaxPath || IsStuck())
            return false;
        TakeResult();
        const auto loading = std::make_shared<Loading>();
        m_thread = std::thread([loading, file = os::ToSystemSeparators(expanded.view())] { Run(loading, file); });
        m_loading = loading;
        return WaitUntilDone() && TakeResult();
    } catch (const std::exception&) {
        m_failure = std::current_exception();
        return false;
    }
}

// Of a loading that is done; one that was given up before has none that anybody wants.
bool CLibraryLoader::TakeResult() {
    const std::shared_ptr<Loading> done = std::exchange(m_loading, nullptr);
    if (!done)
        return false;
    m_thread.join();
    m_failure = std::move(done->failure);
    if (!done->library.IsLoaded())
        return false;
    m_library = std::move(done->library);
    return true;
}

/// Why the last Load failed, as the system says; empty where it does not.
std::string CLibraryLoader::Reason() const {
    if (!m_failure)
        return {};
    try {
        std::rethrow_exception(m_failure);
    } catch (const std::exception& error) {
        return error.what();
    }
}

bool CLibraryLoader::IsStuck() const noexcept {
    return m_loading && !IsDone(std::chrono::milliseconds(0));
}

bool CLibraryLoader::IsDone(std::chrono::milliseconds patience) const {
    std::unique_lock lock(m_loading->mutex);
    return m_loading->ended.wait_for(lock, patience, [this] { return m_loading->isDone; });
}

bool CLibraryLoader::WaitUntilDone() const {
    for (auto left = m_patience.total; left > std::chrono::milliseconds(0); left -= m_patience.reminder) {
        if (IsDone(std::min(left, m_patience.reminder)))
            return true;
        if (m_patience.remind)
            m_patience.remind();
    }
    return false;
}

std::size_t CLibraryLoader::CountLeft() noexcept {
    return g_left;
}

}  // namespace Vanto
