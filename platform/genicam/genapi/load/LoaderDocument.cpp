/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reads a description: the document and its root
 */

#include <algorithm>
#include <array>
#include <utility>

#include "Base/GCException.h"
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

// Elements have few attributes nearly always: those before are looked through. A hostile one has a million.
bool Loader::IsNewAttribute(std::string_view name, std::size_t count) {
    constexpr std::size_t kFew = 16;
    const std::span<const XmlAttribute> before = m_scanner->Attributes().first(count);
    if (count < kFew)
        return std::none_of(before.begin(), before.end(), [&](const XmlAttribute& held) { return held.name == name; });
    if (count == kFew) {
        m_attributeNames.clear();
        for (const XmlAttribute& held : before)
            m_attributeNames.insert(held.name);
    }
    return m_attributeNames.insert(name).second;
}

void Loader::Warn(EWarningKind kind, std::size_t position, std::string_view node,
                  std::initializer_list<std::string_view> message) {
    if (m_builder.TakesWarnings())
        Keep(kind, position, node, Joined(message));
}

void Loader::Keep(EWarningKind kind, std::size_t position, std::string_view node, const std::string& message) {
    const TextPlace place = m_source->PlaceOf(position);
    const bool isOfInjected = m_source != m_sources.front().get();
    m_builder.Warn({{kind, {}, place.line, place.column, GenICam::gcstring(Shortened(node)), message}, isOfInjected});
}

void Loader::Refuse(std::size_t position, const std::string& message) {
    const TextPlace place = m_source->PlaceOf(position);
    throw RUNTIME_EXCEPTION("%s(%u,%u): %s", m_fileName, place.line, place.column, message);
}

/**
 * \brief Read one document
 * \throw RuntimeException It is no description; names file, line and column
 */
void Loader::Read(const SourceFile& file, bool isInjected) {
    if (file.xml.size() > kMaxDescription)
        throw RUNTIME_EXCEPTION("%s(1,1): a description of %u bytes is too large", std::string(file.name),
                                file.xml.size());
    m_sources.push_back(std::make_unique<SourceText>(file.xml));
    m_source = m_sources.back().get();
    m_builder.Expect(file.xml.size());
    constexpr std::size_t kUsualNode = 64;  // elements
    m_positions.Reserve(m_positions.size() + file.xml.size() / 64);
    m_pending.reserve(kUsualNode);
    m_pendingPositions.reserve(kUsualNode);
    m_nested.reserve(kUsualNode);
    m_fileName = file.name;
    m_isInjected = isInjected;
    m_firstNode = m_builder.Built().NodeCount();
    if (isInjected)
        m_injectedFrom = m_positions.size();
    if (m_source->HasJunkBefore())
        Warn(wkSyntax, 0, "", {"There is text before the XML declaration"});
    XmlScanner scanner(m_source->Text(), isInjected);
    m_scanner = &scanner;
    try {
        ReadDocument();
    } catch (const XmlFault& fault) {
        Refuse(PositionOf(m_source->Text()) + fault.position, "This is not XML: " + fault.reason);
    }
}

// The first element decides: it is the root, or what is injected are bare nodes.
void Loader::ReadDocument() {
    bool hadElement = false;
    bool areBareNodes = false;
    for (EXml found = m_scanner->Next(); found != EXml::End; found = m_scanner->Next()) {
        if (found == EXml::DocumentType)
            CheckDocumentType();
        if (found != EXml::Open)
            continue;
        const bool isRoot = !hadElement && LocalName(m_scanner->Name()) == kRootName;
        areBareNodes = areBareNodes || (!hadElement && !isRoot && m_isInjected);
        if (isRoot) {
            ReadRoot();
            LoadNodes(0);
        } else if (areBareNodes) {
            LoadElement(0);
        } else if (hadElement) {
            m_scanner->Skip();
        } else {
            Refuse(PositionOf(m_scanner->Name()),
                   "The root element is '" + Shortened(m_scanner->Name()) + "', not RegisterDescription");
        }
        hadElement = true;
    }
}

void Loader::CheckDocumentType() {
    const std::string_view text = m_scanner->Text();
    if (text.find("<!ENTITY") != std::string_view::npos)
        Refuse(PositionOf(text), "Entities must not be declared in a description");
    Warn(wkSyntax, PositionOf(text), "", {"A document type is not looked at"});
}

std::optional<std::string_view> Loader::AttributeOf(std::string_view name) const {
    for (const XmlAttribute& attribute : m_scanner->Attributes()) {
        if (attribute.name == name)
            return attribute.value;
    }
    return std::nullopt;
}

