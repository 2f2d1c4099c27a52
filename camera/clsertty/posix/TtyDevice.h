/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a tty
 */
#pragma once

#include <sys/stat.h>

#include <string>

#include "SerialDevice.h"
#include "os/posix/FileDescriptor.h"

namespace ClSerTty {

class TtyDevice final : public SerialDevice {
public:
    explicit TtyDevice(const PortInfo& port);
    ~TtyDevice() override;

    bool WaitForInput(Deadline deadline) override;
    std::size_t TakeInput(std::span<char> buffer) override;
    std::size_t WriteSome(std::span<const char> bytes, Deadline deadline) override;
    std::size_t BytesAvailable() override;
    void DiscardInput() override;
    std::uint32_t SupportedBaudRates() override { return m_supported; }
    void SetBaudRate(std::uint32_t bitsPerSecond) override;
    void Cancel() noexcept override;

private:
    void TakeExclusively(const PortInfo& port);
    void Configure();
    void ShortenLatency() noexcept;
    void ApplyBaudRate(std::uint32_t bitsPerSecond, int when);
    void WaitUntilSent();
    bool WaitFor(short events, Deadline deadline);
    int BytesOf(unsigned long request);
    [[noreturn]] void ThrowGone(int error) const;
    [[noreturn]] void ThrowInUse(const struct stat& status) const;

    const std::string m_title;  // name and path, for texts
    os::FileDescriptor m_tty;
    os::FileDescriptor m_cancel;
    bool m_isPseudoTerminal = false;
    std::uint32_t m_supported = 0;
    std::uint32_t m_bitsPerSecond = 9600;
};

}  // namespace ClSerTty
