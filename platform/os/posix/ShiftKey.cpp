/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The Shift key of the X display, if there is one
 */

#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>

#include "os/Environment.h"
#include "os/Library.h"
#include "os/LockName.h"
#include "os/System.h"
#include "os/posix/Descriptor.h"

namespace os {

namespace {

constexpr int kAnswerTimeoutMs = 500;
constexpr unsigned kFirstTcpPort = 6000;

class Socket {
public:
    Socket(int family, const sockaddr* address, socklen_t length)
        : m_socket(AboveStandardDescriptors(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))) {
        m_open = m_socket >= 0 && (::connect(m_socket, address, length) == 0 || Wait(POLLOUT));
    }
    ~Socket() {
        if (m_socket >= 0)
            ::close(m_socket);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    // A connection set-up without any authority: accepted or refused, a server that lives says so at once.
    bool HasAnswer() const {
        constexpr char request[12] = {'l', 0, 11, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        return m_open && ::send(m_socket, request, sizeof request, MSG_NOSIGNAL) == sizeof request && Wait(POLLIN);
    }

private:
    bool Wait(short events) const {
        pollfd entry{m_socket, events, 0};
        return ::poll(&entry, 1, kAnswerTimeoutMs) == 1 && (entry.revents & events) != 0;
    }

    int m_socket;
    bool m_open = false;
};

bool AnswersLocally(unsigned number) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = "/tmp/.X11-unix/X" + std::to_string(number);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return Socket(AF_UNIX, reinterpret_cast<const sockaddr*>(&address), sizeof address).HasAnswer();
}

bool AnswersByNetwork(const std::string& host, unsigned number) {
    // Only what needs no name server, whose answer may take long.
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const std::string numeric = host == "localhost" ? "127.0.0.1" : host;
    if (::getaddrinfo(numeric.c_str(), std::to_string(kFirstTcpPort + number).c_str(), &hints, &found) != 0)
        return false;
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
    return Socket(found->ai_family, found->ai_addr, found->ai_addrlen).HasAnswer();
}

// Opening a display waits for ever on a server that hangs: ask first, with a time-out.
bool ServerAnswers(const std::string& display) {
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos)
        return false;
    unsigned number = 0;
    const char* from = display.c_str() + colon + 1;
    if (std::from_chars(from, display.c_str() + display.size(), number).ec != std::errc() || number > 50000)
        return false;
    const std::string host = display.substr(0, colon);
    return host.empty() || host == "unix" ? AnswersLocally(number) : AnswersByNetwork(host, number);
}

// The few functions of the X library that this takes; it is loaded at run time, so that nothing needs it.
struct XLibrary {
    explicit XLibrary(const Library& library)
        : open(library.Find<decltype(XOpenDisplay)>("XOpenDisplay")),
          close(library.Find<decltype(XCloseDisplay)>("XCloseDisplay")),
          keymap(library.Find<decltype(XQueryKeymap)>("XQueryKeymap")),
          keycode(library.Find<decltype(XKeysymToKeycode)>("XKeysymToKeycode")),
          onExit(library.Find<decltype(XSetIOErrorExitHandler)>("XSetIOErrorExitHandler")) {}

    bool IsComplete() const { return open && close && keymap && keycode && onExit; }

    bool IsKeyDown(Display* display, const char* keys, KeySym key) const {
        const unsigned code = keycode(display, key);  // 0 for a key that the display has not, whose bit is never set
        return (static_cast<unsigned char>(keys[code / 8]) >> (code % 8) & 1u) != 0;
    }

    bool IsShiftDown() const {
        const std::unique_ptr<Display, decltype(close)> display(open(nullptr), close);
        if (!display)
            return false;
        // Else the library ends the process when the server goes away.
        onExit(
            display.get(), [](Display*, void*) {}, nullptr);
        char keys[32] = {};
        keymap(display.get(), keys);
        return IsKeyDown(display.get(), keys, XK_Shift_L) || IsKeyDown(display.get(), keys, XK_Shift_R);
    }

    decltype(XOpenDisplay)* open;
    decltype(XCloseDisplay)* close;
    decltype(XQueryKeymap)* keymap;
    decltype(XKeysymToKeycode)* keycode;
    decltype(XSetIOErrorExitHandler)* onExit;
};

bool AskDisplay() {
    static std::mutex mutex;
    [[maybe_unused]] static const LockName mutexName(&mutex, "display");
    const std::lock_guard lock(mutex);
    static const Library library("libX11.so.6");
    static const XLibrary functions(library);
    return functions.IsComplete() && functions.IsShiftDown();
}

}  // namespace

/**
 * \brief Whether a Shift key is held down at this moment
 * \context Any thread. Takes at most about a second on a display that does not answer.
 * \return The X display's key state; false without a display
 */
bool IsShiftKeyDown() noexcept {
    try {
        const EnvironmentValue display = GetEnvironment("DISPLAY");
        return display.status == EnvironmentStatus::kPresent && ServerAnswers(display.text) && AskDisplay();
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace os
