/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IEnumEntry: one entry of an enumeration
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

struct IEnumEntry : virtual public IValue {
    virtual std::int64_t GetValue() = 0;
    virtual GenICam::gcstring GetSymbolic() const = 0;
    virtual double GetNumericValue() = 0;
    virtual bool IsSelfClearing() = 0;
    using IValue::operator=;

protected:
    ~IEnumEntry() = default;
};

}  // namespace GenApi
