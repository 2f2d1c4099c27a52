/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IBoolean: a node that is true or false
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

/// A node that is on or off.
struct IBoolean : virtual public IValue {
    /// Switches it; throws AccessException when it can't be written. With \a verify access and range are checked.
    virtual void SetValue(bool value, bool verify = true) = 0;
    /// Switches it, as SetValue.
    IBoolean& operator=(bool value) {
        SetValue(value);
        return *this;
    }
    /// Whether it is on; throws AccessException when it can't be read. With \a ignoreCache the device is asked.
    virtual bool GetValue(bool verify = false, bool ignoreCache = false) const = 0;
    /// Whether it is on, as GetValue.
    bool operator()() const { return GetValue(); }

protected:
    ~IBoolean() = default;
};

}  // namespace GenApi
