/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loaded libraries by path, and those that were refused with the reason
 */
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "CLProtocol/CLException.h"
#include "CallThread.h"
#include "ModuleLifetime.h"
#include "ModuleLog.h"
#include "SearchPath.h"
#include "StuckCount.h"
#include "Texts.h"
#include "os/File.h"
#include "os/Library.h"
#include "os/LockName.h"

namespace CLProtocol {

/// Keeps each library that it has loaded, so that a path is loaded once. Library's constructor takes the path and
/// throws to refuse it. Thread-safe; no lock but that of the one library is held while foreign code runs.
template <class Library>
class LibraryShelf {
public:
    using Pointer = std::shared_ptr<const Library>;
    using Use = std::function<void(const Pointer&)>;

    /// Loads a library if it is not loaded yet and uses it, both on a thread of their own with the module's patience.
    /// \a use must own what it needs. Returns why the library can't be used; empty when all went well.
    std::string With(const std::string& path, Use use) {
        const std::shared_ptr<Entry> entry = EntryOf(path);
        if (entry->stuck->IsAny())
            return "a function of it does not return";
        CallThread thread;
        const auto job = std::make_shared<StuckCount::Job>(entry->stuck);
        // Not the entry's own: another thread's job may hold its mutex, and hang.
        const auto refusal = std::make_shared<std::string>();
        std::string reason;
        try {
            thread.Run([entry, path, job, refusal, use = std::move(use)] {
                const Finisher finisher{*job};
                if (const Pointer library = Load(*entry, path, *refusal))
                    use(library);
            });
            return *refusal;
        } catch (const std::exception& error) {
            reason = ReasonOf(error);
        }
        if (thread.IsStuck())
            job->GiveUp();
        Log(CLP_LOG_WARN, "Library '%s': %s", path, reason);
        return reason;
    }

    /// Unloads what nobody uses at the moment.
    void Release() {
        std::unique_lock lock(m_mutex);
        const std::map<std::string, std::shared_ptr<Entry>> entries = m_entries;
        lock.unlock();
        for (const auto& [path, entry] : entries)
            if (!entry->stuck->IsAny())
                Release(path, entry);
    }

private:
    struct Finisher {
        StuckCount::Job& job;
        ~Finisher() { job.Finish(); }
    };

    struct Entry {
        std::mutex mutex;  // taken by jobs only: whoever holds it may hang in foreign code
        [[no_unique_address]] const os::LockName mutexName{&mutex, "library"};
        Pointer library;
        std::string refusal;
        os::FileStatus refusedFile;  // so that another file under the same path gets its chance
        const std::shared_ptr<StuckCount> stuck = std::make_shared<StuckCount>();
    };

    std::shared_ptr<Entry> EntryOf(const std::string& path) {
        const std::lock_guard lock(m_mutex);
        std::shared_ptr<Entry>& entry = m_entries[CanonicalPath(path)];
        if (!entry)
            entry = std::make_shared<Entry>();
        return entry;
    }

    // Under the entry's mutex: a driver must not be initialised again before it is closed.
    static void Release(const std::string& path, const std::shared_ptr<Entry>& entry) {
        CallThread thread;
        const auto job = std::make_shared<StuckCount::Job>(entry->stuck);
        try {
            thread.Run([entry, job] {
                const Finisher finisher{*job};
                const std::lock_guard lock(entry->mutex);
                if (entry->library.use_count() == 1)
                    entry->library = nullptr;
            });
        } catch (const std::exception& error) {
            if (thread.IsStuck())
                job->GiveUp();
            Log(CLP_LOG_WARN, "Library '%s' can't be unloaded: %s", path, ReasonOf(error));
        }
    }

    static Pointer Load(Entry& entry, const std::string& path, std::string& refusal) {
        const std::lock_guard lock(entry.mutex);
        LoadLocked(entry, path);
        if (!entry.library)
            refusal = entry.refusal;
        return entry.library;
    }

    static void LoadLocked(Entry& entry, const std::string& path) {
        const os::FileStatus file = os::GetFileStatus(path);
        const bool isSameFile = file.modified == entry.refusedFile.modified && file.size == entry.refusedFile.size;
        if (entry.library || (!entry.refusal.empty() && isSameFile))
            return;
        KeepModuleLoaded();
        try {
            entry.library = std::make_shared<const Library>(path);
            entry.refusal.clear();
            Log(CLP_LOG_INFO, "Loaded library '%s'", path);
            return;
        } catch (const std::bad_alloc&) {
            throw;  // the file is not to blame, and gets its chance again
        } catch (const os::ShortageError&) {
            throw;
        } catch (const std::exception& error) {
            entry.refusal = ReasonOf(error);
        }
        entry.refusedFile = file;
        Log(CLP_LOG_WARN, "Library '%s' is refused: %s", path, entry.refusal);
    }

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "library shelf"};
    std::map<std::string, std::shared_ptr<Entry>> m_entries;
};

}  // namespace CLProtocol
