/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IPort: a device's register space
 */
#pragma once

#include "GenApi/IBase.h"

namespace GenApi {

/// What nodes reach a device's registers through. Addresses and lengths count bytes.
struct IPort : virtual public IBase {
    /// Reads \a length bytes (at least 1) from \a address into \a buffer; throws a GenICam exception on failure.
    virtual void Read(void* buffer, std::int64_t address, std::int64_t length) = 0;
    /// Writes \a length bytes (at least 1) to \a address; throws a GenICam exception on failure.
    virtual void Write(const void* buffer, std::int64_t address, std::int64_t length) = 0;

protected:
    IPort() = default;
    IPort(const IPort&) = default;
    IPort& operator=(const IPort&) = default;
    ~IPort() = default;
};

}  // namespace GenApi
