/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A terminal for one test
 */
#include "../PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace tools_test {

PseudoTerminal::PseudoTerminal(unsigned short columns) : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    std::array<char, 256> name{};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name.data(), name.size()) != 0)
        throw std::runtime_error("can't make a pseudo-terminal");
    const int slave = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    ::tcgetattr(slave, &settings);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(slave, TCSANOW, &settings);
    winsize size{};
    size.ws_col = columns;
    ::ioctl(slave, TIOCSWINSZ, &size);
    m_stream = ::fdopen(slave, "w");
}

PseudoTerminal::~PseudoTerminal() {
    std::fclose(m_stream);
    ::close(m_master);
}

void PseudoTerminal::Type(std::string_view text) const {
    if (::write(m_master, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("can't write to a pseudo-terminal");
}

std::string PseudoTerminal::Text() {
    std::fflush(m_stream);
    std::string text;
    pollfd ready{m_master, POLLIN, 0};
    // What was written is there at once; the wait only bounds a text that never comes.
    while (::poll(&ready, 1, text.empty() ? 10'000 : 0) == 1) {
        std::array<char, 4096> buffer;
        const ssize_t count = ::read(m_master, buffer.data(), buffer.size());
        if (count <= 0)
            break;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace tools_test
