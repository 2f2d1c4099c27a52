/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IBase: what everything that has an access mode implements
 */
#pragma once

#include "GenApi/Types.h"

namespace GenApi {

/// What has an access mode: nodes, values, ports. Thread-safe, as everything that a node map implements.
struct IBase {
    /// What may be done with it at present; may ask the device, and tells NA when that fails.
    virtual EAccessMode GetAccessMode() const = 0;

protected:
    IBase() = default;
    IBase(const IBase&) = default;
    IBase& operator=(const IBase&) = default;
    ~IBase() = default;
};

}  // namespace GenApi
