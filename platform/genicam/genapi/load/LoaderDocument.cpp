/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Loads a description into a node map: the document and its root
 */

#include <algorithm>
#include <array>
#include <utility>

#include "Base/GCException.h"
#include "core/Port.h"
#include "load/Loader.h"
#include "schema/Text.h"

namespace GenApi {

namespace {

constexpr std::string_view kRootName = "RegisterDescription";
constexpr std::uint16_t kMajorVersion = 1;
constexpr std::uint16_t kMinorVersion = 1;

std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::uint16_t VersionPart(std::string_view text) {
    const auto value = ParseInteger(text);
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(value.value_or(0), 0, 0xFFFF));
}

}  // namespace

std::size_t Loader::PositionOf(pugi::xml_node element) const {
    const char* const name = element.name();
    return *name != '\0' ? m_source->PositionOf(name) : 0;
}

// Elements have few attributes nearly always: those before are looked through. A hostile one has a million.
bool Loader::IsNewAttribute(pugi::xml_node element, std::string_view name, std::size_t count) {
    constexpr std::size_t kFew = 16;
    if (count < kFew) {
        pugi::xml_attribute before = element.first_attribute();
        for (std::size_t i = 0; i < count; ++i, before = before.next_attribute()) {
            if (before.name() == name)
                return false;
        }
        return true;
    }
    if (count == kFew) {
        pugi::xml_attribute before = element.first_attribute();
        for (std::size_t i = 0; i < count; ++i, before = before.next_attribute())
            m_attributeNames.insert(before.name());
    }
    return m_attributeNames.insert(name).second;
}

void Loader::Warn(EWarningKind kind, std::size_t position, std::string_view node, const std::string& message) {
    if (!m_map.TakesWarnings())
        return;
    const TextPlace place = m_source->PlaceOf(position);
    m_map.Warn({kind, m_source->FileName(), place.line, place.column, GenICam::gcstring(Shortened(node)), message});
}

void Loader::Refuse(std::size_t position, const std::string& message) {
    const TextPlace place = m_source->PlaceOf(position);
    throw RUNTIME_EXCEPTION("%s(%u,%u): %s", m_source->FileName(), place.line, place.column, message);
}

/**
 * \brief Read one document into the map
 * \throw RuntimeException It is no description; names file, line and column
 */
void Loader::Read(std::string xml, const std::string& fileName, bool isInjected) {
    if (xml.size() > kMaxDescription)
        throw RUNTIME_EXCEPTION("%s(1,1): a description of %u bytes is too large", fileName, xml.size());
    m_sources.push_back(std::make_unique<SourceText>(std::move(xml), fileName));
    m_source = m_sources.back().get();
    m_isInjected = isInjected;
    m_firstNode = static_cast<std::uint32_t>(m_map.m_nodes.size());
    if (isInjected)
        m_injectedFrom = m_map.m_properties.size();
    else
        m_map.m_info.fileName = fileName;
    pugi::xml_document document;
    Parse(document);
    const pugi::xml_node root = RootOf(document);
    // Bare nodes are a fragment, too.
    LoadNodes(root ? root : document, 0);
}

// References to characters and entities are left alone here: no entity is ever expanded or fetched.
void Loader::Parse(pugi::xml_document& document) {
    if (m_source->HasJunkBefore())
        Warn(wkSyntax, 0, "", "There is text before the XML declaration");
    constexpr unsigned kOptions = pugi::parse_cdata | pugi::parse_doctype | pugi::parse_embed_pcdata;
    const pugi::xml_parse_result result =
        document.load_buffer_inplace(m_source->Data(), m_source->Size(),
                                     m_isInjected ? kOptions | pugi::parse_fragment : kOptions, pugi::encoding_utf8);
    CheckDocumentType(document);
    if (!result) {
        const std::size_t start = m_source->PositionOf(m_source->Data());
        Refuse(start + static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)),
               std::string("This is not XML: ") + result.description());
    }
}

void Loader::CheckDocumentType(const pugi::xml_document& document) {
    for (const pugi::xml_node child : document.children()) {
        if (child.type() != pugi::node_doctype)
            continue;
        const std::size_t position = m_source->PositionOf(child.value());
        if (std::string_view(child.value()).find("<!ENTITY") != std::string_view::npos)
            Refuse(position, "Entities must not be declared in a description");
        Warn(wkSyntax, position, "", "A document type is not looked at");
    }
}

pugi::xml_node Loader::RootOf(const pugi::xml_document& document) {
    for (const pugi::xml_node child : document.children()) {
        if (child.type() != pugi::node_element)
            continue;
        if (LocalName(child.name()) == kRootName) {
            ReadRoot(child);
            return child;
        }
        if (m_isInjected)
            return {};
        Refuse(PositionOf(child), "The root element is '" + Shortened(child.name()) + "', not RegisterDescription");
    }
    if (!m_isInjected)
        Refuse(m_source->PositionOf(m_source->Data()), "There is no root element RegisterDescription");
    return {};
}

void Loader::ReadRoot(pugi::xml_node root) {
    ReadSchema(root);
    CheckNameSpace(root);
    ForEachAttribute(root, [&](pugi::xml_attribute attribute, std::string_view name) {
        const std::size_t position = m_source->PositionOf(attribute.name());
        if (name == "xmlns" || name.find(':') != std::string_view::npos)
            return;
        m_decoded.clear();
        const std::string_view raw = Trimmed(attribute.value());
        Decode(raw, m_source->PositionOf(raw.data()));
        Repair(position);
        if (!ReadRootAttribute(name, m_decoded))
            Warn(wkUnknownAttribute, position, "", "RegisterDescription has an unknown attribute " + Shortened(name));
    });
}

