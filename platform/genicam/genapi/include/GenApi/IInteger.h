/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IInteger: a node with an integer value
 */
#pragma once

#include "GenApi/Autovector.h"
#include "GenApi/IValue.h"

namespace GenApi {

struct IInteger : virtual public IValue {
    virtual void SetValue(std::int64_t value, bool verify = true) = 0;
    IInteger& operator=(std::int64_t value) {
        SetValue(value);
        return *this;
    }
    using IValue::operator=;
    virtual std::int64_t GetValue(bool verify = false, bool ignoreCache = false) = 0;
    std::int64_t operator()() { return GetValue(); }
    std::int64_t operator*() { return GetValue(); }
    virtual std::int64_t GetMin() = 0;
    virtual std::int64_t GetMax() = 0;
    virtual EIncMode GetIncMode() = 0;
    virtual std::int64_t GetInc() = 0;
    /// The values of a valid value set, with \a bounded only those between minimum and maximum.
    virtual int64_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    virtual ERepresentation GetRepresentation() = 0;
    virtual GenICam::gcstring GetUnit() = 0;
    virtual void ImposeMin(std::int64_t value) = 0;
    virtual void ImposeMax(std::int64_t value) = 0;

protected:
    ~IInteger() = default;
};

}  // namespace GenApi
