/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A handle of Windows that closes itself
 */
#pragma once

#include <windows.h>

#include <utility>

namespace os {

class Handle {
public:
    /// Takes what a call of the system gave, its ways of saying "none" included: null and INVALID_HANDLE_VALUE.
    explicit Handle(HANDLE handle = nullptr) noexcept : m_handle(handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Handle() { Close(); }

    HANDLE Get() const noexcept { return m_handle; }
    bool IsOpen() const noexcept { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
    void Close() noexcept {
        if (IsOpen())
            ::CloseHandle(m_handle);
        m_handle = nullptr;
    }

private:
    HANDLE m_handle;
};

}  // namespace os