// What an injected description says about itself is not what the whole is.
bool Loader::ReadRootAttribute(std::string_view name, const GenICam::gcstring& value) {
    DescriptionInfo ignored;
    DescriptionInfo& info = m_isInjected ? ignored : m_map.m_info;
    const std::array<std::pair<std::string_view, GenICam::gcstring*>, 6> texts = {{
        {"ModelName", &info.modelName},
        {"VendorName", &info.vendorName},
        {"ToolTip", &info.toolTip},
        {"StandardNameSpace", &info.standardNameSpace},
        {"ProductGuid", &info.productGuid},
        {"VersionGuid", &info.versionGuid},
    }};
    for (const auto& [known, text] : texts) {
        if (known == name) {
            *text = value;
            return true;
        }
    }
    const std::array<std::pair<std::string_view, std::uint16_t*>, 3> numbers = {{
        {"MajorVersion", &info.deviceVersion.Major},
        {"MinorVersion", &info.deviceVersion.Minor},
        {"SubMinorVersion", &info.deviceVersion.SubMinor},
    }};
    for (const auto& [known, number] : numbers) {
        if (known == name) {
            *number = VersionPart(value.view());
            return true;
        }
    }
    return name == "SchemaMajorVersion" || name == "SchemaMinorVersion" || name == "SchemaSubMinorVersion";
}

void Loader::ReadSchema(pugi::xml_node root) {
    Version_t version{VersionPart(root.attribute("SchemaMajorVersion").value()),
                      VersionPart(root.attribute("SchemaMinorVersion").value()),
                      VersionPart(root.attribute("SchemaSubMinorVersion").value())};
    if (!root.attribute("SchemaMajorVersion")) {
        Warn(wkNameSpace, PositionOf(root), "", "RegisterDescription has no schema version; it is taken as 1.1");
        version = {kMajorVersion, kMinorVersion, 0};
    }
    if (version.Major > kMajorVersion)
        Refuse(PositionOf(root),
               GenICam::FormatText("Schema version %u.%u is newer than 1.1", version.Major, version.Minor));
    if (version.Major < kMajorVersion || version.Minor > kMinorVersion)
        Warn(wkNameSpace, PositionOf(root), "",
             GenICam::FormatText("Schema version %u.%u is not known", version.Major, version.Minor));
    if (!m_isInjected)
        m_map.m_info.schemaVersion = version;
}

// Files name whatever they like; the elements tell what they are.
void Loader::CheckNameSpace(pugi::xml_node root) {
    const std::string_view name = root.name();
    const std::size_t colon = name.find(':');
    const std::string attribute =
        colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    const std::string_view nameSpace = root.attribute(attribute.c_str()).value();
    const bool isKnown = nameSpace == "http://www.genicam.org/GenApi/Version_1_0" ||
                         nameSpace == "http://www.genicam.org/GenApi/Version_1_1";
    if (isKnown)
        return;
    Warn(wkNameSpace, PositionOf(root), "",
         nameSpace.empty() ? "RegisterDescription has no name space"
                           : "RegisterDescription has the name space '" + Shortened(nameSpace) + "'");
}

/**
 * \brief Resolve the references between the nodes
 *
 * A node that needs one that does not exist is not implemented; a link that leads nowhere is left out.
 */
void Loader::Finish() {
    m_map.m_properties.shrink_to_fit();
    m_map.m_texts.shrink_to_fit();
    for (CNode* node : m_map.m_nodes) {
        if (node->Is(kReplaced))
            continue;
        const std::span<const Property> properties = node->Properties();
        Property* first = m_map.m_properties.data() + (properties.data() - m_map.m_properties.data());
        for (std::size_t i = 0; i < properties.size(); ++i) {
            if (IsReference(first[i].tag) && first[i].node == kNoNode)
                Resolve(*node, first[i]);
        }
    }
    MarkFeatures();
}

// Features are what categories lead to from the one that is named Root. Categories may lead in circles.
void Loader::MarkFeatures() {
    std::vector<CNode*> categories;
    if (CNode* root = m_map.FindNode("Root"))
        categories.push_back(root);
    while (!categories.empty()) {
        const CNode* category = categories.back();
        categories.pop_back();
        for (const Property& property : category->Properties()) {
            if (property.tag != ETag::pFeature || property.node == kNoNode)
                continue;
            CNode* const feature = m_map.m_nodes[property.node];
            if (feature->Is(kIsFeature))
                continue;
            feature->AddTraits(kIsFeature);
            categories.push_back(feature);
        }
    }
}

void Loader::Resolve(CNode& node, Property& property) {
    const std::string_view name = m_map.Text(property.text, property.length);
    CNode* target = m_map.FindNode(name);
    if (target != nullptr) {
        property.node = target->Index();
        return;
    }
    const std::string message =
        std::string(NameOf(property.tag)) + " refers to '" + Shortened(name) + "', which does not exist";
    const auto index = static_cast<std::size_t>(&property - m_map.m_properties.data());
    const bool isInjected = m_sources.size() > 1 && index >= m_injectedFrom;
    m_source = m_sources[isInjected ? 1 : 0].get();
    Warn(wkDanglingReference, m_positions[index], node.Name(), node.Label() + ": " + message);
    if (!IsRequiredReference(property.tag))
        return;
    m_map.SetReason(node, message);
    node.Set(kBroken);
}

}  // namespace GenApi
