/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Enumeration and its entries
 */
#pragma once

#include "GenApi/IEnumeration.h"
#include "nodes/SourcedNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// EnumEntry: a name for one integer value.
class CEnumEntry final : public CValueNode<IEnumEntry, intfIEnumEntry> {
public:
    using CValueNode::CValueNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return true; }
    // IEnumEntry
    std::int64_t GetValue() override;
    GenICam::gcstring GetSymbolic() const override;
    double GetNumericValue() override;
    bool IsSelfClearing() override;

    /// The value; throws when the description has none.
    std::int64_t Number64();
    std::string_view SymbolicText() const noexcept;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation&) override { return m_value; }

private:
    std::int64_t m_value = 0;
};

/// Enumeration: an integer whose values have names.
class CEnumeration final : public CSourcedNode<CValueNode<IEnumeration, intfIEnumeration>, std::int64_t> {
public:
    using CSourcedNode::CSourcedNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    // IEnumeration
    void GetSymbolics(StringList_t& symbolics) override;
    void GetEntries(NodeList_t& entries) override;
    void SetIntValue(std::int64_t value, bool verify = true) override;
    std::int64_t GetIntValue(bool verify = false, bool ignoreCache = false) override;
    IEnumEntry* GetEntryByName(const GenICam::gcstring& symbolic) override;
    IEnumEntry* GetEntry(std::int64_t value) override;
    IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) override;

    /// The entry of a name, null when there is none; the map's lock is held.
    CEnumEntry* EntryOf(std::string_view symbolic);

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    void CheckInteger(std::int64_t value, Evaluation& evaluation) override;
    std::int64_t ReadIntegerBound(EBound bound, Evaluation& evaluation) override;

private:
    struct Entry {
        std::int64_t value;
        CEnumEntry* node;
    };

    std::span<const Entry> EntriesOf(std::int64_t value) const noexcept;
    CEnumEntry* BestEntryOf(std::int64_t value);
    void IndexNames();
    CEnumEntry& CurrentEntry(bool verify, bool ignoreCache);

    std::span<const Entry> m_entries;       // by value; those of one value in the order of the description
    std::span<CEnumEntry* const> m_byName;  // all entries by symbolic name, once one is looked for
};

}  // namespace GenApi
