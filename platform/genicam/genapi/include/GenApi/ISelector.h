/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ISelector: a node that selects among others, or is selected
 */
#pragma once

#include <vector>

#include "GenApi/IBase.h"

namespace GenApi {

struct IValue;
using FeatureList_t = std::vector<IValue*>;

/// A node that may say what others are about.
struct ISelector : virtual public IBase {
    /// Whether it selects anything.
    virtual bool IsSelector() const = 0;
    /// Appends what it selects.
    virtual void GetSelectedFeatures(FeatureList_t& features) const = 0;
    /// Appends what selects it.
    virtual void GetSelectingFeatures(FeatureList_t& features) const = 0;

protected:
    ISelector() = default;
    ISelector(const ISelector&) = default;
    ISelector& operator=(const ISelector&) = default;
    ~ISelector() = default;
};

}  // namespace GenApi
