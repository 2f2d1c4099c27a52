/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IBoolean: a node that is true or false
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

struct IBoolean : virtual public IValue {
    virtual void SetValue(bool value, bool verify = true) = 0;
    IBoolean& operator=(bool value) {
        SetValue(value);
        return *this;
    }
    virtual bool GetValue(bool verify = false, bool ignoreCache = false) const = 0;
    bool operator()() const { return GetValue(); }

protected:
    ~IBoolean() = default;
};

}  // namespace GenApi
