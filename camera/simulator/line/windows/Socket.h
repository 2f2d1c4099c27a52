/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A socket that closes itself
 */
#pragma once

// A waiter looks at all cameras of a simulator.
#define FD_SETSIZE 1024
#include <winsock2.h>
// After winsock2.h, which it must not precede.
#include <windows.h>

#include <cstdint>
#include <system_error>

namespace MarlowSim {

[[noreturn]] inline void ThrowSocketError(const char* what) {
    throw std::system_error(WSAGetLastError(), std::system_category(), what);
}

/// Sockets work as long as one of these lives.
class SocketLibrary {
public:
    SocketLibrary() {
        WSADATA data{};
        WSAStartup(MAKEWORD(2, 2), &data);
    }
    ~SocketLibrary() { WSACleanup(); }
    SocketLibrary(const SocketLibrary&) = delete;
    SocketLibrary& operator=(const SocketLibrary&) = delete;
};

class Socket {
public:
    /// \param[in] type SOCK_STREAM or SOCK_DGRAM
    /// \throw std::system_error The system refuses
    explicit Socket(int type) : m_socket(::socket(AF_INET, type, 0)) {
        if (m_socket == INVALID_SOCKET)
            ThrowSocketError("socket");
    }
    ~Socket() { ::closesocket(m_socket); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    SOCKET Get() const { return m_socket; }

private:
    SocketLibrary m_library;
    SOCKET m_socket;
};

/// The address of a port on the loopback interface.
inline sockaddr_in Loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace MarlowSim
