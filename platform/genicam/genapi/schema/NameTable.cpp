/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The names in a description: each is kept once, whoever has it or refers to it
 */

#include "schema/NameTable.h"

#include "schema/Text.h"

namespace GenApi {

std::uint32_t NameTable::Intern(std::string_view name) {
    const std::uint32_t hash = NameIndex::Hash(name);
    const std::uint32_t found = m_index.Find(hash, [&](std::uint32_t known) { return AreEqual(TextOf(known), name); });
    if (found != kNoNode)
        return found;
    const std::uint32_t number = Count();
    m_names.push_back({static_cast<std::uint32_t>(m_texts.size()), static_cast<std::uint32_t>(name.size()), kNoNode});
    m_texts.Append(name.data(), name.size());
    m_index.Insert(hash, number);
    return number;
}

std::uint32_t NameTable::Find(std::string_view name) const {
    return m_index.Find(NameIndex::Hash(name), [&](std::uint32_t known) { return AreEqual(TextOf(known), name); });
}

void NameTable::Reserve(std::size_t count) {
    m_names.Reserve(count);
    m_index.Reserve(count);
}

void NameTable::Shrink() {
    m_texts.Shrink();
    m_names.Shrink();
}

}  // namespace GenApi
