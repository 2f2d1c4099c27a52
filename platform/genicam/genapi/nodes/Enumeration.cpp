/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Enumeration and its entries
 */

#include "nodes/Enumeration.h"

#include <algorithm>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Text.h"
#include "schema/Values.h"

namespace GenApi {

// --- EnumEntry ---

void CEnumEntry::Bind() {
    const Property* value = Find(ETag::Value);
    if (value == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("has no value");
    m_value = NumberOf<std::int64_t>(*this, *value);
}

std::string_view CEnumEntry::SymbolicText() const noexcept {
    const Property* symbolic = Find(ETag::Symbolic);
    return symbolic != nullptr && symbolic->length != 0 ? TextOf(*symbolic) : Name();
}

std::int64_t CEnumEntry::Number64() {
    Require();
    return m_value;
}

std::int64_t CEnumEntry::GetValue() {
    const MapAccess access(Map());
    return Number64();
}

GenICam::gcstring CEnumEntry::GetSymbolic() const {
    return GenICam::gcstring(SymbolicText());
}

// Without a numeric value of its own, an entry's name may be one.
double CEnumEntry::GetNumericValue() {
    if (const Property* numeric = Find(ETag::NumericValue))
        return NumberOf<double>(*this, *numeric);
    if (const auto number = ParseFloat(SymbolicText()))
        return *number;
    return static_cast<double>(GetValue());
}

bool CEnumEntry::IsSelfClearing() {
    return ParseWord<bool>(TextOf(ETag::IsSelfClearing)).value_or(false);
}

GenICam::gcstring CEnumEntry::ToString(bool, bool) {
    return GetSymbolic();
}

void CEnumEntry::FromString(const GenICam::gcstring&, bool) {
    throw ACCESS_EXCEPTION("%s: an entry can't be set", Label());
}

// --- Enumeration ---

void CEnumeration::Bind() {
    std::vector<Entry> entries;
    for (const Property& property : Properties()) {
        if (property.tag != ETag::Nested)
            continue;
        // The loader nests nothing but entries in an enumeration.
        auto* entry = static_cast<CEnumEntry*>(NodeOf(property));
        if (entry->Usable())
            entries.push_back({entry->Number64(), entry});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& left, const Entry& right) { return left.value < right.value; });
    m_entries = Map().Memory().Copy(entries);
    CSourcedNode::Bind();
}

std::int64_t CEnumeration::ReadInteger(Evaluation& evaluation) {
    return Source().Read(*this, evaluation);
}

void CEnumeration::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    CEnumEntry* entry = BestEntryOf(value);
    const ScopedValue isPassing(evaluation.isPassing,
                                evaluation.isPassing || (entry != nullptr && entry->IsSelfClearing()));
    Source().Write(*this, value, evaluation);
}

void CEnumeration::CheckInteger(std::int64_t value, Evaluation& evaluation) {
    CEnumEntry* entry = BestEntryOf(value);
    if (entry == nullptr)
        throw OUT_OF_RANGE_EXCEPTION("%s: there is no entry with value %I64d", Label(), value);
    if (!IsAvailable(entry->Access(evaluation, false)))
        throw ACCESS_EXCEPTION("%s: entry '%s' is not available", Label(), std::string(entry->SymbolicText()));
}

std::int64_t CEnumeration::ReadIntegerBound(EBound bound, Evaluation& evaluation) {
    if (m_entries.empty())
        return CNode::ReadIntegerBound(bound, evaluation);
    return bound == EBound::Min ? m_entries.front().value : m_entries.back().value;
}

std::span<const CEnumeration::Entry> CEnumeration::EntriesOf(std::int64_t value) const noexcept {
    const auto [first, last] =
        std::equal_range(m_entries.begin(), m_entries.end(), Entry{value, nullptr},
                         [](const Entry& left, const Entry& right) { return left.value < right.value; });
    return {first, last};
}

// Of several entries with one value the first that is available counts, else the first.
CEnumEntry* CEnumeration::BestEntryOf(std::int64_t value) {
    const std::span<const Entry> entries = EntriesOf(value);
    if (entries.size() > 1) {
        for (const Entry& entry : entries) {
            Evaluation evaluation;
            if (IsAvailable(entry.node->Access(evaluation, false)))
                return entry.node;
        }
    }
    return entries.empty() ? nullptr : entries.front().node;
}

