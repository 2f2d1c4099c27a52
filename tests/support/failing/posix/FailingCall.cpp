/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: a process in which a call of the system fails
 *
 * The functions at the end take the place of the system's own in the programs that link this, and in all libraries
 * there.
 */

#include "failing/FailingCall.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>
#include <tuple>

namespace failing {

namespace {

enum class Mode { kOff, kRecording, kFailing };

std::atomic<Mode> g_mode{Mode::kOff};
std::mutex g_mutex;  // what follows
std::map<CallPlace, std::size_t> g_calls;
Call g_failing;
bool g_hasFailed = false;
int g_error = 0;
int g_wanted = 0;  // instead of the usual error; 0 is none

thread_local bool t_isInside = false;

CallPlace PlaceOf(const char* function, void* address) {
    Dl_info info{};
    if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr)
        return {function, "", 0};
    const std::string path = info.dli_fname;
    return {function, path.substr(path.rfind('/') + 1),
            reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(info.dli_fbase)};
}

bool NoteAndAsk(const char* function, void* address, int error) {
    CallPlace place = PlaceOf(function, address);
    const std::lock_guard lock(g_mutex);
    const std::size_t index = g_calls[place]++;
    if (g_mode != Mode::kFailing || g_hasFailed || index != g_failing.index || !(place == g_failing.place))
        return false;
    g_hasFailed = true;
    g_error = g_wanted != 0 ? g_wanted : error;
    return true;
}

bool MustFail(const char* function, void* address, int error) {
    if (g_mode == Mode::kOff || t_isInside)
        return false;
    t_isInside = true;
    const bool mustFail = NoteAndAsk(function, address, error);
    t_isInside = false;
    if (mustFail)
        errno = g_error;
    return mustFail;
}

void Start(Mode mode, const Call& call, int error = 0) {
    const std::lock_guard lock(g_mutex);
    g_calls.clear();
    g_failing = call;
    g_hasFailed = false;
    g_error = 0;
    g_wanted = error;
    g_mode = mode;
}

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

std::string CallPlace::ToText() const {
    char text[32];
    std::snprintf(text, sizeof text, "+0x%zx", static_cast<std::size_t>(offset));
    return function + " by " + file + text;
}

bool CallPlace::operator<(const CallPlace& other) const noexcept {
    return std::tie(function, file, offset) < std::tie(other.function, other.file, other.offset);
}

CallRecorder::CallRecorder() {
    Start(Mode::kRecording, {});
}

CallRecorder::~CallRecorder() {
    g_mode = Mode::kOff;
}

std::vector<Call> CallRecorder::Samples(std::size_t first) const {
    const std::lock_guard lock(g_mutex);
    std::vector<Call> calls;
    for (const auto& [place, count] : g_calls) {
        for (std::size_t index = 0; index < count && index < first; ++index)
            calls.push_back({place, index});
        if (count > first)
            calls.push_back({place, count - 1});
    }
    return calls;
}

FailingCall::FailingCall(const Call& call, int error) {
    Start(Mode::kFailing, call, error);
}

FailingCall::~FailingCall() {
    g_mode = Mode::kOff;
}

bool FailingCall::HasFailed() const {
    const std::lock_guard lock(g_mutex);
    return g_hasFailed;
}

std::string FailingCall::Reason() const {
    const std::lock_guard lock(g_mutex);
    return std::strerror(g_error);
}

}  // namespace failing

