/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IRegister: a node that is a piece of register space
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

/// A node that is a piece of register space, as bytes in the order of the device.
struct IRegister : virtual public IValue {
    /// Writes all bytes of the register; \a length must be GetLength().
    virtual void Set(const std::uint8_t* buffer, std::int64_t length, bool verify = true) = 0;
    /// Reads the first \a length bytes of the register.
    virtual void Get(std::uint8_t* buffer, std::int64_t length, bool verify = false, bool ignoreCache = false) = 0;
    /// Its length in bytes; may ask the device.
    virtual std::int64_t GetLength() = 0;
    /// The address of its first byte; may ask the device.
    virtual std::int64_t GetAddress() = 0;
    using IValue::operator=;

protected:
    ~IRegister() = default;
};

}  // namespace GenApi
