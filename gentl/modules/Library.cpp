/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Library: the producer between GCInitLib and GCCloseLib
 */
#include "modules/Library.h"

#include <atomic>
#include <condition_variable>
#include <thread>

#include "base/Immortal.h"
#include "support/ForkGuard.h"
#include "support/GenTLError.h"
#include "support/LinkedTransportLayer.h"
#include "support/Unloading.h"

namespace gentl {

namespace {

std::mutex g_lock;
[[maybe_unused]] const os::LockName g_lockName(&g_lock, "GenTL libraries");
std::shared_ptr<Library> g_library;
// Never destroyed: on Windows the process has ended its other threads by then, one of them perhaps with the lock that
// all condition variables of a file share. The destructor of one for which nobody ever waited takes that lock.
base::Immortal<std::condition_variable> g_changed;
bool g_isClosing = false;

void RefuseForkedChild() {
    if (IsForkedChild())
        throw GenTLError(
            GC_ERR_NOT_INITIALIZED,
            "This process is a copy (fork) of the one that called GCInitLib. Start a new program instead.");
}

// Who never calls GCCloseLib and just ends the process must not leave threads running into the destruction of what they
// use: made after everything that the producer uses, this is destroyed before it. Where the threads have been ended,
// nobody is left to be waited for: what is open stays as it is.
struct AtExit {
    ~AtExit() {
        if (IsForkedChild())
            return;
        if (!DoThreadsOutliveStatics()) {
            m_abandoned.Get() = std::move(g_library);
            return;
        }
        try {
            Library::Close();
        } catch (const GenTLError&) {
            // It was closed.
        }
    }

private:
    base::Immortal<std::shared_ptr<Library>> m_abandoned;
};

}  // namespace

/**
 * \brief Begin the producer's life in this process
 * \throw GenTLError RESOURCE_IN_USE where it has begun
 */
void Library::Init() {
    RefuseForkedChild();
    WatchForks();
    std::unique_lock lock(g_lock);
    g_changed.Get().wait(lock, [] { return !g_isClosing; });
    if (g_library)
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "GCInitLib was called already");
    PrepareTransportLayer();
    static AtExit atExit;
    g_library = std::make_shared<Library>();
    KeepLoaded();
}

/**
 * \brief End it: closes what is open, wakes who waits, and returns when no thread of the producer is left
 * \throw GenTLError NOT_INITIALIZED
 */
void Library::Close() {
    RefuseForkedChild();
    std::shared_ptr<Library> library;
    {
        const std::lock_guard lock(g_lock);
        if (!g_library)
            throw GenTLError(GC_ERR_NOT_INITIALIZED, "GCInitLib was not called");
        library.swap(g_library);
        g_isClosing = true;
    }
    library->Shut();
    // Calls that were under way come out by themselves: each was woken, or ends with its access to a line.
    while (library.use_count() > 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    library.reset();
    const std::lock_guard lock(g_lock);
    g_isClosing = false;
    g_changed.Get().notify_all();
    LetUnload();
}

/// The life under way; throws NOT_INITIALIZED where there is none.
std::shared_ptr<Library> Library::Get() {
    RefuseForkedChild();
    const std::lock_guard lock(g_lock);
    if (!g_library)
        throw GenTLError(GC_ERR_NOT_INITIALIZED, "GCInitLib was not called");
    return g_library;
}

Library::~Library() {
    Shut();
    m_system.reset();
    m_discovery.reset();
    if (m_layer != nullptr)
        DestroyTransportLayer(m_layer);
}

void Library::Shut() noexcept {
    std::shared_ptr<System> system;
    {
        const std::lock_guard lock(m_mutex);
        m_isShut = true;
        system.swap(m_system);
    }
    if (system)
        system->Close();
    m_handles.RemoveAll();
}

/**
 * \brief Open the one system; begins to look for cameras
 * \throw GenTLError RESOURCE_IN_USE
 */
std::shared_ptr<System> Library::OpenSystem() {
    const std::lock_guard lock(m_mutex);
    if (m_isShut)
        throw GenTLError(GC_ERR_NOT_INITIALIZED, "GCCloseLib was called");
    if (m_system && m_system->IsOpen())
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The system is open already");
    if (m_layer == nullptr)
        m_layer = CreateTransportLayer();
    if (m_discovery == nullptr)
        m_discovery = std::make_unique<Discovery>(*m_layer);
    m_system = std::make_shared<System>(m_handles, *m_layer, *m_discovery);
    m_handles.Add(m_system);
    return m_system;
}

}  // namespace gentl
