/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loaded libraries by path, and those that were refused with the reason
 */
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "CLProtocol/CLException.h"
#include "CallThread.h"
#include "ModuleLifetime.h"
#include "ModuleLog.h"
#include "SearchPath.h"
#include "os/File.h"

namespace CLProtocol {

/// Counts jobs that were given up because a foreign function does not return, until it returns after all.
class StuckCount {
public:
    bool IsAny() const noexcept { return m_count > 0; }

    /// One job; its worker and its caller each say how it ended for them, in any order.
    class Job {
    public:
        explicit Job(std::shared_ptr<StuckCount> count) : m_count(std::move(count)) {}
        ~Job() { Finish(); }
        Job(const Job&) = delete;
        Job& operator=(const Job&) = delete;

        void Finish() noexcept {
            if (m_state.exchange(kFinished) == kGivenUp)
                --m_count->m_count;
        }
        void GiveUp() noexcept {
            ++m_count->m_count;
            if (m_state.exchange(kGivenUp) == kFinished)
                --m_count->m_count;
        }

    private:
        enum State { kRunning, kFinished, kGivenUp };
        std::shared_ptr<StuckCount> m_count;
        std::atomic<State> m_state{kRunning};
    };

private:
    std::atomic<int> m_count{0};
};

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
        std::string reason;
        try {
            thread.Run([entry, path, job, use = std::move(use)] {
                struct Finisher {
                    StuckCount::Job& job;
                    ~Finisher() { job.Finish(); }
                } const finisher{*job};
                if (const Pointer library = Load(*entry, path))
                    use(library);
            });
            const std::lock_guard lock(entry->mutex);
            return entry->refusal;
        } catch (const GenICam::GenericException& error) {
            reason = error.GetDescription();
        } catch (const std::exception& error) {
            reason = error.what();
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
        for (const auto& [path, entry] : entries) {
            try {
                CallThread().Run([entry = entry] {
                    const std::lock_guard entryLock(entry->mutex);
                    if (entry->library.use_count() == 1)
                        entry->library = nullptr;
                });
            } catch (const GenICam::GenericException& error) {
                Log(CLP_LOG_WARN, "Library '%s' can't be unloaded: %s", path, error.GetDescription());
            }
        }
    }

private:
    struct Entry {
        std::mutex mutex;
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

    static Pointer Load(Entry& entry, const std::string& path) {
        const std::lock_guard lock(entry.mutex);
        const os::FileStatus file = os::GetFileStatus(path);
        const bool isSameFile = file.modified == entry.refusedFile.modified && file.size == entry.refusedFile.size;
        if (entry.library || (!entry.refusal.empty() && isSameFile))
            return entry.library;
        KeepModuleLoaded();
        try {
            entry.library = std::make_shared<const Library>(path);
            entry.refusal.clear();
            Log(CLP_LOG_INFO, "Loaded library '%s'", path);
            return entry.library;
        } catch (const GenICam::GenericException& error) {
            entry.refusal = error.GetDescription();
        } catch (const std::exception& error) {
            entry.refusal = error.what();
        }
        entry.refusedFile = file;
        Log(CLP_LOG_WARN, "Library '%s' is refused: %s", path, entry.refusal);
        return nullptr;
    }

    std::mutex m_mutex;
    std::map<std::string, std::shared_ptr<Entry>> m_entries;
};

}  // namespace CLProtocol
