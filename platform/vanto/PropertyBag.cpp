/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Properties with a record of what was done with them
 */

#include "vanto/PropertyBag.h"

#include <algorithm>

namespace Vanto {

/**
 * \brief Read a property, and note that it was read
 * \param[in] name Its name
 * \param[out] value The property's value; left alone when there is none
 * \return Whether the property is there
 */
bool CPropertyBag::Get(const gcstring& name, gcstring& value) const {
    const auto found = m_properties.find(name);
    if (found == m_properties.end())
        return false;
    found->second.accessed.Set(true);
    value = found->second.value;
    return true;
}

/**
 * \brief Set a property, new or not; the bag then counts as modified, whatever the value was before
 */
void CPropertyBag::Set(const gcstring& name, const gcstring& value) {
    Property& property = m_properties[name];
    property.value = value;
    property.modified = true;
}

bool CPropertyBag::Contains(const gcstring& name) const {
    return m_properties.contains(name);
}

/**
 * \brief Append the names of all properties, in the order of their characters
 * \return How many there are
 */
int CPropertyBag::GetNames(StringList_t& names) const {
    for (const auto& entry : m_properties)
        names.push_back(entry.first);
    return static_cast<int>(m_properties.size());
}

/**
 * \brief Whether any property was set since the flags were last cleared
 */
bool CPropertyBag::IsModified() const noexcept {
    return std::any_of(m_properties.begin(), m_properties.end(),
                       [](const auto& entry) { return entry.second.modified; });
}

/**
 * \brief Whether a property was read since the flags were last cleared
 */
bool CPropertyBag::IsAccessed(const gcstring& name) const {
    const auto found = m_properties.find(name);
    return found != m_properties.end() && found->second.accessed.IsSet();
}

/**
 * \brief Forget what was read and set until now
 */
void CPropertyBag::ClearAccessFlags() noexcept {
    for (auto& entry : m_properties) {
        entry.second.accessed.Set(false);
        entry.second.modified = false;
    }
}

}  // namespace Vanto
