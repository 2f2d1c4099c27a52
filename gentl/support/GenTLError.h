/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GenTLError: a failure with the code that the consumer gets
 */
#pragma once

#include <stdexcept>
#include <string>

#include "gentl/GenTL.h"

namespace gentl {

/// Thrown anywhere below the C functions, which return its code and keep its text as the thread's last error.
class GenTLError : public std::runtime_error {
public:
    GenTLError(GC_ERROR code, const std::string& text) : std::runtime_error(text), m_code(code) {}
    GC_ERROR Code() const noexcept { return m_code; }

private:
    GC_ERROR m_code;
};

const char* NameOf(GC_ERROR code) noexcept;

/// A pointer that must lead somewhere: consumers pass null, and sometimes ~0.
template <class T>
T* Required(T* pointer, const char* name) {
    if (pointer == nullptr || reinterpret_cast<uintptr_t>(pointer) == ~uintptr_t{0})
        throw GenTLError(GC_ERR_INVALID_PARAMETER, std::string(name) + " leads nowhere");
    return pointer;
}

}  // namespace gentl
