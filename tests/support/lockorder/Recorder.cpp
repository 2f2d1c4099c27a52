/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Records in which order named locks are taken. Is loaded before a program, in place of the system's functions.
 *
 * Each pair "held -> taken" is written once a process, with the calls that led there, to a file of the process in the
 * folder that VANTO_LOCK_ORDER names. A lock that is only tried, or waited for with a time limit, is not taken behind
 * another one, as nobody waits for it for ever; but what is taken while it is held is. Work that others wait for counts
 * as a lock that the working thread holds, and that those who wait take and give back.
 */

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Places.h"

namespace {

constexpr std::size_t kMaxNames = 256;
constexpr std::size_t kMaxHeld = 64;
constexpr int kMaxCalls = 24;
constexpr std::uint8_t kNoName = 0;

template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

struct System {
    int (*lock)(pthread_mutex_t*) = Next<int(pthread_mutex_t*)>("pthread_mutex_lock");
    int (*tryLock)(pthread_mutex_t*) = Next<int(pthread_mutex_t*)>("pthread_mutex_trylock");
    int (*timedLock)(pthread_mutex_t*,
                     const timespec*) = Next<int(pthread_mutex_t*, const timespec*)>("pthread_mutex_timedlock");
    int (*clockLock)(pthread_mutex_t*, clockid_t, const timespec*) =
        Next<int(pthread_mutex_t*, clockid_t, const timespec*)>("pthread_mutex_clocklock");
    int (*unlock)(pthread_mutex_t*) = Next<int(pthread_mutex_t*)>("pthread_mutex_unlock");
    int (*share)(pthread_rwlock_t*) = Next<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    int (*tryShare)(pthread_rwlock_t*) = Next<int(pthread_rwlock_t*)>("pthread_rwlock_tryrdlock");
    int (*lockAll)(pthread_rwlock_t*) = Next<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    int (*tryLockAll)(pthread_rwlock_t*) = Next<int(pthread_rwlock_t*)>("pthread_rwlock_trywrlock");
    int (*unlockShared)(pthread_rwlock_t*) = Next<int(pthread_rwlock_t*)>("pthread_rwlock_unlock");
};

const System& TheSystem() {
    static const System system;
    return system;
}

// Not one of the locks that are recorded.
class Gate {
public:
    class Reader {
    public:
        explicit Reader(Gate& gate) : m_gate(gate) { TheSystem().share(&m_gate.m_lock); }
        ~Reader() { TheSystem().unlockShared(&m_gate.m_lock); }

    private:
        Gate& m_gate;
    };
    class Writer {
    public:
        explicit Writer(Gate& gate) : m_gate(gate) { TheSystem().lockAll(&m_gate.m_lock); }
        ~Writer() { TheSystem().unlockShared(&m_gate.m_lock); }

    private:
        Gate& m_gate;
    };

private:
    pthread_rwlock_t m_lock = PTHREAD_RWLOCK_INITIALIZER;
};

// Which lock has which name. Needs no memory but its own: a program may be one that has none.
class Names {
public:
    void Set(const void* lock, const char* name) {
        const Gate::Writer writer(m_gate);
        std::size_t at = Home(lock);
        while (m_locks[at].lock != nullptr && m_locks[at].lock != lock)
            at = (at + 1) % kRoom;
        if (m_locks[at].lock == nullptr && ++m_count == kRoom)
            std::abort();
        m_locks[at] = {lock, IdOf(name)};
    }
    void Forget(const void* lock) {
        const Gate::Writer writer(m_gate);
        std::size_t gap = Find(lock);
        if (m_locks[gap].lock == nullptr)
            return;
        --m_count;
        // What lies behind moves up, so that a search never meets a gap in front of what it looks for.
        for (std::size_t at = (gap + 1) % kRoom; m_locks[at].lock != nullptr; at = (at + 1) % kRoom) {
            const std::size_t home = Home(m_locks[at].lock);
            if ((at - home) % kRoom >= (at - gap) % kRoom) {
                m_locks[gap] = m_locks[at];
                gap = at;
            }
        }
        m_locks[gap] = {};
    }
    std::uint8_t Of(const void* lock) {
        if (m_count == 0)
            return kNoName;
        const Gate::Reader reader(m_gate);
        return m_locks[Find(lock)].name;
    }
    std::uint8_t Of(const char* name) {
        const Gate::Writer writer(m_gate);
        return IdOf(name);
    }
    const char* Text(std::uint8_t id) const { return m_names[id]; }

private:
    struct Entry {
        const void* lock = nullptr;
        std::uint8_t name = kNoName;
    };
    static constexpr std::size_t kRoom = 1u << 16;

    static std::size_t Home(const void* lock) {
        return (reinterpret_cast<std::uintptr_t>(lock) >> 3) * 0x9e3779b97f4a7c15u >> 48;
    }
    // Where it is, or the gap where it would be.
    std::size_t Find(const void* lock) const {
        std::size_t at = Home(lock);
        while (m_locks[at].lock != nullptr && m_locks[at].lock != lock)
            at = (at + 1) % kRoom;
        return at;
    }
    std::uint8_t IdOf(const char* name) {
        std::uint8_t id = 1;
        while (m_names[id][0] != '\0' && std::strncmp(m_names[id], name, kLongestName - 1) != 0)
            ++id;
        // A copy: the library whose text it is may be unloaded.
        std::strncpy(m_names[id], name, kLongestName - 1);
        return id;
    }

    static constexpr std::size_t kLongestName = 64;

