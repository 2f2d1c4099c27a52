/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Puts a description together
 */

#include "schema/DescriptionBuilder.h"

#include <cstring>
#include <utility>

#include "schema/Text.h"

namespace GenApi {

namespace {
// What is longer is hardly ever said twice.
constexpr std::size_t kLongestShared = 32;
constexpr std::size_t kLongestShort = 0xFFFF;
}  // namespace

DescriptionBuilder::DescriptionBuilder() : m_description(std::make_shared<Description>()) {
    m_description->m_names.Intern({});  // the first one: that of nodes that have none
}

void DescriptionBuilder::Expect(std::size_t bytes) {
    Description& description = *m_description;
    description.m_nodes.Reserve(description.m_nodes.size() + bytes / 300);
    description.m_properties.Reserve(description.m_properties.size() + bytes / 64);
    description.m_texts.Reserve(description.m_texts.size() + bytes / 8);
    description.m_names.Reserve(description.m_names.Count() + bytes / 300);
}

std::uint32_t DescriptionBuilder::AddNode() {
    m_description->m_nodes.push_back({});
    return m_description->NodeCount() - 1;
}

std::uint32_t DescriptionBuilder::Store(std::string_view text) {
    const auto place = static_cast<std::uint32_t>(m_description->m_texts.size());
    m_description->m_texts.Append(text.data(), text.size());
    return place;
}

Property DescriptionBuilder::MakeProperty(ETag tag, std::string_view text) {
    Property property;
    property.tag = tag;
    if (IsReference(tag)) {
        property.kind = Property::EValue::Name;
        property.value = Intern(text);
        return property;
    }
    if (text.size() > kLongestShort) {
        const auto length = static_cast<std::uint32_t>(text.size());
        property.kind = Property::EValue::LongText;
        property.value = Store({reinterpret_cast<const char*>(&length), sizeof(length)});
        Store(text);
        return property;
    }
    property.length = static_cast<std::uint16_t>(text.size());
    Place& last = m_lastTexts[static_cast<std::size_t>(tag)];
    const char* const known = m_description->m_texts.data() + last.text;
    if (AreEqual({known, last.length}, text)) {
        property.value = last.text;
        return property;
    }
    property.value = Store(text);
    if (text.size() <= kLongestShared)
        last = {property.value, property.length};
    return property;
}

void DescriptionBuilder::SetProperties(std::uint32_t node, std::span<const Property> properties) {
    NodeRecord& record = Node(node);
    record.firstProperty = static_cast<std::uint32_t>(m_description->m_properties.size());
    record.propertyCount = static_cast<std::uint32_t>(properties.size());
    m_description->m_properties.Append(properties.data(), properties.size());
}

void DescriptionBuilder::SetReason(std::uint32_t node, const std::string& reason) {
    m_description->m_reasons[node] = reason;
}

bool DescriptionBuilder::TakesWarnings() const noexcept {
    return m_description->m_warnings.size() <= kMostWarnings;
}

void DescriptionBuilder::Warn(LoadWarning warning) {
    // A hostile file has millions of faults: the first ones tell enough.
    if (!TakesWarnings())
        return;
    if (m_description->m_warnings.size() == kMostWarnings)
        warning.warning = MoreWarnings();
    m_description->m_warnings.push_back(std::move(warning));
}

void DescriptionBuilder::ResolveNames() {
    NameTable& names = m_description->m_names;
    for (std::uint32_t name = 0; name < names.Count(); ++name) {
        const std::string_view text = names.TextOf(name);
        if (names.NodeOf(name) == kNoNode && (text.substr(0, 10) == "EnumEntry_" || text.find("::") < 5))
            names.SetNode(name, m_description->FindNode(text));
    }
}

std::shared_ptr<const Description> DescriptionBuilder::Finish() {
    m_description->m_nodes.Shrink();
    m_description->m_properties.Shrink();
    m_description->m_texts.Shrink();
    m_description->m_names.Shrink();
    return m_description;
}

}  // namespace GenApi
