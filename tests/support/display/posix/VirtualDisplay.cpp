/* SPDX-License-Identifier: Apache-2.0 */
/*
 * An X display without a screen, whose Shift key a test holds
 */

#include "../VirtualDisplay.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iterator>
#include <stdexcept>

extern char** environ;

namespace test_support {

namespace {

constexpr char kServer[] = "/usr/bin/Xvfb";
constexpr int kStartTimeoutMs = 60'000;

// The line with the display's number, which the server writes when it is ready.
std::string ReadLine(int file) {
    std::string line;
    char character = 0;
    pollfd entry{file, POLLIN, 0};
    while (::poll(&entry, 1, kStartTimeoutMs) == 1 && ::read(file, &character, 1) == 1 && character != '\n')
        line += character;
    return line;
}

pid_t StartServer(int numberFile) {
    std::string file = std::to_string(numberFile);
    std::string words[] = {kServer, "-displayfd", file, "-screen", "0", "64x64x24", "-nolisten", "tcp", "-noreset"};
    char* arguments[std::size(words) + 1] = {};
    for (std::size_t index = 0; index < std::size(words); ++index)
        arguments[index] = words[index].data();
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, kServer, &actions, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? pid : -1;
}

}  // namespace

class VirtualDisplay::Impl {
public:
    Impl() {
        int ends[2];
        if (::pipe(ends) != 0)
            throw std::runtime_error("can't make a pipe");
        ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        m_server = StartServer(ends[1]);
        ::close(ends[1]);
        name = ":" + ReadLine(ends[0]);
        ::close(ends[0]);
        m_display = name.size() > 1 ? ::XOpenDisplay(name.c_str()) : nullptr;
        if (m_display == nullptr) {
            Stop();
            throw std::runtime_error("the X server did not start");
        }
    }
    ~Impl() {
        ::XCloseDisplay(m_display);
        Stop();
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void Set(Shift key, bool isPressed) {
        const KeySym symbol = key == Shift::kLeft ? XK_Shift_L : XK_Shift_R;
        ::XTestFakeKeyEvent(m_display, ::XKeysymToKeycode(m_display, symbol), isPressed ? True : False, 0);
        ::XSync(m_display, False);
    }

    std::string name;

private:
    void Stop() {
        if (m_server <= 0)
            return;
        ::kill(m_server, SIGTERM);
        ::waitpid(m_server, nullptr, 0);
    }

    pid_t m_server = -1;
    Display* m_display = nullptr;
};

bool VirtualDisplay::IsInstalled() {
    return ::access(kServer, X_OK) == 0;
}

VirtualDisplay::VirtualDisplay() : m_impl(std::make_unique<Impl>()) {}
VirtualDisplay::~VirtualDisplay() = default;

std::string VirtualDisplay::Name() const {
    return m_impl->name;
}
void VirtualDisplay::PressShift(Shift key) {
    m_impl->Set(key, true);
}
void VirtualDisplay::ReleaseShift(Shift key) {
    m_impl->Set(key, false);
}

}  // namespace test_support
