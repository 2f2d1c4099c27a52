/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IFloat: a node with a floating-point value
 */
#pragma once

#include "GenApi/Autovector.h"
#include "GenApi/IValue.h"

namespace GenApi {

/// A node with a floating-point value.
struct IFloat : virtual public IValue {
    /// Sets it; throws OutOfRangeException with \a verify when it is outside its limits, AccessException when it can't
    /// be written.
    virtual void SetValue(double value, bool verify = true) = 0;
    /// Sets it, as SetValue.
    IFloat& operator=(double value) {
        SetValue(value);
        return *this;
    }
    using IValue::operator=;
    /// The value; throws AccessException when it can't be read. With \a verify a value outside its limits is an
    /// exception, with \a ignoreCache the device is asked.
    virtual double GetValue(bool verify = false, bool ignoreCache = false) = 0;
    /// The value, as GetValue.
    double operator()() { return GetValue(); }
    /// The value, as GetValue.
    double operator*() { return GetValue(); }
    /// The least value at present; may ask the device.
    virtual double GetMin() = 0;
    /// The greatest value at present; may ask the device.
    virtual double GetMax() = 0;
    /// Whether values lie on steps from the least one on.
    virtual bool HasInc() = 0;
    /// Whether there are steps, a list of values, or neither.
    virtual EIncMode GetIncMode() = 0;
    /// The step; throws LogicalErrorException when HasInc is false.
    virtual double GetInc() = 0;
    /// The values of a valid value set, with \a bounded only those between minimum and maximum.
    virtual double_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    /// How it is best shown.
    virtual ERepresentation GetRepresentation() = 0;
    /// The unit of value and limits, "us", "Hz" ...; empty for none.
    virtual GenICam::gcstring GetUnit() = 0;
    /// Which notation it is best shown in.
    virtual EDisplayNotation GetDisplayNotation() = 0;
    /// How many digits it is best shown with.
    virtual std::int64_t GetDisplayPrecision() = 0;
    /// Raises the minimum at run time.
    virtual void ImposeMin(double value) = 0;
    /// Lowers the maximum at run time.
    virtual void ImposeMax(double value) = 0;

protected:
    ~IFloat() = default;
};

}  // namespace GenApi