CEnumEntry* CEnumeration::EntryOf(std::string_view symbolic) {
    if (!Usable())
        return nullptr;
    if (m_byName.empty())
        IndexNames();
    const auto found =
        std::lower_bound(m_byName.begin(), m_byName.end(), symbolic,
                         [](const CEnumEntry* entry, std::string_view name) { return entry->SymbolicText() < name; });
    return found != m_byName.end() && (*found)->SymbolicText() == symbolic ? *found : nullptr;
}

// Of two entries with one name the first counts. A formula or a program may ask for each of a million.
void CEnumeration::IndexNames() {
    std::vector<CEnumEntry*> entries;
    for (const Property& property : Properties()) {
        if (property.tag == ETag::Nested)
            entries.push_back(static_cast<CEnumEntry*>(NodeOf(property)));
    }
    std::stable_sort(entries.begin(), entries.end(), [](const CEnumEntry* left, const CEnumEntry* right) {
        return left->SymbolicText() < right->SymbolicText();
    });
    m_byName = Map().Memory().Copy(entries);
}

CEnumEntry& CEnumeration::CurrentEntry(bool verify, bool ignoreCache) {
    const std::int64_t value = GetIntValue(verify, ignoreCache);
    CEnumEntry* entry = BestEntryOf(value);
    if (entry == nullptr)
        throw OUT_OF_RANGE_EXCEPTION("%s: its value %I64d has no entry", Label(), value);
    return *entry;
}

// --- IValue and IEnumeration ---

GenICam::gcstring CEnumeration::ToString(bool verify, bool ignoreCache) {
    const MapAccess access(Map());
    return GenICam::gcstring(CurrentEntry(verify, ignoreCache).SymbolicText());
}

/**
 * \brief Set the value to that of an entry
 * \param[in] text The symbolic name of the entry
 * \throw InvalidArgumentException There is no such entry
 * \throw AccessException The node is not writable, or the entry is not available
 */
void CEnumeration::FromString(const GenICam::gcstring& text, bool verify) {
    Map().Change(this, [&] {
        RequireWritable();
        CEnumEntry* entry = EntryOf(text.view());
        if (entry == nullptr)
            throw INVALID_ARGUMENT_EXCEPTION("%s: there is no entry '%s'", Label(), text);
        Evaluation evaluation;
        if (verify && !IsAvailable(entry->Access(evaluation, false)))
            throw ACCESS_EXCEPTION("%s: entry '%s' is not available", Label(), text);
        evaluation.verify = verify;
        AssignInteger(entry->Number64(), evaluation);
    });
}

void CEnumeration::GetSymbolics(StringList_t& symbolics) {
    symbolics.clear();
    const MapAccess access(Map());
    for (const Property& property : Properties()) {
        auto* entry = property.tag == ETag::Nested ? static_cast<CEnumEntry*>(NodeOf(property)) : nullptr;
        if (entry != nullptr && IsAvailable(entry->GetAccessMode()))
            symbolics.push_back(entry->GetSymbolic());
    }
}

void CEnumeration::GetEntries(NodeList_t& entries) {
    entries.clear();
    for (const Property& property : Properties()) {
        if (property.tag == ETag::Nested)
            entries.push_back(NodeOf(property));
    }
}

/**
 * \brief Set the integer value
 * \param[in] verify Refuse a value without an available entry
 * \throw AccessException The node is not writable, or the entry is not available
 * \throw OutOfRangeException There is no entry of this value
 *
 * \context Any thread
 */
void CEnumeration::SetIntValue(std::int64_t value, bool verify) {
    SetUsersInteger(value, verify);
}

/**
 * \brief The integer value
 * \param[in] verify Refuse a value without an available entry
 * \throw AccessException The node is not readable
 *
 * \context Any thread
 */
std::int64_t CEnumeration::GetIntValue(bool verify, bool ignoreCache) {
    return UsersInteger(verify, ignoreCache);
}

IEnumEntry* CEnumeration::GetEntryByName(const GenICam::gcstring& symbolic) {
    const MapAccess access(Map());
    return EntryOf(symbolic.view());
}

IEnumEntry* CEnumeration::GetEntry(std::int64_t value) {
    const MapAccess access(Map());
    return Usable() ? BestEntryOf(value) : nullptr;
}

IEnumEntry* CEnumeration::GetCurrentEntry(bool verify, bool ignoreCache) {
    const MapAccess access(Map());
    return BestEntryOf(GetIntValue(verify, ignoreCache));
}

}  // namespace GenApi
