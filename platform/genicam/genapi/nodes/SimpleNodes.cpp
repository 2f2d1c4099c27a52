/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Nodes without numbers: Category, String, relatives of IEEE 1212
 */

#include "nodes/SimpleNodes.h"

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
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

template <class Base>
void CRomNode<Base>::Bind() {
    Base::Bind();
    const Property* parser = this->Find(ETag::p1212Parser);
    m_rom = parser != nullptr ? this->NodeOf(*parser) : this->Enclosing();
    if (m_rom == nullptr || !m_rom->Is(kIsRegister))
        throw INVALID_ARGUMENT_EXCEPTION("has no configuration ROM");
    const Property* key = this->Find(ETag::Key);
    if (key == nullptr)
        key = this->Find(ETag::Value);
    if (key == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no key");
    m_key = NumberOf<std::int64_t>(*this, *key);
}

template <class Base>
EAccessMode CRomNode<Base>::ReadAccess(Evaluation& evaluation, bool withLocks) {
    return Combine(m_rom->Access(evaluation, withLocks), RO);
}

template <class Base>
RegisterCore& CRomNode<Base>::Rom() {
    m_rom->Require();
    return *m_rom->Register();
}

template class CRomNode<CTextNode>;
template class CRomNode<CIntegerNode>;

std::string CTextDesc::ReadText(Evaluation& evaluation) {
    const auto text = FindRomText(Rom().Read(evaluation), Key());
    if (!text)
        throw OUT_OF_RANGE_EXCEPTION("%s: the configuration ROM has no text of key %I64d", Label(), Key());
    return *text;
}

std::int64_t CTextDesc::MaxLength(Evaluation& evaluation) {
    return Rom().Length(evaluation);
}

std::int64_t CIntKey::ReadInteger(Evaluation& evaluation) {
    const auto value = FindRomValue(Rom().Read(evaluation), Key());
    if (!value)
        throw OUT_OF_RANGE_EXCEPTION("%s: the configuration ROM has no value of key %I64d", Label(), Key());
    return *value;
}

}  // namespace GenApi
