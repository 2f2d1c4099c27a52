/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IEnumEntry: one entry of an enumeration
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

/// One value that an enumeration can have.
struct IEnumEntry : virtual public IValue {
    /// The value.
    virtual std::int64_t GetValue() = 0;
    /// Its name among the entries.
    virtual GenICam::gcstring GetSymbolic() const = 0;
    /// A number that goes with it, for instance 10.0 of an entry "Rate10"; the value where the description has none.
    virtual double GetNumericValue() = 0;
    /// Whether the device leaves it by itself once it did what it stands for.
    virtual bool IsSelfClearing() = 0;
    using IValue::operator=;

protected:
    ~IEnumEntry() = default;
};

}  // namespace GenApi
