/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Pseudo-terminals, folders of links and the loaded serial library, for tests
 */

#include "Support.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

namespace ClSerTtyTest {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "clsertty.XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

Pty::Pty() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    char name[128] = {};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name, sizeof(name)) != 0) {
        throw std::runtime_error("no pseudo-terminal");
    }
    m_slavePath = name;
    m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
}

Pty::~Pty() {
    Unplug();
}

void Pty::Send(const std::string& bytes) const {
    if (::write(m_master, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("short write");
    }
}

std::string Pty::Receive(std::size_t count) const {
    std::string bytes;
    while (bytes.size() < count) {
        pollfd file{m_master, POLLIN, 0};
        std::vector<char> part(count - bytes.size());
        if (::poll(&file, 1, 10000) != 1) {
            break;
        }
        const ssize_t got = ::read(m_master, part.data(), part.size());
        if (got <= 0) {
            break;
        }
        bytes.append(part.data(), static_cast<std::size_t>(got));
    }
    return bytes;
}

unsigned Pty::SpeedCode() const {
    termios settings{};
    ::tcgetattr(m_master, &settings);
    return ::cfgetospeed(&settings);
}

void Pty::Unplug() {
    for (int* file : {&m_slave, &m_master}) {
        if (*file >= 0) {
            ::close(*file);
            *file = -1;
        }
    }
}

SerialLibrary::SerialLibrary() : m_library(CLSERTTY_FILE) {
    Find(GetManufacturerInfo, "clGetManufacturerInfo");
    Find(GetNumSerialPorts, "clGetNumSerialPorts");
    Find(GetSerialPortIdentifier, "clGetSerialPortIdentifier");
    Find(SerialInit, "clSerialInit");
    Find(SerialClose, "clSerialClose");
    Find(SerialRead, "clSerialRead");
    Find(SerialWrite, "clSerialWrite");
    Find(GetNumBytesAvail, "clGetNumBytesAvail");
    Find(FlushPort, "clFlushPort");
    Find(GetSupportedBaudRates, "clGetSupportedBaudRates");
    Find(SetBaudRate, "clSetBaudRate");
    Find(GetErrorText, "clGetErrorText");
}

template <typename Function>
void SerialLibrary::Find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(m_library.Symbol(name));
}

std::string SerialLibrary::TextOf(std::int32_t code) const {
    std::uint32_t size = 0;
    if (GetErrorText(code, nullptr, &size) != CL_ERR_BUFFER_TOO_SMALL) {
        return {};
    }
    std::string text(size, '\0');
    if (GetErrorText(code, text.data(), &size) != CL_ERR_NO_ERR) {
        return {};
    }
    text.pop_back();
    return text;
}

std::uint32_t SerialLibrary::IndexOf(const std::string& name) const {
    std::uint32_t count = 0;
    GetNumSerialPorts(&count);
    for (std::uint32_t index = 0; index < count; ++index) {
        char text[256] = {};
        std::uint32_t size = sizeof(text);
        if (GetSerialPortIdentifier(index, text, &size) == CL_ERR_NO_ERR && name == text) {
            return index;
        }
    }
    throw std::runtime_error("no port " + name);
}

}  // namespace ClSerTtyTest
