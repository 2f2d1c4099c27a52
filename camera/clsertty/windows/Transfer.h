/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One read or write of a COM port that goes on while its thread waits
 */
#pragma once

#include <windows.h>

#include "os/windows/Handle.h"

namespace ClSerTty {

/// An event that stays set until it is reset. Throws std::system_error when there can't be another.
HANDLE NewEvent();

/// One transfer at a time. Wait may be called beside the other operations, which the caller keeps apart.
class Transfer {
public:
    /// How a transfer ended.
    struct Result {
        DWORD error;  ///< 0 also for one that was given up
        DWORD count;  ///< bytes
    };

    explicit Transfer(HANDLE port) : m_port(port), m_done(NewEvent()) {}
    ~Transfer() { GiveUp(); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// Begin a transfer. The bytes must stay until GiveUp or End was called. Give an error or 0.
    DWORD BeginRead(char* bytes, DWORD size);
    DWORD BeginWrite(const char* bytes, DWORD size);
    bool IsUnderWay() const noexcept { return m_isUnderWay; }
    bool IsDone() const noexcept;
    /// Waits for the end of the transfer or for the event \a cancel; what came is seen by IsDone.
    void Wait(HANDLE cancel, DWORD milliseconds) const;
    /// Takes the result of a transfer that is done, or gives up one that is not.
    Result End();
    void GiveUp() { static_cast<void>(End()); }

private:
    void Prepare();
    DWORD Begun(BOOL result);

    const HANDLE m_port;
    const os::Handle m_done;
    OVERLAPPED m_overlapped{};
    bool m_isUnderWay = false;
};

}  // namespace ClSerTty
