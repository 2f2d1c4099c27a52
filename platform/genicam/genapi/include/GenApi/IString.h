/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IString: a node with a text
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

struct IString : virtual public IValue {
    virtual void SetValue(const GenICam::gcstring& value, bool verify = true) = 0;
    IString& operator=(const GenICam::gcstring& value) {
        SetValue(value);
        return *this;
    }
    virtual GenICam::gcstring GetValue(bool verify = false, bool ignoreCache = false) = 0;
    GenICam::gcstring operator()() { return GetValue(); }
    GenICam::gcstring operator*() { return GetValue(); }
    /// Number of bytes that the text may have.
    virtual std::int64_t GetMaxLength() = 0;

protected:
    ~IString() = default;
};

}  // namespace GenApi
