/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a consumer needs and a camera's description lacks
 */
#include "remote/RemoteDescription.h"

#include <fmt/format.h>

#include <algorithm>
#include <pugixml.hpp>
#include <set>
#include <string_view>

#include "ports/FeatureList.h"
#include "support/Log.h"

namespace gentl {

namespace {

constexpr const char* kCategory = "VantoGenTL";

// Names of all nodes, whatever groups they are in.
struct Names : pugi::xml_tree_walker {
    std::set<std::string> names;
    std::string portName;
    bool for_each(pugi::xml_node& node) override {
        if (const pugi::xml_attribute name = node.attribute("Name")) {
            names.insert(name.value());
            if (std::string_view(node.name()) == "Port" &&
                (portName.empty() || std::string_view(name.value()) == "Device"))
                portName = name.value();
        }
        return true;
    }
};

std::vector<Feature> Missing(const AddedFeatures& wanted, const std::set<std::string>& names) {
    FeatureList list;
    list.Category(kCategory);
    if (wanted.payloadSize)
        list.Integer("PayloadSize", "Bytes of one image, as the frame grabber delivers it", wanted.payloadSize);
    if (wanted.width)
        list.Integer("Width", "Width of an image in pixels, as the frame grabber is set", wanted.width);
    if (wanted.height)
        list.Integer("Height", "Height of an image in lines, as the frame grabber is set", wanted.height);
    list.Enumeration("AcquisitionMode", "The camera has no other mode", {{"Continuous", 0}}, [] { return 0; });
    list.Command("AcquisitionStart", "The camera sends images all the time; the stream decides which are kept", [] {});
    list.Command("AcquisitionStop", "The camera sends images all the time; the stream decides which are kept", [] {});
    const auto text = [](const std::string& value) { return [value] { return value; }; };
    list.Text("DeviceVendorName", "Name of the camera's maker", text(wanted.vendor));
    list.Text("DeviceModelName", "Model of the camera", text(wanted.model));
    list.Text("DeviceSerialNumber", "Serial number of the camera", text(wanted.serialNumber));
    list.Text("DeviceUserID", "Name that a user has given to the camera", text(wanted.userDefinedName));
    std::vector<Feature> features = list.Take();
    std::erase_if(features, [&](const Feature& feature) { return names.contains(feature.name); });
    return features;
}

pugi::xml_node RootCategory(const pugi::xml_node& description) {
    return description.find_node([](const pugi::xml_node& node) {
        return std::string_view(node.name()) == "Category" &&
               std::string_view(node.attribute("Name").value()) == "Root";
    });
}

// Where the text of an element ends, before its closing tag; npos where it has none.
std::size_t EndOfContent(const std::string& text, const pugi::xml_node& node) {
    pugi::xml_node last = node.last_child();
    const std::ptrdiff_t from = last ? last.offset_debug() : node.offset_debug();
    return from < 0 ? std::string::npos : text.find(fmt::format("</{}", node.name()), static_cast<std::size_t>(from));
}

void ReadNumbers(const pugi::xml_node& description, ServedDescription& served) {
    const auto number = [&](const char* name, std::int32_t otherwise) {
        return static_cast<std::int32_t>(description.attribute(name).as_int(otherwise));
    };
    served.vendor = description.attribute("VendorName").value();
    served.model = description.attribute("ModelName").value();
    served.schema = {number("SchemaMajorVersion", 1), number("SchemaMinorVersion", 0),
                     number("SchemaSubMinorVersion", 0)};
    served.version = {number("MajorVersion", 1), number("MinorVersion", 0), number("SubMinorVersion", 0)};
}

}  // namespace

/**
 * \brief Add to a description what consumers ask for and it lacks
 * \param[in] description XML of the camera; its own nodes stay as they are, byte by byte
 *
 * A description that can't be read, or without the category Root, is served as it is.
 */
ServedDescription Complete(std::string description, const AddedFeatures& features) {
    ServedDescription served;
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer(description.data(), description.size());
    const pugi::xml_node root = document.document_element();
    if (parsed && root) {
        ReadNumbers(root, served);
        Names names;
        document.traverse(names);
        if (!names.portName.empty())
            served.portName = names.portName;
        served.added = Missing(features, names.names);
        const pugi::xml_node category = RootCategory(document);
        const std::size_t inCategory = category ? EndOfContent(description, category) : std::string::npos;
        const std::size_t atEnd = description.rfind(fmt::format("</{}", root.name()));
        if (parsed.encoding != pugi::encoding_utf8 || inCategory == std::string::npos || atEnd == std::string::npos ||
            names.names.contains(kCategory)) {
            served.added.clear();
        } else if (!served.added.empty()) {
            const FeatureMap map({.portName = served.portName, .base = kAddedRegisters, .bigEndian = true},
                                 served.added);
            std::vector<std::string> categories;
            description.insert(atEnd, map.Categories(categories) + map.Nodes());
            description.insert(inCategory, fmt::format("<pFeature>{}</pFeature>", kCategory));
        }
    } else {
        LogTrace(LogCategory(), Vanto::tracelog::kWarning,
                 "The camera's description is no XML (%s); it is served as it is", parsed.description());
    }
    served.text = std::move(description);
    return served;
}

}  // namespace gentl
