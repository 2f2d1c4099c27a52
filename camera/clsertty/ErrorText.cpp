/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Error texts: the standard one of each code, and the calling thread's last error in full
 */

#include "ErrorText.h"

#include "clser/ClSerial.h"
#include "os/PerThread.h"

namespace ClSerTty {

namespace {

struct Row {
    std::int32_t code;
    const char* text;
};

constexpr Row kRows[] = {
    {CL_ERR_NO_ERR, "No error."},
    {CL_ERR_BUFFER_TOO_SMALL, "The buffer is too small."},
    {CL_ERR_MANU_DOES_NOT_EXIST, "The maker does not exist."},
    {CL_ERR_PORT_IN_USE, "The serial port is in use."},
    {CL_ERR_TIMEOUT, "The time-out has passed."},
    {CL_ERR_INVALID_INDEX, "There is no serial port with that index, or it cannot be opened."},
    {CL_ERR_INVALID_REFERENCE, "The reference is none of an open serial port, or the port has gone."},
    {CL_ERR_ERROR_NOT_FOUND, "The error code is not known."},
    {CL_ERR_BAUD_RATE_NOT_SUPPORTED, "The serial port does not have that baud rate."},
    {CL_ERR_OUT_OF_MEMORY, "Out of memory."},
    {CL_ERR_REGISTRY_KEY_NOT_FOUND, "The registry key was not found."},
    {CL_ERR_INVALID_PTR, "A pointer is null."},
    {CL_ERR_IN_USE, "In use."},
    {CL_ERR_UNABLE_TO_LOAD_DLL, "The library could not be loaded."},
    {CL_ERR_FUNCTION_NOT_FOUND, "The function was not found in the library."},
};

struct LastError {
    std::int32_t code = CL_ERR_NO_ERR;
    std::string text;
};

LastError& TheLast() {
    return os::PerThread<LastError>();
}

}  // namespace

/**
 * \brief Keep the calling thread's last error for ErrorText
 */
void RememberError(std::int32_t code, const char* text) noexcept {
    try {
        LastError& last = TheLast();
        last.code = code;
        last.text.clear();
        last.text = text;
    } catch (...) {
        return;  // the code is what counts, its general text will do
    }
}

/**
 * \brief Give the text for a code
 * \return What the calling thread's last error with that code said, else the code's general text; nothing for an
 * unknown code
 */
std::optional<std::string> ErrorText(std::int32_t code) {
    const LastError& last = TheLast();
    if (code != CL_ERR_NO_ERR && code == last.code && !last.text.empty())
        return last.text;
    for (const Row& row : kRows) {
        if (row.code == code)
            return row.text;
    }
    return std::nullopt;
}

}  // namespace ClSerTty
