/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The host's serial port: a COM port
 */

#include "../HostPort.h"

#include <windows.h>

#include <stdexcept>
#include <thread>

namespace MarlowSimTest {

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class ComPort final : public HostPort {
public:
    explicit ComPort(const fs::path& link)
        : m_port(::CreateFileA(("\\\\.\\" + link.filename().string()).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                               OPEN_EXISTING, 0, nullptr)) {
        if (m_port == INVALID_HANDLE_VALUE)
            throw std::runtime_error("cannot open " + link.string());
        ::PurgeComm(m_port, PURGE_RXCLEAR | PURGE_TXCLEAR);
    }
    ~ComPort() override { ::CloseHandle(m_port); }
    ComPort(const ComPort&) = delete;
    ComPort& operator=(const ComPort&) = delete;

    void SetBaudRate(std::uint32_t bitsPerSecond) override {
        DCB settings{};
        settings.DCBlength = sizeof(settings);
        settings.BaudRate = bitsPerSecond;
        settings.fBinary = TRUE;
        settings.ByteSize = 8;
        if (::SetCommState(m_port, &settings) == 0)
            throw std::runtime_error("the port refuses a rate");
    }

    void SendBytes(gencp::ByteView bytes) override {
        DWORD count = 0;
        if (::WriteFile(m_port, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) == 0 ||
            count != bytes.size()) {
            throw std::runtime_error("the line takes no bytes");
        }
    }

    bool Fill(steady_clock::time_point deadline, gencp::Bytes& bytes) override {
        DWORD count = 0;
        while ((count = Waiting()) == 0 && !HasHungUp() && steady_clock::now() < deadline)
            std::this_thread::sleep_for(milliseconds(1));
        const std::size_t before = bytes.size();
        bytes.resize(before + count);
        if (count > 0 && ::ReadFile(m_port, bytes.data() + before, count, &count, nullptr) == 0)
            count = 0;
        bytes.resize(before + count);
        return count > 0;
    }

    bool HasHungUp() const override {
        COMSTAT status{};
        DWORD errors = 0;
        return ::ClearCommError(m_port, &errors, &status) == 0;
    }

    bool WaitForHangUp() const override {
        const auto deadline = steady_clock::now() + std::chrono::seconds(20);
        while (!HasHungUp()) {
            if (steady_clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(milliseconds(1));
        }
        return true;
    }

private:
    DWORD Waiting() const {
        COMSTAT status{};
        DWORD errors = 0;
        return ::ClearCommError(m_port, &errors, &status) == 0 ? 0 : status.cbInQue;
    }

    HANDLE m_port;
};

}  // namespace

std::unique_ptr<HostPort> HostPort::Open(const fs::path& link) {
    return std::make_unique<ComPort>(link);
}

bool HostPort::IsThere(const fs::path& link) {
    const std::string entry = "\\Device\\" + link.filename().string();
    return ::RegGetValueA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", entry.c_str(), RRF_RT_REG_SZ, nullptr,
                          nullptr, nullptr) == ERROR_SUCCESS;
}

}  // namespace MarlowSimTest
