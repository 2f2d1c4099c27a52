/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ICommand: a node that starts something
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

struct ICommand : virtual public IValue {
    virtual void Execute(bool verify = true) = 0;
    void operator()() { Execute(); }
    /// True when the command has been carried out; asks the device.
    virtual bool IsDone(bool verify = true) = 0;
    using IValue::operator=;

protected:
    ~ICommand() = default;
};

}  // namespace GenApi
