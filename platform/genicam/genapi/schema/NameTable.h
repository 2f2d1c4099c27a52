/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The names in a description: each is kept once, whoever has it or refers to it
 */
#pragma once

#include <cstdint>
#include <string_view>

#include "schema/NameIndex.h"
#include "schema/PlainArray.h"

namespace GenApi {

/// Numbers the names of a description and says which node each belongs to.
class NameTable {
public:
    /// The number of a name, made when there is none yet.
    std::uint32_t Intern(std::string_view name);
    /// The number of a name, kNoNode when nothing has it or refers to it.
    std::uint32_t Find(std::string_view name) const;
    std::string_view TextOf(std::uint32_t name) const noexcept {
        return {m_texts.data() + m_names[name].text, m_names[name].length};
    }
    /// The node that has the name, kNoNode when none does.
    std::uint32_t NodeOf(std::uint32_t name) const noexcept { return m_names[name].node; }
    void SetNode(std::uint32_t name, std::uint32_t node) noexcept { m_names[name].node = node; }
    std::uint32_t Count() const noexcept { return static_cast<std::uint32_t>(m_names.size()); }
    void Reserve(std::size_t count);
    void Shrink();

private:
    struct Name {
        std::uint32_t text;
        std::uint32_t length;
        std::uint32_t node;
    };

    PlainArray<char> m_texts;
    PlainArray<Name> m_names;
    NameIndex m_index;
};

}  // namespace GenApi
