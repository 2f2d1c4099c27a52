/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A socket through which another program commands a simulator
 */

#include "stage/ControlServer.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <array>
#include <cstring>
#include <list>
#include <thread>
#include <vector>

#include "os/posix/FileDescriptor.h"
#include "simulator/Simulator.h"

namespace MarlowSim {

namespace {

constexpr std::size_t kMaxLine = 4096;
constexpr std::size_t kMaxClients = 64;

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path))
        throw std::system_error(ENAMETOOLONG, std::generic_category(), path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

os::FileDescriptor StreamSocket() {
    return {::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket"};
}

/// A socket that nobody listens on was left behind by a program that was killed.
void RemoveAbandoned(const std::string& path, const sockaddr_un& address) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode))
        return;
    const os::FileDescriptor probe = StreamSocket();
    if (::connect(probe.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 &&
        errno == ECONNREFUSED) {
        ::unlink(path.c_str());
    }
}

os::FileDescriptor Listen(const std::string& path) {
    const sockaddr_un address = AddressOf(path);
    RemoveAbandoned(path, address);
    os::FileDescriptor listener = StreamSocket();
    if (::bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        ::chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0 || ::listen(listener.Get(), SOMAXCONN) != 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    return listener;
}

struct Client {
    os::FileDescriptor socket;
    std::string unread;
};

class UnixControlServer final : public ControlServer {
public:
    UnixControlServer(Simulator& simulator, const std::string& path)
        : m_simulator(simulator),
          m_path(path),
          m_listener(Listen(path)),
          m_end(::eventfd(0, EFD_CLOEXEC), "eventfd"),
          m_thread([this] { Run(); }) {}

    ~UnixControlServer() override {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(m_end.Get(), &one, sizeof(one));
        m_thread.join();
        ::unlink(m_path.c_str());
    }

private:
    void Run() {
        for (;;) {
            std::vector<pollfd> files{{m_end.Get(), POLLIN, 0}, {m_listener.Get(), POLLIN, 0}};
            for (const Client& client : m_clients)
                files.push_back({client.socket.Get(), POLLIN, 0});
            if (::poll(files.data(), files.size(), -1) < 0)
                continue;
            if (files[0].revents != 0)
                return;
            std::size_t index = 2;
            for (auto client = m_clients.begin(); client != m_clients.end(); ++index)
                client = files[index].revents == 0 || Serve(*client) ? std::next(client) : m_clients.erase(client);
            if (files[1].revents != 0)
                Accept();
        }
    }

    void Accept() {
        const int fd = ::accept4(m_listener.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0)
            return;
        os::FileDescriptor socket(fd, "accept");
        if (m_clients.size() < kMaxClients)
            m_clients.push_back({std::move(socket), {}});
    }

    /// False when the client has gone, floods or does not take its replies.
    bool Serve(Client& client) {
        std::array<char, 1024> buffer{};
        const ssize_t count = ::read(client.socket.Get(), buffer.data(), buffer.size());
        if (count <= 0)
            return count < 0 && (errno == EAGAIN || errno == EINTR);
        client.unread.append(buffer.data(), static_cast<std::size_t>(count));
        for (std::size_t end = 0; (end = client.unread.find('\n')) != std::string::npos;) {
            const std::string reply = m_simulator.Control(client.unread.substr(0, end)) + "\n";
            client.unread.erase(0, end + 1);
            if (::send(client.socket.Get(), reply.data(), reply.size(), MSG_NOSIGNAL) !=
                static_cast<ssize_t>(reply.size())) {
                return false;
            }
        }
        return client.unread.size() <= kMaxLine;
    }

    Simulator& m_simulator;
    const std::string m_path;
    os::FileDescriptor m_listener;
    os::FileDescriptor m_end;
    std::list<Client> m_clients;
    std::thread m_thread;
};

}  // namespace

std::unique_ptr<ControlServer> ControlServer::Create(Simulator& simulator, const std::string& path) {
    return std::make_unique<UnixControlServer>(simulator, path);
}

}  // namespace MarlowSim
