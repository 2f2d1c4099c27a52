/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The info records of transport layers and devices
 */

#include "vanto/Info.h"

#include <algorithm>

namespace Vanto {

const gcstring CInfoBase::PropertyNotAvailable("N/A");

CInfoBase::CInfoBase() : m_impl(std::make_unique<CInfoImpl>()) {}

CInfoBase::CInfoBase(const CInfoBase& other) : m_impl(std::make_unique<CInfoImpl>(*other.m_impl)) {}

CInfoBase& CInfoBase::operator=(const CInfoBase& other) {
    if (this != &other)
        *m_impl = CInfoImpl(*other.m_impl);
    return *this;
}

CInfoBase::~CInfoBase() = default;

/**
 * \brief Names of all properties
 * \param[out] names Replaced by the names, in the order of their characters
 * \return How many there are
 */
int CInfoBase::GetPropertyNames(StringList_t& names) const {
    names.clear();
    return m_impl->GetNames(names);
}

bool CInfoBase::GetPropertyAvailable(const gcstring& name) const {
    return m_impl->Contains(name);
}

/**
 * \brief Read a property
 * \param[in] name Its name
 * \param[out] value The property's value, or PropertyNotAvailable
 * \return Whether the property is there
 */
bool CInfoBase::GetPropertyValue(const gcstring& name, gcstring& value) const {
    if (m_impl->Get(name, value))
        return true;
    value = PropertyNotAvailable;
    return false;
}

IProperties& CInfoBase::SetPropertyValue(const gcstring& name, const gcstring& value) {
    m_impl->Set(name, value);
    return *this;
}

/**
 * \brief Whether every property of \a subset is here with the same value
 *
 * An empty record is a subset of any. Names and values are compared case-sensitively. Names that begin with an
 * underscore are notes to the transport layer ("_BornFree"), not properties of a device: they are left out.
 */
bool CInfoBase::IsSubset(const IProperties& subset) const {
    StringList_t names;
    subset.GetPropertyNames(names);
    return std::all_of(names.begin(), names.end(), [&](const gcstring& name) {
        gcstring wanted;
        gcstring held;
        if (name.view().starts_with('_'))
            return true;
        return subset.GetPropertyValue(name, wanted) && GetPropertyValue(name, held) && held == wanted;
    });
}

/**
 * \brief Whether the application made the record, so that it may be partial; false for what enumeration found
 */
bool CInfoBase::IsUserProvided() const {
    return m_impl->IsUserProvided();
}

gcstring CInfoBase::GetOrNotAvailable(const char* name) const {
    gcstring value;
    GetPropertyValue(name, value);
    return value;
}

CDeviceInfo::~CDeviceInfo() = default;

IProperties& CDeviceInfo::SetPropertyValue(const gcstring& name, const gcstring& value) {
    return CInfoBase::SetPropertyValue(name, value);
}

CTlInfo::~CTlInfo() = default;

}  // namespace Vanto
