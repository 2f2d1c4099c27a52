/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Questions to an access mode
 */
#pragma once

#include "GenApi/IBase.h"

namespace GenApi {

inline bool IsReadable(EAccessMode mode) {
    return mode == RW || mode == RO;
}
inline bool IsWritable(EAccessMode mode) {
    return mode == RW || mode == WO;
}
inline bool IsImplemented(EAccessMode mode) {
    return mode != NI;
}
inline bool IsAvailable(EAccessMode mode) {
    return mode != NI && mode != NA;
}

inline bool IsReadable(const IBase* object) {
    return object != nullptr && IsReadable(object->GetAccessMode());
}
inline bool IsWritable(const IBase* object) {
    return object != nullptr && IsWritable(object->GetAccessMode());
}
inline bool IsImplemented(const IBase* object) {
    return object != nullptr && IsImplemented(object->GetAccessMode());
}
inline bool IsAvailable(const IBase* object) {
    return object != nullptr && IsAvailable(object->GetAccessMode());
}

inline bool IsReadable(const IBase& object) {
    return IsReadable(object.GetAccessMode());
}
inline bool IsWritable(const IBase& object) {
    return IsWritable(object.GetAccessMode());
}
inline bool IsImplemented(const IBase& object) {
    return IsImplemented(object.GetAccessMode());
}
inline bool IsAvailable(const IBase& object) {
    return IsAvailable(object.GetAccessMode());
}

inline bool IsVisible(EVisibility visibility, EVisibility maximum) {
    return visibility <= maximum;
}

/// The mode that is left when two restrict each other.
inline EAccessMode Combine(EAccessMode left, EAccessMode right) {
    if (left == NI || right == NI)
        return NI;
    if (left == NA || right == NA)
        return NA;
    if (left == right || right == RW)
        return left;
    return left == RW ? right : NA;
}

inline EVisibility Combine(EVisibility left, EVisibility right) {
    return left < right ? right : left;
}

}  // namespace GenApi
