/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a COM port
 */
#pragma once

#include <windows.h>

#include <atomic>
#include <optional>
#include <string>

#include "SerialDevice.h"

namespace ClSerTty {

class ComDevice final : public SerialDevice {
public:
    explicit ComDevice(const PortInfo& port);
    ~ComDevice() override;
    ComDevice(const ComDevice&) = delete;
    ComDevice& operator=(const ComDevice&) = delete;

    std::size_t ReadSome(std::span<char> buffer, Deadline deadline) override;
    std::size_t WriteSome(std::span<const char> bytes, Deadline deadline) override;
    std::size_t BytesAvailable() override;
    void DiscardInput() override;
    std::uint32_t SupportedBaudRates() override;
    void SetBaudRate(std::uint32_t bitsPerSecond) override;
    void Cancel() noexcept override;

private:
    void Apply(DWORD bitsPerSecond);
    std::uint32_t TryFastRates();
    void WaitUntilSent();
    void SetWait(DWORD milliseconds);
    DWORD NextWait(Deadline deadline) const;
    COMSTAT Status();
    [[noreturn]] void ThrowGone(DWORD error) const;

    const std::string m_title;  // name and path, for texts
    HANDLE m_port = INVALID_HANDLE_VALUE;
    std::atomic<bool> m_isCancelled{false};
    DWORD m_wait = MAXDWORD;  // time-out that the port has at present
    DWORD m_bitsPerSecond = 0;
    std::optional<std::uint32_t> m_triedRates;
};

}  // namespace ClSerTty