void Loader::ReadRoot() {
    const std::size_t place = PositionOf(m_scanner->Name());
    ReadSchema(place);
    CheckNameSpace(place);
    ForEachAttribute([&](const XmlAttribute& attribute) {
        const std::string_view name = attribute.name;
        if (name == "xmlns" || name.find(':') != std::string_view::npos)
            return;
        m_decoded.clear();
        Decode(Trimmed(attribute.value));
        Repair(PositionOf(name));
        if (!ReadRootAttribute(name, m_decoded))
            Warn(wkUnknownAttribute, PositionOf(name), "", {"RegisterDescription has an unknown attribute ", name});
    });
}

// What an injected description says about itself is not what the whole is.
bool Loader::ReadRootAttribute(std::string_view name, const GenICam::gcstring& value) {
    DescriptionInfo ignored;
    DescriptionInfo& info = m_isInjected ? ignored : m_builder.Info();
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

void Loader::ReadSchema(std::size_t position) {
    const auto part = [this](std::string_view name) { return VersionPart(AttributeOf(name).value_or("")); };
    Version_t version{part("SchemaMajorVersion"), part("SchemaMinorVersion"), part("SchemaSubMinorVersion")};
    if (!AttributeOf("SchemaMajorVersion")) {
        Warn(wkNameSpace, position, "", {"RegisterDescription has no schema version; it is taken as 1.1"});
        version = {kMajorVersion, kMinorVersion, 0};
    }
    if (version.Major > kMajorVersion)
        Refuse(position, GenICam::FormatText("Schema version %u.%u is newer than 1.1", version.Major, version.Minor));
    if (version.Major < kMajorVersion || version.Minor > kMinorVersion)
        Warn(wkNameSpace, position, "",
             {GenICam::FormatText("Schema version %u.%u is not known", version.Major, version.Minor)});
    if (!m_isInjected)
        m_builder.Info().schemaVersion = version;
}

// Files name whatever they like; the elements tell what they are.
void Loader::CheckNameSpace(std::size_t position) {
    const std::string_view name = m_scanner->Name();
    const std::size_t colon = name.find(':');
    const std::string attribute =
        colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
    const std::string_view nameSpace = AttributeOf(attribute).value_or("");
    const bool isKnown = nameSpace == "http://www.genicam.org/GenApi/Version_1_0" ||
                         nameSpace == "http://www.genicam.org/GenApi/Version_1_1";
    if (isKnown)
        return;
    if (nameSpace.empty())
        Warn(wkNameSpace, position, "", {"RegisterDescription has no name space"});
    else
        Warn(wkNameSpace, position, "", {"RegisterDescription has the name space '", nameSpace, "'"});
}

/**
 * \brief Resolve the references between the nodes
 *
 * A node that needs one that does not exist is not implemented; a link that leads nowhere is left out.
 */
std::shared_ptr<const Description> Loader::Finish() {
    m_builder.ResolveNames();
    const Description& description = m_builder.Built();
    for (std::uint32_t node = 0; node < description.NodeCount(); ++node) {
        const NodeRecord& record = description.Node(node);
        if (record.Is(kReplaced))
            continue;
        std::size_t index = record.firstProperty;
        for (const Property& property : description.PropertiesOf(node)) {
            if (property.kind == Property::EValue::Name && description.NodeOf(property) == kNoNode)
                WarnAboutReference(node, property, m_positions[index], index >= m_injectedFrom);
            ++index;
        }
    }
    MarkFeatures();
    return m_builder.Finish();
}

// Features are what categories lead to from the one that is named Root. Categories may lead in circles.
void Loader::MarkFeatures() {
    const Description& description = m_builder.Built();
    std::vector<std::uint32_t> categories;
    if (const std::uint32_t root = description.FindNode("Root"); root != kNoNode)
        categories.push_back(root);
    while (!categories.empty()) {
        const std::uint32_t category = categories.back();
        categories.pop_back();
        for (const Property& property : description.PropertiesOf(category)) {
            const std::uint32_t feature = property.tag == ETag::pFeature ? description.NodeOf(property) : kNoNode;
            if (feature == kNoNode || description.Node(feature).Is(kIsFeature))
                continue;
            m_builder.Node(feature).traits |= kIsFeature;
            categories.push_back(feature);
        }
    }
}

void Loader::WarnAboutReference(std::uint32_t node, const Property& property, std::size_t position, bool isOfInjected) {
    const Description& description = m_builder.Built();
    const std::string message = std::string(GenApi::NameOf(property.tag)) + " refers to '" +
                                Shortened(description.TextOf(property)) + "', which does not exist";
    m_source = m_sources[isOfInjected ? 1 : 0].get();
    if (m_builder.TakesWarnings())
        Keep(wkDanglingReference, position, NameOf(node), description.LabelOf(node) + ": " + message);
    if (!IsRequiredReference(property.tag))
        return;
    m_builder.SetReason(node, message);
    m_builder.Node(node).traits |= kIsBroken;
}

}  // namespace GenApi