// The labels keep the names apart from the declarations of the system's headers.
#define FAILING(result, name, parameters, arguments, error, failure)                           \
    extern "C" [[gnu::visibility("default")]] result Failing_##name parameters __asm__(#name); \
    result Failing_##name parameters {                                                         \
        static auto* const real = failing::Real<result parameters>(#name);                     \
        if (failing::MustFail(#name, __builtin_return_address(0), error))                      \
            return failure;                                                                    \
        return real arguments;                                                                 \
    }

FAILING(int, access, (const char* path, int mode), (path, mode), EACCES, -1)
FAILING(int, connect, (int socket, const sockaddr* address, socklen_t length), (socket, address, length), ECONNREFUSED,
        -1)
FAILING(int, eventfd, (unsigned value, int flags), (value, flags), EMFILE, -1)
FAILING(FILE*, fdopen, (int descriptor, const char* mode), (descriptor, mode), ENOMEM, nullptr)
FAILING(int, flock, (int descriptor, int operation), (descriptor, operation), ENOLCK, -1)
FAILING(FILE*, fopen64, (const char* path, const char* mode), (path, mode), EMFILE, nullptr)
FAILING(std::size_t, fread, (void* data, std::size_t size, std::size_t count, FILE* file), (data, size, count, file),
        EIO, (file->_flags |= _IO_ERR_SEEN, 0))
FAILING(int, fstat, (int descriptor, void* status), (descriptor, status), EIO, -1)
FAILING(std::size_t, fwrite, (const void* data, std::size_t size, std::size_t count, FILE* file),
        (data, size, count, file), ENOSPC, 0)
FAILING(int, getpwuid_r, (uid_t user, passwd* entry, char* buffer, std::size_t size, passwd** found),
        (user, entry, buffer, size, found), EIO, (*found = nullptr, EIO))
FAILING(int, isatty, (int descriptor), (descriptor), EIO, 0)
FAILING(int, lstat, (const char* path, void* status), (path, status), EIO, -1)
FAILING(int, mkdir, (const char* path, mode_t mode), (path, mode), ENOSPC, -1)
FAILING(void*, mmap, (void* address, std::size_t length, int protection, int flags, int descriptor, off_t offset),
        (address, length, protection, flags, descriptor, offset), ENOMEM, MAP_FAILED)
FAILING(int, mprotect, (void* address, std::size_t length, int protection), (address, length, protection), ENOMEM, -1)
FAILING(DIR*, opendir, (const char* path), (path), EMFILE, nullptr)
FAILING(int, poll, (pollfd * files, nfds_t count, int timeout), (files, count, timeout), ENOMEM, -1)
FAILING(int, ppoll, (pollfd * files, nfds_t count, const timespec* timeout, const sigset_t* mask),
        (files, count, timeout, mask), ENOMEM, -1)
FAILING(int, pthread_create,
        (pthread_t * thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument),
        (thread, attributes, start, argument), EAGAIN, EAGAIN)
FAILING(ssize_t, read, (int descriptor, void* data, std::size_t size), (descriptor, data, size), EIO, -1)
FAILING(dirent*, readdir, (DIR * folder), (folder), EIO, nullptr)
FAILING(char*, realpath, (const char* path, char* resolved), (path, resolved), ENOMEM, nullptr)
FAILING(int, rename, (const char* from, const char* to), (from, to), EIO, -1)
FAILING(ssize_t, send, (int socket, const void* data, std::size_t size, int flags), (socket, data, size, flags), EPIPE,
        -1)
FAILING(int, setenv, (const char* name, const char* value, int overwrite), (name, value, overwrite), ENOMEM, -1)
FAILING(int, socket, (int family, int type, int protocol), (family, type, protocol), EMFILE, -1)
FAILING(int, stat, (const char* path, void* status), (path, status), EIO, -1)
FAILING(int, tcdrain, (int descriptor), (descriptor), EIO, -1)
FAILING(int, tcflush, (int descriptor, int queue), (descriptor, queue), EIO, -1)
FAILING(int, tcgetattr, (int descriptor, void* settings), (descriptor, settings), EIO, -1)
FAILING(int, tcsetattr, (int descriptor, int when, const void* settings), (descriptor, when, settings), EIO, -1)
FAILING(int, unlink, (const char* path), (path), EIO, -1)
FAILING(ssize_t, write, (int descriptor, const void* data, std::size_t size), (descriptor, data, size), EIO, -1)
// What was closed is closed: the system reports a failure of what was written before.
FAILING(int, close, (int descriptor), (descriptor), EIO, (real(descriptor), errno = EIO, -1))
FAILING(int, fclose, (FILE * file), (file), ENOSPC, (real(file), errno = ENOSPC, EOF))
// So that dlerror has something to say.
FAILING(void*, dlopen, (const char* path, int flags), (path, flags), ENOTDIR, real("/dev/null/library", flags))

// Three functions with a last argument that depends on the others; none of ours takes more than a word.
FAILING(int, fcntl, (int descriptor, int command, long argument), (descriptor, command, argument), EMFILE, -1)
FAILING(int, ioctl, (int descriptor, unsigned long request, long argument), (descriptor, request, argument), EIO, -1)
FAILING(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), EMFILE, -1)
