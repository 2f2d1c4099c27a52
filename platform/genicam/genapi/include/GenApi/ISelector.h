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

struct ISelector : virtual public IBase {
    virtual bool IsSelector() const = 0;
    virtual void GetSelectedFeatures(FeatureList_t& features) const = 0;
    virtual void GetSelectingFeatures(FeatureList_t& features) const = 0;

protected:
    ISelector() = default;
    ISelector(const ISelector&) = default;
    ISelector& operator=(const ISelector&) = default;
    ~ISelector() = default;
};

}  // namespace GenApi
