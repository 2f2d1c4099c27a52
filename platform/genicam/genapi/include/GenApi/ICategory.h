/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ICategory: a node that groups features
 */
#pragma once

#include "GenApi/ISelector.h"
#include "GenApi/IValue.h"

namespace GenApi {

/// A node that groups features.
struct ICategory : virtual public IValue {
    /// The features and categories below this one, in the order of the description, without those not implemented.
    virtual void GetFeatures(FeatureList_t& features) const = 0;
    using IValue::operator=;

protected:
    ~ICategory() = default;
};

}  // namespace GenApi
