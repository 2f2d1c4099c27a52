/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The consumer's memory: its pointers may lie anywhere, in the middle of a packed structure for example
 */
#pragma once

#include <cstring>

#include "support/GenTLError.h"

namespace gentl {

template <class T>
void Store(T* target, const T& value) {
    std::memcpy(static_cast<void*>(target), &value, sizeof value);
}

template <class T>
T Load(const T* source) {
    T value;
    std::memcpy(&value, static_cast<const void*>(source), sizeof value);
    return value;
}

/// A pointer that may be null, but must lead somewhere if it is not.
template <class T>
T* Optional(T* pointer, const char* name) {
    return pointer == nullptr ? nullptr : Required(pointer, name);
}

}  // namespace gentl
