/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Puts a description together
 */
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "schema/Description.h"

namespace GenApi {

/// Takes nodes, elements and texts, and gives a description. Reentrant, used once.
class DescriptionBuilder {
public:
    DescriptionBuilder();

    /// Makes room for what a document of some bytes has at least, so that little of it moves later.
    void Expect(std::size_t bytes);
    const Description& Built() const noexcept { return *m_description; }
    DescriptionInfo& Info() noexcept { return m_description->m_info; }
    /// A new node, of which nothing is known yet.
    std::uint32_t AddNode();
    NodeRecord& Node(std::uint32_t node) noexcept { return m_description->m_nodes[node]; }
    std::uint32_t Intern(std::string_view name) { return m_description->m_names.Intern(name); }
    std::uint32_t NodeOfName(std::uint32_t name) const noexcept { return m_description->m_names.NodeOf(name); }
    void SetNodeOfName(std::uint32_t name, std::uint32_t node) noexcept { m_description->m_names.SetNode(name, node); }
    /// An element with a text of its own, or a name that it refers to.
    Property MakeProperty(ETag tag, std::string_view text);
    /// Gives a node its elements.
    void SetProperties(std::uint32_t node, std::span<const Property> properties);
    void SetReason(std::uint32_t node, const std::string& reason);
    /// False when there are so many warnings that no further one is kept.
    bool TakesWarnings() const noexcept;
    void Warn(LoadWarning warning);
    /// Finds the nodes that names with a name space, and those of entries, stand for. All nodes are there.
    void ResolveNames();
    std::shared_ptr<const Description> Finish();

private:
    struct Place {
        std::uint32_t text = 0;
        std::uint16_t length = 0;
    };

    std::uint32_t Store(std::string_view text);

    std::shared_ptr<Description> m_description;
    std::array<Place, 256> m_lastTexts{};  // of each kind of element: nodes of one kind mostly say the same
};

}  // namespace GenApi
