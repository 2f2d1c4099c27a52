/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IString: a node with a text
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

/// A node with a text.
struct IString : virtual public IValue {
    /// Sets it; throws OutOfRangeException when it is too long, AccessException when it can't be written.
    virtual void SetValue(const GenICam::gcstring& value, bool verify = true) = 0;
    /// Sets it, as SetValue.
    IString& operator=(const GenICam::gcstring& value) {
        SetValue(value);
        return *this;
    }
    /// The text up to its first NUL; throws AccessException when it can't be read. With \a ignoreCache the device is
    /// asked.
    virtual GenICam::gcstring GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The text, as GetValue.
    GenICam::gcstring operator()() { return GetValue(); }
    /// The text, as GetValue.
    GenICam::gcstring operator*() { return GetValue(); }
    /// Number of bytes that the text may have.
    virtual std::int64_t GetMaxLength() = 0;

protected:
    ~IString() = default;
};

}  // namespace GenApi
