/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureList: short ways to write the features of a module, and those that nodes of another node map have
 */
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ports/FeatureMap.h"

namespace GenApi {
struct INodeMap;
}

namespace gentl {

using TextReader = std::function<std::string()>;
using IntegerReader = std::function<std::int64_t()>;
using IntegerWriter = std::function<void(std::int64_t)>;

/// Collects features, one category after the other.
class FeatureList {
public:
    FeatureList& Category(std::string name);
    FeatureList& Text(const char* name, const char* toolTip, TextReader read, const char* selector = "");
    FeatureList& Integer(const char* name, const char* toolTip, IntegerReader read, const char* selector = "");
    /// An index that can be written, from 0.
    FeatureList& Index(const char* name, const char* toolTip, IntegerReader read, IntegerWriter write);
    FeatureList& Enumeration(const char* name, const char* toolTip, std::vector<Feature::Entry> entries,
                             IntegerReader read, const char* selector = "", IntegerWriter write = nullptr);
    FeatureList& Command(const char* name, const char* toolTip, std::function<void()> execute);
    /// The features of a node map of the base library, which must outlive the list's users; what is not implemented is
    /// left out, and so is a name that is there already.
    FeatureList& Mirror(GenApi::INodeMap& map);

    std::vector<Feature> Take() { return std::move(m_features); }

private:
    Feature& Add(Feature::Kind kind, const char* name, const char* toolTip, const char* selector);

    std::string m_category;
    std::vector<Feature> m_features;
};

/// "CameraLink", and the older "CL"; the first is what is reported.
std::vector<Feature::Entry> TransportTypes();
std::vector<Feature::Entry> AccessStatuses();

}  // namespace gentl
