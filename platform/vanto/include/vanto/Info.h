/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The info records of transport layers and devices
 */
#pragma once

#include <memory>
#include <vector>

#include "vanto/PropertyBag.h"

namespace Vanto {

/// Base of the info records. Reentrant; one record may be read from several threads while none changes it.
class VANTOBASE_API CInfoBase : public IProperties {
public:
    static const gcstring PropertyNotAvailable;  ///< what a getter returns for an absent property

    CInfoBase();
    /// A copy with all flags.
    CInfoBase(const CInfoBase& other);
    /// Becomes a copy with all flags.
    CInfoBase& operator=(const CInfoBase& other);
    ~CInfoBase() override;

    int GetPropertyNames(StringList_t& names) const override;
    /// Whether there is a property of this name.
    bool GetPropertyAvailable(const gcstring& name) const override;
    bool GetPropertyValue(const gcstring& name, gcstring& value) const override;
    /// Sets or adds a property.
    IProperties& SetPropertyValue(const gcstring& name, const gcstring& value) override;
    bool IsSubset(const IProperties& subset) const override;
    bool IsUserProvided() const override;

// A type in a declaration can't be in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define VANTO_INFO_PROPERTY(Class, Name)      \
    gcstring Get##Name() const {              \
        return GetOrNotAvailable(#Name);      \
    }                                         \
    Class& Set##Name(const gcstring& value) { \
        SetPropertyValue(#Name, value);       \
        return *this;                         \
    }                                         \
    bool Is##Name##Available() const {        \
        return GetPropertyAvailable(#Name);   \
    }
    // NOLINTEND(bugprone-macro-parentheses)

    VANTO_INFO_PROPERTY(CInfoBase, FriendlyName)
    VANTO_INFO_PROPERTY(CInfoBase, FullName)
    VANTO_INFO_PROPERTY(CInfoBase, VendorName)
    VANTO_INFO_PROPERTY(CInfoBase, DeviceClass)

    /// The record's property bag, for transport layers.
    CInfoImpl& GetInfoImpl() noexcept {
        return *m_impl;
    }
    /// The record's property bag.
    const CInfoImpl& GetInfoImpl() const noexcept {
        return *m_impl;
    }

protected:
    /// A property's value, or PropertyNotAvailable.
    gcstring GetOrNotAvailable(const char* name) const;

private:
    std::unique_ptr<CInfoImpl> m_impl;
};

/// Names one camera.
class VANTOBASE_API CDeviceInfo : public CInfoBase {
public:
    CDeviceInfo() = default;
    ~CDeviceInfo() override;
    CDeviceInfo(const CDeviceInfo&) = default;
    CDeviceInfo& operator=(const CDeviceInfo&) = default;

    /// Sets or adds a property.
    IProperties& SetPropertyValue(const gcstring& name, const gcstring& value) override;

    VANTO_INFO_PROPERTY(CDeviceInfo, ModelName)
    VANTO_INFO_PROPERTY(CDeviceInfo, SerialNumber)
    VANTO_INFO_PROPERTY(CDeviceInfo, UserDefinedName)
    VANTO_INFO_PROPERTY(CDeviceInfo, DeviceVersion)
    VANTO_INFO_PROPERTY(CDeviceInfo, DeviceFactory)
    VANTO_INFO_PROPERTY(CDeviceInfo, XMLSource)
};

/// Describes one transport layer.
class VANTOBASE_API CTlInfo : public CInfoBase {
public:
    CTlInfo() = default;
    ~CTlInfo() override;
    CTlInfo(const CTlInfo&) = default;
    CTlInfo& operator=(const CTlInfo&) = default;

    VANTO_INFO_PROPERTY(CTlInfo, Version)
    VANTO_INFO_PROPERTY(CTlInfo, FileName)
};

/// An info record as a transport layer makes it: with the bag at hand.
template <class Info>
class CInfoPrivateT : public Info {
public:
    /// Whether the application made the record.
    bool IsUserProvided() const override { return this->GetInfoImpl().IsUserProvided(); }
};

/// List of info records.
template <class Info>
class TList : private std::vector<Info> {
    using Base = std::vector<Info>;

public:
    using Base::back;
    using Base::begin;
    using Base::clear;
    using Base::empty;
    using Base::end;
    using Base::front;
    using Base::push_back;
    using Base::size;
    using typename Base::const_iterator;
    using typename Base::iterator;
    using typename Base::value_type;
    using Base::operator[];
    using Base::at;
    using Base::erase;
    using Base::reserve;
};

using DeviceInfoList = TList<CDeviceInfo>;
using TlInfoList = TList<CTlInfo>;

}  // namespace Vanto
