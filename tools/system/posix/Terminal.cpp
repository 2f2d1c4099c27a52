/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The terminal behind a stream
 */
#include "system/Terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tools {

namespace {

/// A terminal that hands over what comes at once, and does not show it, for as long as this lives.
class RawInput {
public:
    explicit RawInput(int terminal) : m_terminal(terminal), m_isSet(::tcgetattr(terminal, &m_before) == 0) {
        if (!m_isSet)
            return;
        termios raw = m_before;
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        raw.c_cc[VMIN] = 0;
        raw.c_cc[VTIME] = 0;
        m_isSet = ::tcsetattr(terminal, TCSANOW, &raw) == 0;
    }
    ~RawInput() {
        if (m_isSet)
            ::tcsetattr(m_terminal, TCSANOW, &m_before);
    }
    RawInput(const RawInput&) = delete;
    RawInput& operator=(const RawInput&) = delete;

    bool IsSet() const noexcept { return m_isSet; }

private:
    const int m_terminal;
    termios m_before{};
    bool m_isSet;
};

/// A process in the background is stopped when it touches the settings; one that can't read gets no answer.
bool MayAsk(int terminal) {
    const pid_t foreground = ::tcgetpgrp(terminal);
    return (::fcntl(terminal, F_GETFL) & O_ACCMODE) == O_RDWR && (foreground == -1 || foreground == ::getpgrp());
}

/// What comes until a letter ends it, or nothing comes for so long, in milliseconds.
std::string Answer(int terminal, char end, int patience) {
    std::string text;
    pollfd ready{terminal, POLLIN, 0};
    std::array<char, 64> buffer{};
    while (text.find(end) == std::string::npos && text.size() < 1024 && ::poll(&ready, 1, patience) == 1) {
        const ssize_t count = ::read(terminal, buffer.data(), buffer.size());
        if (count <= 0)
            break;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

/// Whether an answer to "primary device attributes", as ESC [ ? 62 ; 4 ; 22 c, has an attribute among them.
bool HasAttribute(std::string_view answer, std::string_view attribute) {
    const std::size_t begin = answer.find("\033[?");
    const std::size_t end = answer.find('c', begin == std::string_view::npos ? begin : begin + 3);
    if (end == std::string_view::npos)
        return false;
    const std::string list = ";" + std::string(answer.substr(begin + 3, end - begin - 3)) + ";";
    return list.find(";" + std::string(attribute) + ";") != std::string::npos;
}

}  // namespace

bool ShowsSixels(std::FILE* stream) {
    constexpr std::string_view kAttributesPlease = "\033[c";
    constexpr int kPatience = 1000;
    const int terminal = ::fileno(stream);
    if (!IsTerminal(stream) || !MayAsk(terminal))
        return false;
    std::fflush(stream);
    const RawInput raw(terminal);
    if (!raw.IsSet() || ::write(terminal, kAttributesPlease.data(), kAttributesPlease.size()) < 0)
        return false;
    return HasAttribute(Answer(terminal, 'c', kPatience), "4");
}

bool IsTerminal(std::FILE* stream) {
    return ::isatty(::fileno(stream)) == 1;
}

int TerminalWidth(std::FILE* stream) {
    if (!IsTerminal(stream))
        return 0;
    constexpr int kUsualWidth = 80;
    winsize size{};
    if (::ioctl(::fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kUsualWidth;
    return size.ws_col;
}

/// Standard streams that the program was started without are occupied: else the line to the camera takes the place of
/// one, and the camera gets what is printed. Printing there goes on to fail.
void PrepareStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

}  // namespace tools
