/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IValue: what every node with a value implements
 */
#pragma once

#include "Base/GCString.h"
#include "GenApi/IBase.h"

namespace GenApi {

struct INode;

/// A node with a value that can be a text.
struct IValue : virtual public IBase {
    /// The node.
    virtual INode* GetNode() = 0;
    /// The value as a text; with \a verify a value outside its range is an exception, with \a ignoreCache the device
    /// is asked.
    virtual GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) = 0;
    /// Sets the value from a text, as FromString.
    IValue& operator=(const GenICam::gcstring& text) {
        FromString(text);
        return *this;
    }
    /// Sets the value from a text.
    virtual void FromString(const GenICam::gcstring& text, bool verify = true) = 0;
    /// True when the next read will not ask the device.
    virtual bool IsValueCacheValid() const = 0;

protected:
    IValue() = default;
    IValue(const IValue&) = default;
    ~IValue() = default;
};

}  // namespace GenApi
