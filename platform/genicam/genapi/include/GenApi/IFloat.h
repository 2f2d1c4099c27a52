/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IFloat: a node with a floating-point value
 */
#pragma once

#include "GenApi/Autovector.h"
#include "GenApi/IValue.h"

namespace GenApi {

struct IFloat : virtual public IValue {
    virtual void SetValue(double value, bool verify = true) = 0;
    IFloat& operator=(double value) {
        SetValue(value);
        return *this;
    }
    using IValue::operator=;
    virtual double GetValue(bool verify = false, bool ignoreCache = false) = 0;
    double operator()() { return GetValue(); }
    double operator*() { return GetValue(); }
    virtual double GetMin() = 0;
    virtual double GetMax() = 0;
    virtual bool HasInc() = 0;
    virtual EIncMode GetIncMode() = 0;
    virtual double GetInc() = 0;
    virtual double_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    virtual ERepresentation GetRepresentation() = 0;
    virtual GenICam::gcstring GetUnit() = 0;
    virtual EDisplayNotation GetDisplayNotation() = 0;
    virtual std::int64_t GetDisplayPrecision() = 0;
    virtual void ImposeMin(double value) = 0;
    virtual void ImposeMax(double value) = 0;

protected:
    ~IFloat() = default;
};

}  // namespace GenApi
