/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FeatureList: short ways to write the features of a module, and those that nodes of another node map have
 */
#include "ports/FeatureList.h"

#include <algorithm>

#include "GenApi/GenApi.h"
#include "gentl/GenTL.h"

namespace gentl {

namespace {

Feature Described(GenApi::INode& node, Feature::Kind kind) {
    Feature feature;
    feature.kind = kind;
    feature.name = node.GetName().str();
    feature.toolTip = node.GetToolTip().str();
    feature.standard = node.GetNameSpace() == GenApi::Standard;
    return feature;
}

Feature MirrorInteger(GenApi::INode& node, GenApi::IInteger& integer) {
    Feature feature = Described(node, Feature::Kind::kInteger);
    feature.readInteger = [&integer] { return integer.GetValue(); };
    if (GenApi::IsWritable(&integer)) {
        feature.minimum = integer.GetMin();
        feature.maximum = integer.GetMax();
        feature.writeInteger = [&integer](std::int64_t value) { integer.SetValue(value); };
    }
    return feature;
}

Feature MirrorBoolean(GenApi::INode& node, GenApi::IBoolean& boolean) {
    Feature feature = Described(node, Feature::Kind::kBoolean);
    feature.readInteger = [&boolean] { return std::int64_t{boolean.GetValue()}; };
    if (GenApi::IsWritable(&boolean))
        feature.writeInteger = [&boolean](std::int64_t value) { boolean.SetValue(value != 0); };
    return feature;
}

}  // namespace

FeatureList& FeatureList::Category(std::string name) {
    m_category = std::move(name);
    return *this;
}

Feature& FeatureList::Add(Feature::Kind kind, const char* name, const char* toolTip, const char* selector) {
    Feature& feature = m_features.emplace_back();
    feature.kind = kind;
    feature.name = name;
    feature.category = m_category;
    feature.toolTip = toolTip;
    feature.selector = selector;
    return feature;
}

FeatureList& FeatureList::Text(const char* name, const char* toolTip, TextReader read, const char* selector) {
    Add(Feature::Kind::kText, name, toolTip, selector).readText = std::move(read);
    return *this;
}

FeatureList& FeatureList::Integer(const char* name, const char* toolTip, IntegerReader read, const char* selector) {
    Add(Feature::Kind::kInteger, name, toolTip, selector).readInteger = std::move(read);
    return *this;
}

FeatureList& FeatureList::Index(const char* name, const char* toolTip, IntegerReader read, IntegerWriter write) {
    Feature& feature = Add(Feature::Kind::kInteger, name, toolTip, "");
    feature.readInteger = std::move(read);
    feature.writeInteger = std::move(write);
    feature.maximum = INT32_MAX;
    return *this;
}

FeatureList& FeatureList::Enumeration(const char* name, const char* toolTip, std::vector<Feature::Entry> entries,
                                      IntegerReader read, const char* selector, IntegerWriter write) {
    Feature& feature = Add(Feature::Kind::kEnumeration, name, toolTip, selector);
    feature.entries = std::move(entries);
    feature.readInteger = std::move(read);
    feature.writeInteger = std::move(write);
    return *this;
}

FeatureList& FeatureList::Command(const char* name, const char* toolTip, std::function<void()> execute) {
    Add(Feature::Kind::kCommand, name, toolTip, "").writeInteger = [execute = std::move(execute)](std::int64_t value) {
        if (value != 0)
            execute();
    };
    return *this;
}

FeatureList& FeatureList::Mirror(GenApi::INodeMap& map) {
    GenApi::NodeList_t nodes;
    map.GetNodes(nodes);
    for (GenApi::INode* const node : nodes) {
        const std::string name = node->GetName().str();
        if (!node->IsFeature() || !GenApi::IsImplemented(node) ||
            std::ranges::find(m_features, name, &Feature::name) != m_features.end())
            continue;
        if (auto* const integer = dynamic_cast<GenApi::IInteger*>(node))
            m_features.push_back(MirrorInteger(*node, *integer));
        else if (auto* const boolean = dynamic_cast<GenApi::IBoolean*>(node))
            m_features.push_back(MirrorBoolean(*node, *boolean));
        else
            continue;
        m_features.back().category = m_category;
    }
    return *this;
}

std::vector<Feature::Entry> TransportTypes() {
    return {{"CameraLink", 0}, {"CL", 1}};
}

std::vector<Feature::Entry> AccessStatuses() {
    return {{"Unknown", DEVICE_ACCESS_STATUS_UNKNOWN},
            {"ReadWrite", DEVICE_ACCESS_STATUS_READWRITE},
            {"ReadOnly", DEVICE_ACCESS_STATUS_READONLY},
            {"NoAccess", DEVICE_ACCESS_STATUS_NOACCESS},
            {"Busy", DEVICE_ACCESS_STATUS_BUSY},
            {"OpenReadWrite", DEVICE_ACCESS_STATUS_OPEN_READWRITE},
            {"OpenReadOnly", DEVICE_ACCESS_STATUS_OPEN_READONLY}};
}

}  // namespace gentl
