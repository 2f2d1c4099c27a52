/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line that is a COM port
 */
#pragma once

#include <windows.h>

#include <mutex>
#include <optional>
#include <string>

#include "SerialDevice.h"
#include "Transfer.h"
#include "os/LockName.h"

namespace ClSerTty {

class ComDevice final : public SerialDevice {
public:
    explicit ComDevice(const PortInfo& port);

    bool WaitForInput(Deadline deadline) override;
    std::size_t TakeInput(std::span<char> buffer) override;
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
    void SetWriteTimeout(DWORD milliseconds);
    DWORD NextWait(Deadline deadline) const;
    bool WaitForFirst(Deadline deadline);
    void CollectFirst();
    void Check(DWORD error) const;
    bool IsCancelled() const;
    COMSTAT Status();
    [[noreturn]] void ThrowGone(DWORD error) const;

    const std::string m_title;  // name and path, for texts
    const os::Handle m_port;
    const os::Handle m_cancel;
    std::mutex m_inputMutex;  // for the three below; never held during a wait
    [[no_unique_address]] const os::LockName m_inputMutexName{&m_inputMutex, "COM port's input"};
    Transfer m_wait;   // of m_first
    char m_first = 0;  // a wait for input is a read of one byte
    bool m_hasFirst = false;
    Transfer m_take;
    Transfer m_write;
    DWORD m_writeTimeout = MAXDWORD;  // that the port has at present
    DWORD m_bitsPerSecond = 0;
    std::optional<std::uint32_t> m_triedRates;
};

}  // namespace ClSerTty
