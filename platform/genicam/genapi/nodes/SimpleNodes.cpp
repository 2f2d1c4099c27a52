/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes without numbers: Category, String, relatives of IEEE 1212
 */

#include "nodes/SimpleNodes.h"

#include "Base/GCException.h"
#include "GenApi/Pointer.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "nodes/ConfigurationRom.h"
#include "schema/Text.h"

namespace GenApi {

// --- Category ---

GenICam::gcstring CCategory::ToString(bool, bool) {
    return GetDisplayName();
}

void CCategory::FromString(const GenICam::gcstring&, bool) {
    throw ACCESS_EXCEPTION("%s: a category can't be set", Label());
}

void CCategory::GetFeatures(FeatureList_t& features) const {
    features.clear();
    const MapAccess access(Map());
    for (const Property& property : Properties()) {
        CNode* node = property.tag == ETag::pFeature ? NodeOf(property) : nullptr;
        if (node != nullptr && node->Value() != nullptr && IsImplemented(node->GetAccessMode()))
            features.push_back(node->Value());
    }
}

// --- String ---

void CString::Bind() {
    const Property* reference = Find(ETag::pValue);
    if (reference == nullptr) {
        if (Find(ETag::Value) == nullptr)
            throw INVALID_ARGUMENT_EXCEPTION("has no value");
        return;
    }
    m_value = NodeOf(*reference);
    if (m_value == nullptr || !m_value->HasText())
        throw INVALID_ARGUMENT_EXCEPTION("pValue refers to '%s', which has no text", Shortened(TextOf(*reference)));
}

std::string CString::ReadText(Evaluation& evaluation) {
    return m_value != nullptr ? m_value->Text(evaluation) : Map().OwnTextOf(*this);
}

void CString::WriteText(const std::string& text, Evaluation& evaluation) {
    if (m_value != nullptr)
        return m_value->AssignText(text, evaluation);
    Map().SetOwnText(*this, text);
    Map().Changed(*this);
}

EAccessMode CString::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return m_value != nullptr ? m_value->Access(evaluation, withLocks) : RW;
}

std::int64_t CString::MaxLength(Evaluation& evaluation) {
    if (m_value == nullptr)
        return INT64_MAX;
    const Frame frame(evaluation, *this, EPart::Text);
    m_value->Require();
    return static_cast<CTextNode*>(m_value)->MaxLength(evaluation);
}

// --- TextDesc and IntKey ---

namespace {

struct RomKey {
    CNode* rom;
    std::int64_t key;
};

RomKey BindRomKey(CNode& owner) {
    const Property* parser = owner.Find(ETag::p1212Parser);
    CNode* rom = parser != nullptr ? owner.NodeOf(*parser) : owner.Enclosing();
    if (rom == nullptr || !rom->Is(kIsRegister))
        throw INVALID_ARGUMENT_EXCEPTION("has no configuration ROM");
    const Property* key = owner.Find(ETag::Key);
    if (key == nullptr)
        key = owner.Find(ETag::Value);
    if (key == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no key");
    return {rom, NumberOf<std::int64_t>(owner, *key)};
}

std::span<const std::uint8_t> BytesOf(CNode& rom, Evaluation& evaluation) {
    rom.Require();
    return rom.Register()->Read(evaluation);
}

}  // namespace

void CTextDesc::Bind() {
    const auto [rom, key] = BindRomKey(*this);
    m_rom = rom;
    m_key = key;
}

std::string CTextDesc::ReadText(Evaluation& evaluation) {
    const auto text = FindRomText(BytesOf(*m_rom, evaluation), m_key);
    if (!text)
        throw OUT_OF_RANGE_EXCEPTION("%s: the configuration ROM has no text of key %I64d", Label(), m_key);
    return *text;
}

EAccessMode CTextDesc::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return Combine(m_rom->Access(evaluation, withLocks), RO);
}

std::int64_t CTextDesc::MaxLength(Evaluation& evaluation) {
    m_rom->Require();
    return m_rom->Register()->Length(evaluation);
}

void CIntKey::Bind() {
    CIntegerNode::Bind();
    const auto [rom, key] = BindRomKey(*this);
    m_rom = rom;
    m_key = key;
}

std::int64_t CIntKey::ReadInteger(Evaluation& evaluation) {
    const auto value = FindRomValue(BytesOf(*m_rom, evaluation), m_key);
    if (!value)
        throw OUT_OF_RANGE_EXCEPTION("%s: the configuration ROM has no value of key %I64d", Label(), m_key);
    return *value;
}

EAccessMode CIntKey::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return Combine(m_rom->Access(evaluation, withLocks), RO);
}

}  // namespace GenApi
