/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lends pseudo-terminals to simulators of systems that have none
 */

#include "line/LineServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "line/Line.h"
#include "line/LineMessage.h"
#include "os/posix/FileDescriptor.h"

namespace MarlowSim {

namespace {

namespace fs = std::filesystem;

os::FileDescriptor ListenOnLoopback() {
    os::FileDescriptor listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(listener.Get(), SOMAXCONN) != 0) {
        throw std::system_error(errno, std::generic_category(), "listen");
    }
    return listener;
}

/// One borrower and its line.
class Loan {
public:
    Loan(os::FileDescriptor socket, fs::path links) : m_socket(std::move(socket)), m_links(std::move(links)) {
        const int on = 1;
        const timeval longest{10, 0};
        ::setsockopt(m_socket.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        ::setsockopt(m_socket.Get(), SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof(longest));
    }

    int Socket() const { return m_socket.Get(); }
    int LineHandle() const { return m_line ? m_line->Handle() : -1; }

    /// Hands on what the host has written.
    bool TakeFromLine() {
        std::array<std::uint8_t, 4096> buffer;
        const std::size_t count = m_line ? m_line->Receive(buffer) : 0;
        return count == 0 || Say(Encode(LineMessageType::kBytes, gencp::ByteView(buffer).first(count)));
    }

    /// False when the borrower has gone, takes no answers or speaks another language.
    bool TakeFromBorrower() try {
        std::array<std::uint8_t, 4096> buffer;
        const ssize_t count = ::recv(m_socket.Get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count <= 0)
            return count < 0 && (errno == EAGAIN || errno == EINTR);
        m_received.insert(m_received.end(), buffer.begin(), buffer.begin() + count);
        while (const auto message = TakeLineMessage(m_received)) {
            if (!Obey(*message))
                return false;
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }

private:
    bool Obey(const LineMessage& message) {
        if (message.type == LineMessageType::kOpen)
            return Say(EncodeText(LineMessageType::kOpen, Open(message.Text())));
        if (!m_line)
            return false;
        switch (message.type) {
            case LineMessageType::kBytes:
                m_line->Send(message.content);
                return true;
            case LineMessageType::kHostRate:
                return Say(EncodeNumber(message.type, m_line->HostBitsPerSecond()));
            case LineMessageType::kIsRead:
                return Say(EncodeNumber(message.type, m_line->IsRead() ? 1 : 0));
            case LineMessageType::kClose:
                m_line.reset();
                return Say(Encode(message.type));
            default:
                return false;
        }
    }

    /// Why there is no line, or nothing.
    std::string Open(std::string name) {
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
        try {
            if (name.empty() || name.find('/') != std::string::npos || name.front() == '.')
                return "'" + name + "' names no line";
            m_line.reset();
            m_line = Line::Create(m_links / name);
            return {};
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    bool Say(gencp::ByteView bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::send(m_socket.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return true;
    }

    os::FileDescriptor m_socket;
    const fs::path m_links;
    std::unique_ptr<Line> m_line;
    gencp::Bytes m_received;
};

class LoopbackLineServer final : public LineServer {
public:
    explicit LoopbackLineServer(fs::path links) : m_links(std::move(links)), m_listener(ListenOnLoopback()) {}

    std::uint16_t Port() const override {
        sockaddr_in address{};
        socklen_t size = sizeof(address);
        ::getsockname(m_listener.Get(), reinterpret_cast<sockaddr*>(&address), &size);
        return ntohs(address.sin_port);
    }

    [[noreturn]] void Run() override {
        for (;;) {
            std::vector<pollfd> files{{m_listener.Get(), POLLIN, 0}};
            for (const Loan& loan : m_loans) {
                files.push_back({loan.Socket(), POLLIN, 0});
                files.push_back({loan.LineHandle(), POLLIN, 0});
            }
            if (::poll(files.data(), files.size(), -1) < 0)
                continue;
            std::size_t index = 1;
            for (auto loan = m_loans.begin(); loan != m_loans.end(); index += 2) {
                // What the host wrote comes before the answer to whatever was asked after it.
                const bool isGood = (files[index + 1].revents == 0 || loan->TakeFromLine()) &&
                                    (files[index].revents == 0 || loan->TakeFromBorrower());
                loan = isGood ? std::next(loan) : m_loans.erase(loan);
            }
            if (files[0].revents != 0)
                Accept();
        }
    }

private:
    void Accept() {
        const int fd = ::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC);
        if (fd >= 0)
            m_loans.emplace_back(os::FileDescriptor(fd, "accept"), m_links);
    }

    const fs::path m_links;
    os::FileDescriptor m_listener;
    std::list<Loan> m_loans;
};

}  // namespace

std::unique_ptr<LineServer> LineServer::Create(const fs::path& links) {
    return std::make_unique<LoopbackLineServer>(links);
}

}  // namespace MarlowSim