    Gate m_gate;
    std::atomic<std::size_t> m_count{0};
    Entry m_locks[kRoom];
    char m_names[kMaxNames][kLongestName]{};
};

constinit Names g_names;

Names& TheNames() {
    return g_names;
}

struct Held {
    const void* lock;  // null for work
    std::uint8_t name;
    unsigned times;
};

struct Thread {
    std::array<Held, kMaxHeld> held;
    std::size_t count;
    bool isRecording;
};

thread_local Thread t_thread{};

std::array<std::array<std::atomic<bool>, kMaxNames>, kMaxNames> g_known{};

int OpenFile() {
    const char* const folder = std::getenv("VANTO_LOCK_ORDER");
    if (folder == nullptr || *folder == '\0')
        return -1;
    char path[4096];
    std::snprintf(path, sizeof path, "%s/%ld.order", folder, static_cast<long>(::getpid()));
    return ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

void Write(std::uint8_t held, std::uint8_t taken) {
    static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    void* calls[kMaxCalls];
    const int count = ::backtrace(calls, kMaxCalls);
    TheSystem().lock(&lock);
    // Opened each time: programs close what they do not know, and become others.
    const int file = OpenFile();
    if (file >= 0) {
        ::dprintf(file, "%s\t%s\t%s\n", TheNames().Text(held), TheNames().Text(taken), program_invocation_name);
        lockorder::WritePlaces(file, calls, count);
        ::close(file);
    }
    TheSystem().unlock(&lock);
}

// The first call loads a library: later the loader's lock may be held by one that hangs.
[[gnu::constructor]] void LoadWhatCallsAreFoundBy() {
    void* call = nullptr;
    ::backtrace(&call, 1);
}

void RecordPairs(std::uint8_t taken, const void* lock) {
    Thread& thread = t_thread;
    if (thread.isRecording)
        return;
    thread.isRecording = true;
    for (std::size_t index = 0; index < thread.count; ++index) {
        const Held& held = thread.held[index];
        if (held.lock == lock && lock != nullptr)
            continue;
        if (!g_known[held.name][taken].exchange(true))
            Write(held.name, taken);
    }
    thread.isRecording = false;
}

Held* FindHeld(const void* lock, std::uint8_t name) {
    Thread& thread = t_thread;
    const auto end = thread.held.begin() + static_cast<std::ptrdiff_t>(thread.count);
    const auto found = std::find_if(thread.held.begin(), end, [&](const Held& held) {
        return held.lock == lock && (lock != nullptr || held.name == name);
    });
    return found != end ? &*found : nullptr;
}

void Push(const void* lock, std::uint8_t name) {
    Thread& thread = t_thread;
    if (Held* const held = FindHeld(lock, name))
        ++held->times;
    else if (thread.count < kMaxHeld)
        thread.held[thread.count++] = {lock, name, 1};
}

void Pop(const void* lock, std::uint8_t name) {
    Thread& thread = t_thread;
    Held* const held = FindHeld(lock, name);
    if (held == nullptr || --held->times != 0)
        return;
    std::move(held + 1, thread.held.data() + thread.count, held);
    --thread.count;
}

// Before the lock is waited for, so that a thread that then hangs has left its pair.
void BeforeLock(const void* lock) {
    const std::uint8_t name = t_thread.isRecording ? kNoName : TheNames().Of(lock);
    if (name != kNoName && FindHeld(lock, name) == nullptr)
        RecordPairs(name, lock);
}

void AfterLock(const void* lock) {
    const std::uint8_t name = t_thread.isRecording ? kNoName : TheNames().Of(lock);
    if (name != kNoName)
        Push(lock, name);
}

int Tried(int result, const void* lock) {
    if (result == 0)
        AfterLock(lock);
    return result;
}

}  // namespace

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    BeforeLock(mutex);
    return Tried(TheSystem().lock(mutex), mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    return Tried(TheSystem().tryLock(mutex), mutex);
}

int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* until) noexcept {
    return Tried(TheSystem().timedLock(mutex, until), mutex);
}

int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock, const timespec* until) noexcept {
    return Tried(TheSystem().clockLock(mutex, clock, until), mutex);
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    if (t_thread.count != 0)
        Pop(mutex, kNoName);
    return TheSystem().unlock(mutex);
}

// Shared or not: who shares waits for the one who does not, and the other way round.
int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    BeforeLock(lock);
    return Tried(TheSystem().share(lock), lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    BeforeLock(lock);
    return Tried(TheSystem().lockAll(lock), lock);
}

int pthread_rwlock_tryrdlock(pthread_rwlock_t* lock) noexcept {
    return Tried(TheSystem().tryShare(lock), lock);
}

int pthread_rwlock_trywrlock(pthread_rwlock_t* lock) noexcept {
    return Tried(TheSystem().tryLockAll(lock), lock);
}

int pthread_rwlock_unlock(pthread_rwlock_t* lock) noexcept {
    if (t_thread.count != 0)
        Pop(lock, kNoName);
    return TheSystem().unlockShared(lock);
}

void vanto_lock_named(const void* lock, const char* name) noexcept {
    TheNames().Set(lock, name);
}

void vanto_lock_forgotten(const void* lock) noexcept {
    TheNames().Forget(lock);
}

void vanto_work_begun(const char* name) noexcept {
    Push(nullptr, TheNames().Of(name));
}

void vanto_work_ended(const char* name) noexcept {
    Pop(nullptr, TheNames().Of(name));
}

void vanto_work_awaited(const char* name) noexcept {
    RecordPairs(TheNames().Of(name), nullptr);
}

}  // extern "C"
