/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IBase: what everything that has an access mode implements
 */
#pragma once

#include "GenApi/Types.h"

namespace GenApi {

struct IBase {
    virtual EAccessMode GetAccessMode() const = 0;

protected:
    IBase() = default;
    IBase(const IBase&) = default;
    IBase& operator=(const IBase&) = default;
    ~IBase() = default;
};

}  // namespace GenApi
