/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IInteger: a node with an integer value
 */
#pragma once

#include "GenApi/Autovector.h"
#include "GenApi/IValue.h"

namespace GenApi {

/// A node with an integer value.
struct IInteger : virtual public IValue {
    /// Sets it; throws OutOfRangeException with \a verify when it is outside its limits or between two steps,
    /// AccessException when it can't be written.
    virtual void SetValue(std::int64_t value, bool verify = true) = 0;
    /// Sets it, as SetValue.
    IInteger& operator=(std::int64_t value) {
        SetValue(value);
        return *this;
    }
    using IValue::operator=;
    /// The value; throws AccessException when it can't be read. With \a verify a value outside its limits is an
    /// exception, with \a ignoreCache the device is asked.
    virtual std::int64_t GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The value, as GetValue.
    std::int64_t operator()() { return GetValue(); }
    /// The value, as GetValue.
    std::int64_t operator*() { return GetValue(); }
    /// The least value at present; may ask the device.
    virtual std::int64_t GetMin() = 0;
    /// The greatest value at present; may ask the device.
    virtual std::int64_t GetMax() = 0;
    /// Whether there are steps, a list of values, or neither.
    virtual EIncMode GetIncMode() = 0;
    /// The step from the minimum on, at least 1.
    virtual std::int64_t GetInc() = 0;
    /// The values of a valid value set, with \a bounded only those between minimum and maximum.
    virtual int64_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    /// How it is best shown.
    virtual ERepresentation GetRepresentation() = 0;
    /// The unit of value and limits, "px", "B" ...; empty for none.
    virtual GenICam::gcstring GetUnit() = 0;
    /// Raises the minimum at run time.
    virtual void ImposeMin(std::int64_t value) = 0;
    /// Lowers the maximum at run time.
    virtual void ImposeMax(std::int64_t value) = 0;

protected:
    ~IInteger() = default;
};

}  // namespace GenApi
