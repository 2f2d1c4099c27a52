/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ICommand: a node that starts something
 */
#pragma once

#include "GenApi/IValue.h"

namespace GenApi {

/// A node that starts something.
struct ICommand : virtual public IValue {
    /// Starts it; throws AccessException when it can't be written. Does not wait: IsDone tells when it is done.
    virtual void Execute(bool verify = true) = 0;
    /// Starts it, as Execute.
    void operator()() { Execute(); }
    /// True when the command has been carried out; asks the device.
    virtual bool IsDone(bool verify = true) = 0;
    using IValue::operator=;

protected:
    ~ICommand() = default;
};

}  // namespace GenApi
