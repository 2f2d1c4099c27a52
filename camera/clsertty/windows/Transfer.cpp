/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One read or write of a COM port that goes on while its thread waits
 */

#include "Transfer.h"

#include <array>
#include <system_error>

namespace ClSerTty {

HANDLE NewEvent() {
    if (const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr))
        return event;
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateEvent");
}

void Transfer::Prepare() {
    GiveUp();
    m_overlapped = OVERLAPPED{};
    m_overlapped.hEvent = m_done.Get();
}

/// A transfer that ended at once has a result like all others.
DWORD Transfer::Begun(BOOL result) {
    const DWORD error = result != 0 ? ERROR_SUCCESS : GetLastError();
    m_isUnderWay = error == ERROR_SUCCESS || error == ERROR_IO_PENDING;
    return m_isUnderWay ? ERROR_SUCCESS : error;
}

DWORD Transfer::BeginRead(char* bytes, DWORD size) {
    Prepare();
    return Begun(ReadFile(m_port, bytes, size, nullptr, &m_overlapped));
}

DWORD Transfer::BeginWrite(const char* bytes, DWORD size) {
    Prepare();
    return Begun(WriteFile(m_port, bytes, size, nullptr, &m_overlapped));
}

bool Transfer::IsDone() const noexcept {
    return m_isUnderWay && WaitForSingleObject(m_done.Get(), 0) == WAIT_OBJECT_0;
}

void Transfer::Wait(HANDLE cancel, DWORD milliseconds) const {
    const std::array<HANDLE, 2> events{m_done.Get(), cancel};
    WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE, milliseconds);
}

Transfer::Result Transfer::End() {
    Result result{};
    if (!m_isUnderWay)
        return result;
    if (!IsDone())
        CancelIoEx(m_port, &m_overlapped);
    if (GetOverlappedResult(m_port, &m_overlapped, &result.count, TRUE) == 0)
        result.error = GetLastError();
    m_isUnderWay = false;
    if (result.error == ERROR_OPERATION_ABORTED)
        result.error = ERROR_SUCCESS;
    return result;
}

}  // namespace ClSerTty
